#pragma once

#include <QStringList>

namespace tweenery {

/// The projects last opened or saved, the newest first, at most 20, in the list that the programs
/// of the desktop share; some may be gone by now. While that list is damaged, or cannot be written,
/// it is left alone and the user's defaults hold ours.
QStringList recentProjects();
/// Makes the project at `path` the newest.
void addRecentProject(const QString& path);
/// Forgets the project at `path`, which may be gone.
void removeRecentProject(const QString& path);
/// Forgets all of them. What other programs registered stays.
void clearRecentProjects();

}  // namespace tweenery
