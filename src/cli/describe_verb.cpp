// tweenc describe: the model's own description of a project.

#include "base/visible_text.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kHierarchyOption{"hierarchy", nullptr,
                                      "list the names of the elements only, front first"};

void writeJson(PCProject& project, bool onlyHierarchy, JsonWriter& json) {
    json.beginObject();
    json.key("description").string(onlyHierarchy ? QString() : project.debugDescription());
    json.key("hierarchy").beginArray();
    for (const PCElement::Ptr& element : project.heirarchyWithRoot(*project.canvas())) {
        json.string(element->name());
    }
    json.endArray().endObject();
}

ExitCode run(const Invocation& invocation, Console& console) {
    const bool onlyHierarchy = invocation.has(kHierarchyOption.name);
    return runOnPackage(invocation, console, [onlyHierarchy](Report& report) {
        const PCProject::Ptr project = openForReading(report);
        if (report.isJson()) {
            report.setResult([&](JsonWriter& json) { writeJson(*project, onlyHierarchy, json); });
            return;
        }
        const QString text = onlyHierarchy ? project->heirarchyLines().join(u'\n') + u'\n'
                                           : project->debugDescription();
        report.print(visibleText(text, u"\n").toStdString());
    });
}

}  // namespace

const Verb& describeVerb() {
    static const Verb verb{"describe",
                           "PKG",
                           1,
                           1,
                           "Prints the model's description of a project.",
                           {kHierarchyOption, kJsonOption},
                           run};
    return verb;
}

}  // namespace tweenery
