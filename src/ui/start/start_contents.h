#pragma once

#include <QImage>
#include <QString>
#include <QStringList>
#include <vector>

namespace tweenery {

/// A sample project as the start window offers it.
struct Sample {
    QString title;
    QString preview;  // the name of a picture of the program
    QString project;  // path of the package
    QString video;    // path of a loop
};

/// A recent project, as the disk knows it.
struct RecentProject {
    QString path;
    QString title;   // the file's name without its suffix
    QString folder;  // that it lies in
    QImage picture;  // null: the package has none
    bool isMissing = false;
};

/// The folder of the program's samples: where it is installed, or built. Empty when there is none.
QString samplesFolder();
/// The samples that its list names, with those of their files that are there. Without a list that
/// can be read there are none.
std::vector<Sample> samplesIn(const QString& folder);

/// What is known of each without asking a disk.
std::vector<RecentProject> recentProjectsAt(const QStringList& paths);
/// Asks the disk, which may take its time: is the project there, and what does it look like?
void look(RecentProject& project);

}  // namespace tweenery
