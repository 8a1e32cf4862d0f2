// tweenc describe: the model's own description of a project.

#include "cli/support/packages.h"
#include "cli/verbs.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kHierarchyOption{"hierarchy", nullptr,
                                      "list the names of the elements only, front first"};

ExitCode run(const Invocation& invocation, Console& console) {
    const bool onlyHierarchy = invocation.has(kHierarchyOption.name);
    return runOnPackage(invocation.operands().first(), console, [onlyHierarchy](Report& report) {
        const PCProject::Ptr project = openForReading(report);
        const QString text = onlyHierarchy ? project->heirarchyLines().join(u'\n') + u'\n'
                                           : project->debugDescription();
        report.print(text.toStdString());
    });
}

}  // namespace

const Verb& describeVerb() {
    static const Verb verb{
        "describe",         "PKG", 1, 1, "Prints the model's description of a project.",
        {kHierarchyOption}, run};
    return verb;
}

}  // namespace tweenery
