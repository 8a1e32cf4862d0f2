#pragma once

#include <QString>
#include <vector>

#include "storage/file_wrapper.h"

namespace tweenery {

/// What an entry of a package is, by its place and name.
enum class EntryKind {
    Version,
    Preferences,
    Canvas,
    Rendition,  // of an image set
    AnimationName,
    Timeline,  // of an element in an animation, or an animation's master keyframes
    Preview,
    Unknown,  // carried along, never read: also whatever is not the file it should be
};

struct PackageEntry {
    EntryKind kind;
    QString path;  // in the package
    FileWrapper::Ptr node;
};

/// Every file and link of the package, and every directory that is not one of the format's own, in
/// the order of a walk by name.
std::vector<PackageEntry> inventoryOf(const FileWrapper& root);

}  // namespace tweenery
