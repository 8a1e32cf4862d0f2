#include "cli/support/diagnostic_text.h"

#include "storage/posix_files.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString nameOf(ExportDiagnostic::Subject subject) {
    switch (subject) {
        case ExportDiagnostic::Subject::Element:
            return u"element"_s;
        case ExportDiagnostic::Subject::Animation:
            return u"animation"_s;
        case ExportDiagnostic::Subject::Project:
            break;
    }
    return u"project"_s;
}

}  // namespace

QString textOf(const ExportDiagnostic& diagnostic) {
    return printableName(u"%1: %2 '%3': %4"_s.arg(nameOf(diagnostic.severity),
                                                  nameOf(diagnostic.subject), diagnostic.name,
                                                  diagnostic.sentence));
}

void writeDiagnostics(const std::vector<ExportDiagnostic>& diagnostics, JsonWriter& json) {
    json.key("diagnostics").beginArray();
    for (const ExportDiagnostic& diagnostic : diagnostics) {
        json.beginObject();
        json.key("identifier").string(diagnostic.identifier);
        json.key("kind").string(nameOf(diagnostic.kind));
        json.key("name").string(diagnostic.name);
        json.key("sentence").string(diagnostic.sentence);
        json.key("severity").string(nameOf(diagnostic.severity));
        json.key("subject").string(nameOf(diagnostic.subject));
        json.endObject();
    }
    json.endArray();
}

}  // namespace tweenery
