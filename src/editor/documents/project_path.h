#pragma once

#include <QString>

namespace tweenery {

/// The project that `path` means: a package itself, or the one that the file or folder lies in,
/// since a package is a document and no folder to its user. Null when it is neither. Asks the file
/// system.
QString packageMeantBy(const QString& path);

/// The path under which everybody knows the project at `path`: links resolved; of one that is not
/// there (yet), its folder's. As it stands when not even that is there.
QString canonicalProjectPath(const QString& path);

/// The folder for what the program has to remember about its work: locks and recovery copies.
/// `$XDG_STATE_HOME/tweenery`, by default in `~/.local/state`; a folder for tests while
/// QStandardPaths is in test mode.
QString stateFolder();

}  // namespace tweenery
