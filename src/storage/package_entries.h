#pragma once

#include <QString>

#include "storage/file_wrapper.h"
#include "storage/posix_files.h"

namespace tweenery {

// The names by which the format knows packages and what lies in them.
inline constexpr QStringView kPackageExtension = u"tweenery";
inline const QString kVersionEntry = QStringLiteral("version");
inline const QString kPreferencesEntry = QStringLiteral("preferences");
inline const QString kCanvasEntry = QStringLiteral("canvas");
inline const QString kImagesEntry = QStringLiteral("images");
inline const QString kAnimationsEntry = QStringLiteral("animations");
inline const QString kQuickLookEntry = QStringLiteral("QuickLook");

/// What an error says of an entry that is a directory or a link.
inline const QString kIsNoRegularFile = QStringLiteral("is not a regular file");
/// `node` itself. Throws InputError, naming `entry`, unless it is a regular file.
const FileWrapper& requireRegularFile(const FileWrapper& node, const QString& entry);

/// True for a directory with an entry that every package has; its contents may be damaged.
bool looksLikePackage(const FileDescriptor& directory);
/// True for a directory whose `version` tells a model version, which is to be trusted when
/// something is to be replaced.
bool isPackage(const FileDescriptor& directory);

}  // namespace tweenery
