#include "cli/package_inventory.h"

#include "model/animation.h"
#include "model/images/image_set.h"
#include "model/property_timeline_group.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// What the files in a directory are; each kind of directory has its own function for the names.
enum class DirectoryKind {
    Root,
    Images,
    ImageSet,
    Animations,
    Animation,
    Element,
    Previews,
    Unknown
};

DirectoryKind kindOfSubdirectory(DirectoryKind parent, const QString& name) {
    switch (parent) {
        case DirectoryKind::Root:
            if (name == kImagesEntry) { return DirectoryKind::Images; }
            if (name == kAnimationsEntry) { return DirectoryKind::Animations; }
            if (name == kQuickLookEntry) { return DirectoryKind::Previews; }
            return DirectoryKind::Unknown;
        case DirectoryKind::Images:
            return DirectoryKind::ImageSet;
        case DirectoryKind::Animations:
            return DirectoryKind::Animation;
        case DirectoryKind::Animation:
            return DirectoryKind::Element;
        default:
            return DirectoryKind::Unknown;
    }
}

EntryKind kindOfRootFile(const QString& name) {
    if (name == kVersionEntry) { return EntryKind::Version; }
    if (name == kPreferencesEntry) { return EntryKind::Preferences; }
    if (name == kCanvasEntry) { return EntryKind::Canvas; }
    return EntryKind::Unknown;
}

EntryKind kindOfAnimationFile(const QString& name) {
    if (name == kAnimationNameFile) { return EntryKind::AnimationName; }
    if (name == kAnimationKeyAllFile) { return EntryKind::Timeline; }
    return EntryKind::Unknown;
}

bool isPreviewFile(const QString& name) {
    return name == u"Preview.jpg" || name == u"Preview_Thumbnail.jpg" ||
           name == u"Preview_Thumbnail@2x.jpg";
}

EntryKind kindOfFile(DirectoryKind parent, const QString& name) {
    switch (parent) {
        case DirectoryKind::Root:
            return kindOfRootFile(name);
        case DirectoryKind::Animation:
            return kindOfAnimationFile(name);
        case DirectoryKind::ImageSet:
            return PCImageSet::isRenditionFile(name) ? EntryKind::Rendition : EntryKind::Unknown;
        case DirectoryKind::Element:
            return timelineTypeOfFilename(name) ? EntryKind::Timeline : EntryKind::Unknown;
        case DirectoryKind::Previews:
            return isPreviewFile(name) ? EntryKind::Preview : EntryKind::Unknown;
        default:
            return EntryKind::Unknown;
    }
}

void collect(const FileWrapper& directory, DirectoryKind kind, const QString& prefix,
             std::vector<PackageEntry>& into) {
    for (const auto& [name, node] : directory.fileWrappers()) {
        const QString path = prefix + name;
        if (!node->isDirectory()) {
            const bool isFile = node->isRegularFile();
            into.push_back({isFile ? kindOfFile(kind, name) : EntryKind::Unknown, path, node});
            continue;
        }
        const DirectoryKind subdirectory = kindOfSubdirectory(kind, name);
        if (subdirectory == DirectoryKind::Unknown) {
            into.push_back({EntryKind::Unknown, path, node});
        }
        collect(*node, subdirectory, path + u'/', into);
    }
}

}  // namespace

std::vector<PackageEntry> inventoryOf(const FileWrapper& root) {
    std::vector<PackageEntry> entries;
    collect(root, DirectoryKind::Root, {}, entries);
    return entries;
}

}  // namespace tweenery
