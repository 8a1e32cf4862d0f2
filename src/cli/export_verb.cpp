// tweenc export: source code and artwork from projects.

#include <QDateTime>
#include <QLocale>
#include <QSet>

#include "base/path_name.h"
#include "cli/support/diagnostic_text.h"
#include "cli/support/export_language.h"
#include "cli/support/number_words.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "codegen/export_error.h"
#include "codegen/project_exporter.h"
#include "storage/package_place.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kOutOption{"out", "DIR", "where the files go; made if it is not there", true};
constexpr VerbOption kClipOption{"clip", nullptr, "the scene is clipped to its bounds"};
constexpr VerbOption kNoClipOption{"no-clip", nullptr, "it is not"};
constexpr VerbOption kImagesOption{"images", nullptr, "copy the artwork into DIR/images"};
constexpr VerbOption kNoImagesOption{"no-images", nullptr, "do not"};
constexpr VerbOption kCleanOption{"clean-images", nullptr,
                                  "remove DIR/images with all that is in it first"};
constexpr VerbOption kDateOption{
    "date", "TEXT",
    "the date in the files' heads (current Swift has none); otherwise that of SOURCE_DATE_EPOCH, "
    "or today's, in UTC"};
constexpr VerbOption kDryRunOption{"dry-run", nullptr,
                                   "write nothing, and list what would be written"};

// It stands in a comment, which it must not end.
void requireOneLine(const QString& date) {
    if (printableName(date) != date) { throw UsageError{u"--date takes one line of text"_s}; }
}

// The same on every machine: no time zone or language of the user's counts.
QString dateFrom(const Invocation& invocation) {
    if (invocation.has(kDateOption.name)) { return invocation.value(kDateOption.name); }
    QDateTime time = QDateTime::currentDateTimeUtc();
    const char* const variable = "SOURCE_DATE_EPOCH";
    if (qEnvironmentVariableIsSet(variable)) {
        bool isNumber = false;
        const qint64 seconds = qEnvironmentVariable(variable).toLongLong(&isNumber);
        time = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
        if (!isNumber || seconds < 0 || !time.isValid() || time.date().year() > 9999) {
            throw InputError(QString::fromLatin1(variable),
                             u"is no number of seconds since 1970"_s);
        }
    }
    return QLocale(QLocale::English, QLocale::UnitedStates)
        .toString(time.date(), QLocale::ShortFormat);
}

ExportOptions optionsFrom(const Invocation& invocation, PCProject& project) {
    ExportOptions options = ExportOptions::fromPreferences(project);
    if (invocation.has(kPlatformOption.name)) {
        options.generateForMac = invocation.value(kPlatformOption.name) == u"mac";
    }
    options.clipsToBounds = invocation.choice(kClipOption.name).value_or(options.clipsToBounds);
    options.includesImages = invocation.choice(kImagesOption.name).value_or(options.includesImages);
    // What a package remembers empties no folder of the user's.
    options.cleansImageDirectory = invocation.has(kCleanOption.name);
    options.stamp.date = dateFrom(invocation).toStdString();
    options.isDryRun = invocation.has(kDryRunOption.name);
    return options;
}

// One package goes right into the directory, each of several into a folder with its name.
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

void writeJson(const ExportResult& result, const QString& directory, JsonWriter& json) {
    json.beginObject();
    writeDiagnostics(result.diagnostics, json);
    json.key("directory").string(directory);
    json.key("files").beginArray();
    for (const QString& path : result.files.paths) {
        json.string(path);
    }
    json.endArray().endObject();
}

void printText(const ExportResult& result, const QString& directory, DiagnosticDetail detail,
               Report& report) {
    for (const QString& line : linesOf(result.diagnostics, detail)) {
        report.writeLine(report.attributed(line));
    }
    for (const QString& path : result.files.paths) {
        report.printLine(pathOf(path, directory));
    }
}

void tellCleaning(const ExportResult& result, const QString& directory, Report& report) {
    const size_t count = result.files.removedFilesCount;
    if (count == 0) { return; }
    report.writeLine(u"tweenc: %1/images: %2 removed, as --clean-images says"_s.arg(
        directory, counted(count, u"file")));
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
        ExportOptions options = optionsFrom(invocation, *project);
        const bool usingSwift = takeLanguage(invocation, *project, options);
        result = exportCodeToDirectory(project, directory, usingSwift, options);
    } catch (const ExportError& error) { throw InputError(report.packagePath(), error.message()); }
    tellCleaning(result, directory, report);
    for (const ExportFailure& failure : result.files.failures) {
        report.failOutside({pathOf(failure.path, directory), failure.reason});
    }
    if (report.isJson()) {
        report.setResult([&](JsonWriter& json) { writeJson(result, directory, json); });
    } else {
        printText(result, directory, detailFrom(invocation), report);
    }
    if (invocation.has(kStrictOption.name) && hasWarnings(result)) { report.endWithWarnings(); }
}

ExitCode run(const Invocation& invocation, Console& console) {
    if (invocation.value(kOutOption.name).isEmpty()) {
        throw UsageError{u"--out takes a directory"_s};
    }
    requireOneLine(invocation.value(kDateOption.name));
    invocation.requireNotBoth(kCleanOption, {kNoImagesOption});
    invocation.requireNotBoth(kQuietOption, {kVerboseOption});
    requireOneLanguage(invocation);
    requireFoldersOfTheirOwn(invocation);
    return runOnPackages(invocation, console,
                         [&](Report& report) { exportPackage(invocation, report); });
}

}  // namespace

const Verb& exportVerb() {
    static const Verb verb{
        "export",
        "PKG...",
        1,
        Verb::kMany,
        "Writes source code and artwork, over the files of an export before; several projects go "
        "into a folder each. Options left out come from the project's preferences.",
        {kOutOption, kLanguageOption, kSwiftOption, kPlatformOption, kClipOption, kNoClipOption,
         kImagesOption, kNoImagesOption, kCleanOption, kDateOption, kDryRunOption, kStrictOption,
         kVerboseOption, kQuietOption, kJsonOption},
        run};
    return verb;
}

}  // namespace tweenery
