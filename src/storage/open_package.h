#pragma once

#include <QString>

#include "storage/posix_files.h"

namespace tweenery {

/// Opens the package directory, for reading. Of a package that was set aside by a save which was
/// cut off in the midst of a replacement in two steps, that directory. Throws InputError.
FileDescriptor openPackage(const QString& path);

}  // namespace tweenery
