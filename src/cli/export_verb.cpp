// tweenc export: source code and artwork from projects.

#include <QSet>

#include "base/path_name.h"
#include "cli/support/diagnostic_text.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "codegen/export_error.h"
#include "codegen/project_exporter.h"
#include "storage/package_place.h"
#include "storage/posix_files.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kOutOption{"out", "DIR", "where the files go; made if it is not there", true};
constexpr VerbOption kLanguageOption{"lang", "objc|swift", "the language"};
constexpr VerbOption kPlatformOption{"platform", "ios|mac", "the platform"};
constexpr VerbOption kClipOption{"clip", nullptr, "the scene is clipped to its bounds"};
constexpr VerbOption kNoClipOption{"no-clip", nullptr, "it is not"};
constexpr VerbOption kImagesOption{"images", nullptr, "copy the artwork into DIR/images"};
constexpr VerbOption kNoImagesOption{"no-images", nullptr, "do not"};
constexpr VerbOption kCleanOption{"clean-images", nullptr, "remove DIR/images first"};
constexpr VerbOption kDateOption{"date", "TEXT", "the date in the files' heads, today's otherwise"};
constexpr VerbOption kStrictOption{"strict", nullptr, "end with 3 when there are warnings"};

// It stands in a comment, which it must not end.
void requireOneLine(const QString& date) {
    if (printableName(date) != date) { throw UsageError{u"--date takes one line of text"_s}; }
}

ExportOptions optionsFrom(const Invocation& invocation, PCProject& project) {
    ExportOptions options = ExportOptions::fromPreferences(project);
    if (invocation.has(kPlatformOption.name)) {
        options.generateForMac = invocation.value(kPlatformOption.name) == u"mac";
    }
    options.clipsToBounds = invocation.choice(kClipOption.name).value_or(options.clipsToBounds);
    options.includesImages = invocation.choice(kImagesOption.name).value_or(options.includesImages);
    if (invocation.has(kCleanOption.name)) { options.cleansImageDirectory = true; }
    if (invocation.has(kDateOption.name)) {
        options.stamp.date = invocation.value(kDateOption.name).toStdString();
    }
    return options;
}

bool usesSwift(const Invocation& invocation, PCProject& project) {
    if (!invocation.has(kLanguageOption.name)) {
        return project.preferences().generatedCodeUsesSwift();
    }
    return invocation.value(kLanguageOption.name) == u"swift";
}

/// One package goes right into the directory, each of several into a folder with its name.
QString directoryFor(const QString& package, const Invocation& invocation) {
    QString out = invocation.value(kOutOption.name);
    if (invocation.operands().size() == 1) { return out; }
    const QString folder = withoutPathExtension(packageName(package));
    if (!isSafeFilename(folder)) { throw InputError(package, u"has no name for a folder"_s); }
    return out + u'/' + folder;
}

void requireFoldersOfTheirOwn(const Invocation& invocation) {
    QSet<QString> taken;
    for (const QString& package : invocation.operands()) {
        const QString directory = directoryFor(package, invocation);
        if (taken.contains(directory)) {
            throw InputError(package,
                             u"would go into %1, as another package does"_s.arg(directory));
        }
        taken.insert(directory);
    }
}

QString pathOf(const QString& file, const QString& directory) {
    return file == u"." ? directory : directory + u'/' + file;
}

void printJson(const ExportResult& result, const QString& directory, Report& report) {
    JsonWriter json(JsonWriter::Keys::Sorted);
    json.beginObject();
    writeDiagnostics(result.diagnostics, json);
    json.key("directory").string(directory);
    json.key("failures").beginArray();
    for (const ExportFailure& failure : result.files.failures) {
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("path").string(failure.path).key("reason").string(failure.reason).endObject();
    }
    json.endArray().key("files").beginArray();
    for (const QString& path : result.files.paths) {
        json.string(path);
    }
    json.endArray().key("package").string(report.packagePath());
    report.print(json.endObject().take());
}

void printText(const ExportResult& result, const QString& directory, Report& report) {
    for (const ExportDiagnostic& diagnostic : result.diagnostics) {
        report.writeLine(report.attributed(textOf(diagnostic)));
    }
    for (const QString& path : result.files.paths) {
        report.printLine(pathOf(path, directory));
    }
}

bool hasWarnings(const ExportResult& result) {
    return std::any_of(result.diagnostics.begin(), result.diagnostics.end(),
                       [](const ExportDiagnostic& diagnostic) {
                           return diagnostic.severity != ExportDiagnostic::Severity::Note;
                       });
}

void exportPackage(const Invocation& invocation, Report& report) {
    const QString directory = directoryFor(report.packagePath(), invocation);
    requireOutsidePackage(directory, report.packagePath());
    const PCProject::Ptr project = openForReading(report);
    ExportResult result;
    try {
        result = exportCodeToDirectory(project, directory, usesSwift(invocation, *project),
                                       optionsFrom(invocation, *project));
    } catch (const ExportError& error) { throw InputError(report.packagePath(), error.message()); }
    for (const ExportFailure& failure : result.files.failures) {
        report.failOutside({pathOf(failure.path, directory), failure.reason});
    }
    invocation.has(kJsonOption.name) ? printJson(result, directory, report)
                                     : printText(result, directory, report);
    if (invocation.has(kStrictOption.name) && hasWarnings(result)) { report.endWithWarnings(); }
}

ExitCode run(const Invocation& invocation, Console& console) {
    if (invocation.value(kOutOption.name).isEmpty()) {
        throw UsageError{u"--out takes a directory"_s};
    }
    requireOneLine(invocation.value(kDateOption.name));
    requireFoldersOfTheirOwn(invocation);
    return runOnPackages(invocation.operands(), console,
                         [&](Report& report) { exportPackage(invocation, report); });
}

}  // namespace

const Verb& exportVerb() {
    static const Verb verb{
        "export",
        "PKG...",
        1,
        Verb::kMany,
        "Writes source code and artwork; several projects go into a folder each. Options left out "
        "come from the project's preferences.",
        {kOutOption, kLanguageOption, kPlatformOption, kClipOption, kNoClipOption, kImagesOption,
         kNoImagesOption, kCleanOption, kDateOption, kStrictOption, kJsonOption},
        run};
    return verb;
}

}  // namespace tweenery
