#include "cli/support/diagnostic_text.h"

#include <map>
#include <tuple>

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
    return u"%1: %2 '%3': %4"_s.arg(nameOf(diagnostic.severity), nameOf(diagnostic.subject),
                                    diagnostic.name, diagnostic.sentence);
}

DiagnosticDetail detailFrom(const Invocation& invocation) {
    return invocation.has(kVerboseOption.name) ? DiagnosticDetail::All : DiagnosticDetail::Grouped;
}

QStringList linesOf(const std::vector<ExportDiagnostic>& diagnostics, DiagnosticDetail detail) {
    using Key = std::tuple<ExportDiagnostic::Subject, QString, ExportDiagnostic::Kind>;
    std::map<Key, std::pair<qsizetype, size_t>> groups;  // the line of the first, and how many
    QStringList lines;
    for (const ExportDiagnostic& diagnostic : diagnostics) {
        const Key key{diagnostic.subject, diagnostic.identifier, diagnostic.kind};
        const auto [group, isNew] = groups.try_emplace(key, lines.size(), 0);
        ++group->second.second;
        if (isNew || detail == DiagnosticDetail::All) { lines << textOf(diagnostic); }
    }
    if (detail == DiagnosticDetail::All) { return lines; }
    for (const auto& [key, group] : groups) {
        const auto& [line, count] = group;
        if (count == 1) { continue; }
        lines[line] += u" (the first of %1 such; --verbose tells all)"_s.arg(count);
    }
    return lines;
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
