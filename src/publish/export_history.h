#pragma once

#include <QString>
#include <QStringList>

namespace tweenery {

/// What earlier exports of each project wrote, and into which folders: kept in a folder of the
/// program's own, one file for each project, never beside the user's work. What is damaged or
/// cannot be written counts as not known. May be used from any thread, but by one at a time.
class ExportHistory {
 public:
    /// `folder` need not exist.
    explicit ExportHistory(QString folder) : m_folder(std::move(folder)) {}

    /// Where the project at `project` was last exported to; empty when that is not known or no
    /// longer there. A project without a path is one that was never saved.
    QString lastDirectory(const QString& project) const;
    /// The files of earlier exports of it into that directory, by paths relative to it, sorted.
    QStringList filesIn(const QString& directory, const QString& project) const;
    /// Those that are still there and that an export of the files `written` leaves as they are.
    QStringList leftBehind(const QString& directory, const QString& project,
                           const QStringList& written) const;
    /// An export wrote these files. Those left behind stay known.
    void note(const QString& directory, const QString& project, const QStringList& written);

 private:
    QString m_folder;

    QString fileOf(const QString& project) const;
};

}  // namespace tweenery
