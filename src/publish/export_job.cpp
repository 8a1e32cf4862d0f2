#include "publish/export_job.h"

#include "base/errors.h"
#include "codegen/export_error.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Runs what may find that the project cannot be exported; says why.
template <class Attempt>
QString obstacleTo(const Attempt& attempt) {
    try {
        attempt();
    } catch (const ExportError& error) { return error.message(); } catch (const InputError& error) {
        return u"“%1” %2"_s.arg(error.entry(), error.reason());
    }
    return {};
}

bool isImage(const QString& path) {
    return path.contains(u'/');
}

}  // namespace

ExportJob::ExportJob(DocumentSnapshot snapshot, QString projectPath, ExportHistory history)
    : m_snapshot(std::move(snapshot)),
      m_projectPath(std::move(projectPath)),
      m_history(std::move(history)) {}

const PCProject::Ptr& ExportJob::project() {
    if (!m_project) { m_project = m_snapshot.projectForReading(); }
    return m_project;
}

ExportForecast ExportJob::forecast(const ExportChoices& choices) {
    ExportForecast forecast;
    forecast.lastDirectory = m_history.lastDirectory(m_projectPath);
    if (!forecast.lastDirectory.isEmpty() && choices.options.cleansImageDirectory) {
        forecast.oldImagesCount = oldImagesCount(forecast.lastDirectory);
    }
    forecast.obstacle = obstacleTo([&] {
        forecast.notes = diagnosticsOfExport(*project(), choices.usingSwift, choices.options);
        ExportOptions dry = choices.options;
        dry.isDryRun = true;
        const ExportResult result =
            exportCodeToDirectory(project(), u"."_s, choices.usingSwift, dry);
        for (const QString& path : result.files.paths) {
            if (isImage(path)) {
                ++forecast.imagesCount;
            } else {
                forecast.sources << path;
            }
        }
    });
    return forecast;
}

ExportOutcome ExportJob::run(const ExportChoices& choices, const QString& directory,
                             const ArtworkProgress& progress) {
    ExportOutcome outcome;
    outcome.directory = directory;
    outcome.obstacle = obstacleTo([&] {
        outcome.files = exportCodeToDirectory(project(), directory, choices.usingSwift,
                                              choices.options, progress)
                            .files;
    });
    if (outcome.files.paths.isEmpty()) { return outcome; }
    outcome.leftBehind = m_history.leftBehind(directory, m_projectPath, outcome.files.paths);
    m_history.note(directory, m_projectPath, outcome.files.paths);
    return outcome;
}

}  // namespace tweenery
