// tweenc copy: a project through the model into a new package.

#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Every part of the project is written anew from its decoded form.
void writeEverythingAnew(PCProject& project) {
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        animation->loadAllTimelines();
        animation->masterKeyframesTimeline()->setHasUnsavedChanges(true);
        for (const auto& [identifier, group] : animation->timelineGroups()) {
            for (const PCKeyedPropertyTimeline::Ptr& timeline : group->loadedTimelines()) {
                timeline->setHasUnsavedChanges(true);
            }
        }
        animation->saveChangesToFileWrapper();
    }
    project.canvas()->setModified(true);
    project.preferences().setModified(true);
}

ExitCode run(const Invocation& invocation, Console& console) {
    const QString destination = invocation.operands().at(1);
    const bool replaces = invocation.has(kForceOption.name);
    requirePlaceForPackage(destination, replaces);
    return runOnPackage(invocation, console, [&](Report& report) {
        const PCProject::Ptr project = openForReading(report);
        requireOutsidePackage(destination, report.packagePath());
        writeEverythingAnew(*project);
        writePackageCopy(*project->fileWrapper(), destination, replaces);
    });
}

}  // namespace

const Verb& copyVerb() {
    static const Verb verb{"copy",
                           "PKG DEST.tweenery",
                           2,
                           2,
                           "Opens a project and saves all of it elsewhere.",
                           {kForceOption},
                           run};
    return verb;
}

}  // namespace tweenery
