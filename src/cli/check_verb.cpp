// tweenc check: reads every entry of a package and tells everything that is wrong with it.

#include "cli/package_check.h"
#include "cli/support/diagnostic_text.h"
#include "cli/support/number_words.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "codegen/project_exporter.h"
#include "storage/posix_files.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Diagnostics = std::vector<ExportDiagnostic>;

/// What an export as the project's preferences have it would meet.
Diagnostics diagnosticsOf(PCProject& project) {
    return diagnosticsOfExport(project, project.preferences().generatedCodeUsesSwift(),
                               ExportOptions::fromPreferences(project));
}

void printJson(const PackageCheck& check, const Diagnostics& diagnostics, Report& report) {
    JsonWriter json(JsonWriter::Keys::Sorted);
    json.beginObject();
    writeDiagnostics(diagnostics, json);
    json.key("entries").integer(static_cast<int64_t>(check.entriesCount));
    json.key("errors").beginArray();
    for (const InputError& error : check.errors) {
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("entry").string(error.entry()).key("reason").string(error.reason()).endObject();
    }
    json.endArray().key("notes").beginArray();
    for (const PackageCheck::Note& note : check.notes) {
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("entry").string(note.entry).key("text").string(note.text).endObject();
    }
    json.endArray().key("package").string(report.packagePath());
    report.print(json.endObject().take());
}

void printText(const PackageCheck& check, const Diagnostics& diagnostics, Report& report) {
    for (const PackageCheck::Note& note : check.notes) {
        report.printLine(
            report.attributed(printableName(u"note: %1: %2"_s.arg(note.entry, note.text))));
    }
    for (const ExportDiagnostic& diagnostic : diagnostics) {
        report.printLine(report.attributed(textOf(diagnostic)));
    }
    const size_t errorsCount = check.errors.size();
    report.printLine(u"%1: %2 checked, %3"_s.arg(
        report.packagePath(), QString::number(check.entriesCount) + u" entries"_s,
        errorsCount == 0 ? u"all readable"_s : counted(errorsCount, u"error")));
}

void check(Report& report, bool asJson) {
    const FileWrapper::Ptr root = readVersionedPackage(report);
    PackageCheck check = checkPackage(root);
    for (const InputError& error : check.errors) {
        report.fail(error);
    }
    Diagnostics diagnostics;
    if (check.errors.empty()) {
        if (!check.project) {
            check.project = projectOf(root);  // throws what stands in the way
        }
        noteOddities(check);
        diagnostics = diagnosticsOf(*check.project);
    }
    asJson ? printJson(check, diagnostics, report) : printText(check, diagnostics, report);
}

ExitCode run(const Invocation& invocation, Console& console) {
    const bool asJson = invocation.has(kJsonOption.name);
    return runOnPackages(invocation.operands(), console,
                         [asJson](Report& report) { check(report, asJson); });
}

}  // namespace

const Verb& checkVerb() {
    static const Verb verb{"check",
                           "PKG...",
                           1,
                           Verb::kMany,
                           "Reads every entry of each package and tells what is wrong.",
                           {kJsonOption},
                           run};
    return verb;
}

}  // namespace tweenery
