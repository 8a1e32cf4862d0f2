#pragma once

#include <QString>

namespace tweenery {

/// Parts of a path, as text; the file system is not asked.

/// What stands behind the last slash; slashes at the end are left out first.
QString lastPathComponent(const QString& path);

/// What stands behind the last dot of a file name, without the dot; empty for a name that has no
/// dot, or only one that leads or ends it.
QString pathExtension(const QString& filename);

/// The file name without the dot and what pathExtension() gives.
QString withoutPathExtension(const QString& filename);

}  // namespace tweenery
