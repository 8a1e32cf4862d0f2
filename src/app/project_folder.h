#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>
#include <vector>

namespace tweenery {

/// A project, or a folder, in a folder.
struct FolderEntry {
    QString path;
    QString name;  // of the file system
    bool isProject = false;
    QDateTime modified;
    QImage preview = {};  // of a project, once it was read
};

/// The folders and the projects in the folder at `path`, each by name; hidden ones and all other
/// files are left out. Throws InputError.
std::vector<FolderEntry> listProjectFolder(const QString& path);

/// What a text that the user typed in the folder `folder` means: an absolute path, which may begin
/// with "~", or one that starts there.
QString typedPath(const QString& text, const QString& folder);

/// What is at a path for somebody who wants to open a project.
struct FoundPlace {
    enum class Kind { Project, Folder, Refused };
    Kind kind = Kind::Refused;
    QString path;         // of a project also for what lies in it
    QString reason = {};  // when refused
};
FoundPlace findPlace(const QString& path);

/// What saving a project at a path would do.
struct SavePlace {
    enum class Kind { Free, ReplacesProject, Refused };
    Kind kind = Kind::Refused;
    QString reason = {};  // when refused
};
SavePlace checkSavePlace(const QString& path);

/// Makes the folder `name` in the one at `parent`. What was wrong; null when nothing was.
QString makeFolder(const QString& parent, const QString& name);

/// Where removable and network volumes are mounted. May wait for them.
QStringList mountedVolumes();

}  // namespace tweenery
