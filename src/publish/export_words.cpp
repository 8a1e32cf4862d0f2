#include "publish/export_words.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kMostNames = 8;  // that one text lists

QString counted(size_t count, const QString& one, const QString& several) {
    return count == 1 ? u"1 "_s + one : QString::number(count) + u' ' + several;
}

QString images(size_t count) {
    return counted(count, u"image"_s, u"images"_s);
}

QString files(size_t count) {
    return counted(count, u"file"_s, u"files"_s);
}

// "a, b and c".
QString joined(const QStringList& names) {
    if (names.size() < 2) { return names.join(QString()); }
    return names.first(names.size() - 1).join(u", "_s) + u" and "_s + names.last();
}

QStringList shortened(QStringList names) {
    const qsizetype rest = names.size() - kMostNames;
    if (rest <= 1) { return names; }
    names.resize(kMostNames);
    return names << u"%1 more"_s.arg(rest);
}

QString imagesFolderIn(const QString& directory) {
    return directory + u"/images"_s;
}

size_t imagesAmong(const QStringList& paths) {
    return static_cast<size_t>(std::count_if(
        paths.begin(), paths.end(), [](const QString& path) { return path.contains(u'/'); }));
}

}  // namespace

QString wordsOfForecast(const ExportForecast& forecast) {
    if (!forecast.obstacle.isNull()) { return u"Cannot be exported: %1."_s.arg(forecast.obstacle); }
    if (forecast.sources.isEmpty()) { return {}; }
    QStringList written = forecast.sources;
    if (forecast.imagesCount > 0) { written << images(forecast.imagesCount); }
    const QString where = forecast.lastDirectory.isEmpty()
                              ? u"the folder you choose"_s
                              : u"%1, or the folder you choose"_s.arg(forecast.lastDirectory);
    return u"Writes %1 into %2."_s.arg(joined(written), where);
}

QString wordsOfDeletion(const ExportForecast& forecast, const ExportChoices& choices) {
    const bool deletes = choices.options.includesImages && choices.options.cleansImageDirectory;
    if (!deletes) { return {}; }
    if (forecast.lastDirectory.isEmpty()) {
        return u"Empties the folder “images” in the folder you choose first."_s;
    }
    return u"Deletes what is in %1 first: %2."_s.arg(imagesFolderIn(forecast.lastDirectory),
                                                     files(forecast.oldImagesCount));
}

QString wordsOfNotes(size_t count) {
    return count == 0 ? QString() : counted(count, u"note"_s, u"notes"_s);
}

QString wordsOfResult(const ExportOutcome& outcome) {
    const size_t count = imagesAmong(outcome.files.paths);
    const bool hasSource = static_cast<size_t>(outcome.files.paths.size()) > count;
    QStringList written;
    if (hasSource) { written << u"1 class"_s; }
    if (count > 0 || !hasSource) { written << images(count); }
    return u"Exported "_s + joined(written);
}

QString detailOfResult(const ExportOutcome& outcome) {
    QStringList lines{u"to "_s + outcome.directory};
    if (outcome.files.removedFilesCount > 0) {
        lines << u"Deleted from “images” before: %1."_s.arg(files(outcome.files.removedFilesCount));
    }
    if (!outcome.leftBehind.isEmpty()) {
        lines << u"Still there from an earlier export: %1."_s.arg(
            joined(shortened(outcome.leftBehind)));
    }
    return lines.join(u'\n');
}

QString wordsOfStop(const ExportOutcome& outcome) {
    return u"Stopped. %1 written into %2."_s.arg(
        counted(static_cast<size_t>(outcome.files.paths.size()), u"file was"_s, u"files were"_s),
        outcome.directory);
}

Alert alertBeforeDeletion(size_t count, const QString& directory) {
    return {u"Delete %1 before the Export?"_s.arg(files(count)),
            u"“%1” is emptied before the new images are written. This cannot be undone."_s.arg(
                imagesFolderIn(directory)),
            {u"Cancel"_s, u"Delete and Export"_s},
            {},
            0};
}

Alert alertOfFailures(const ExportOutcome& outcome, const QString& projectName) {
    if (!outcome.obstacle.isNull()) {
        return {
            u"“%1” Was Not Exported"_s.arg(projectName), outcome.obstacle + u'.', {u"Ok"_s}, {}};
    }
    const auto& failures = outcome.files.failures;
    QStringList lines;
    for (const ExportFailure& failure : failures) {
        const bool isWhole = failure.path == u".";
        lines << u"“%1”: %2"_s.arg(isWhole ? outcome.directory : failure.path, failure.reason);
    }
    const QString title = outcome.files.paths.isEmpty()
                              ? u"“%1” Was Not Exported"_s.arg(projectName)
                              : u"%1 Could Not Be Written"_s.arg(files(failures.size()));
    return {title, shortened(lines).join(u'\n'), {u"Ok"_s}, {}};
}

}  // namespace tweenery
