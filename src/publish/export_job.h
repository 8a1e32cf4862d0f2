#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "codegen/project_exporter.h"
#include "model/document.h"
#include "publish/export_history.h"

namespace tweenery {

/// What the user has chosen for an export.
struct ExportChoices {
    bool usingSwift = false;
    ExportOptions options;

    static ExportChoices fromPreferences(PCProject& project) {
        return {project.preferences().generatedCodeUsesSwift(),
                ExportOptions::fromPreferences(project)};
    }
};

/// What an export would come to, before anything is written.
struct ExportForecast {
    std::vector<ExportDiagnostic> notes;
    QStringList sources;        // names of the files of source text
    size_t imagesCount = 0;     // files of artwork
    QString obstacle;           // why the project cannot be exported; null for most
    QString lastDirectory;      // where it was last exported to; empty: not known
    size_t oldImagesCount = 0;  // that would be deleted there
};

/// What an export came to.
struct ExportOutcome {
    QString directory;
    WrittenFiles files;
    QString obstacle;        // why nothing was written; null when the export began
    QStringList leftBehind;  // of earlier exports, not written by this one
};

/// Exports what a snapshot holds. Reads it once, when it is first needed. To be used on one thread
/// at a time, and outlives no thread that uses it.
class ExportJob {
 public:
    /// `projectPath` is the package's, empty for a project that was never saved.
    ExportJob(DocumentSnapshot snapshot, QString projectPath, ExportHistory history);

    /// A dry run. Throws nothing: what stands against the export is its obstacle.
    ExportForecast forecast(const ExportChoices& choices);
    /// Writes, and notes in the history what was written. `progress` may stop it.
    ExportOutcome run(const ExportChoices& choices, const QString& directory,
                      const ArtworkProgress& progress);

    const QString& projectName() const { return m_snapshot.projectName; }

 private:
    DocumentSnapshot m_snapshot;
    QString m_projectPath;
    ExportHistory m_history;
    PCProject::Ptr m_project;

    const PCProject::Ptr& project();
};

}  // namespace tweenery
