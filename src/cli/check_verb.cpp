// tweenc check: reads every entry of a package and tells everything that is wrong with it.

#include "cli/package_check.h"
#include "cli/support/diagnostic_text.h"
#include "cli/support/export_language.h"
#include "cli/support/number_words.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "codegen/project_exporter.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Diagnostics = std::vector<ExportDiagnostic>;

// What an export would meet: as the options say, and else the project's preferences.
Diagnostics diagnosticsOf(PCProject& project, const Invocation& invocation) {
    ExportOptions options = ExportOptions::fromPreferences(project);
    if (invocation.has(kPlatformOption.name)) {
        options.generateForMac = invocation.value(kPlatformOption.name) == u"mac";
    }
    const bool usingSwift = takeLanguage(invocation, project, options);
    return diagnosticsOfExport(project, usingSwift, options);
}

void writeJson(const PackageCheck& check, const Diagnostics& diagnostics, JsonWriter& json) {
    json.beginObject();
    writeDiagnostics(diagnostics, json);
    json.key("entries").integer(static_cast<int64_t>(check.entriesCount));
    json.key("oddities").beginArray();
    for (const PackageCheck::Note& note : check.notes) {
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("entry").string(note.entry).key("text").string(note.text).endObject();
    }
    json.endArray().endObject();
}

void printText(const PackageCheck& check, const Diagnostics& diagnostics, DiagnosticDetail detail,
               Report& report) {
    for (const PackageCheck::Note& note : check.notes) {
        report.printLine(u"note: %1/%2: %3"_s.arg(report.packagePath(), note.entry, note.text));
    }
    for (const QString& line : linesOf(diagnostics, detail)) {
        report.printLine(report.attributed(line));
    }
    const size_t errorsCount = check.errors.size();
    report.printLine(u"%1: %2 checked, %3"_s.arg(
        report.packagePath(), QString::number(check.entriesCount) + u" entries"_s,
        errorsCount == 0 ? u"all readable"_s : counted(errorsCount, u"error")));
}

// What stops an export is an error of the package.
void judge(const Diagnostics& diagnostics, bool isStrict, Report& report) {
    for (const ExportDiagnostic& diagnostic : diagnostics) {
        if (diagnostic.severity == ExportDiagnostic::Severity::Error) {
            report.fail({report.packagePath(), textOf(diagnostic)});
        } else if (isStrict && diagnostic.severity == ExportDiagnostic::Severity::Warning) {
            report.endWithWarnings();
        }
    }
}

void check(const Invocation& invocation, Report& report) {
    std::vector<InputError> unread;
    const FileWrapper::Ptr root = readVersionedPackage(report, &unread);
    PackageCheck check = checkPackage(root);
    check.errors.insert(check.errors.begin(), unread.begin(), unread.end());
    for (const InputError& error : check.errors) {
        report.fail(error);
    }
    Diagnostics diagnostics;
    if (check.errors.empty()) {
        if (!check.project) {
            check.project = projectOf(root);  // throws what stands in the way
        }
        noteOddities(check);
        diagnostics = diagnosticsOf(*check.project, invocation);
        judge(diagnostics, invocation.has(kStrictOption.name), report);
    }
    if (report.isJson()) {
        report.setResult([&](JsonWriter& json) { writeJson(check, diagnostics, json); });
    } else {
        printText(check, diagnostics, detailFrom(invocation), report);
    }
}

ExitCode run(const Invocation& invocation, Console& console) {
    invocation.requireNotBoth(kQuietOption, {kVerboseOption});
    requireOneLanguage(invocation);
    return runOnPackages(invocation, console, [&](Report& report) { check(invocation, report); });
}

}  // namespace

const Verb& checkVerb() {
    static const Verb verb{
        "check",
        "PKG...",
        1,
        Verb::kMany,
        "Reads every entry of each package and tells what is wrong, and what an export would meet.",
        {kLanguageOption, kSwiftOption, kPlatformOption, kStrictOption, kVerboseOption,
         kQuietOption, kJsonOption},
        run};
    return verb;
}

}  // namespace tweenery
