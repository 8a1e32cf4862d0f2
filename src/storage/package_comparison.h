#pragma once

#include "storage/package_place.h"

namespace tweenery {

/// Adds to `changed` what is different on disk in the directory `descriptor`, which stands at
/// `place`, from what `stored` knows of it: entries that changed, went or came.
void compareDirectory(const DirectoryPlace& place, int descriptor, const FileWrapper& stored,
                      QStringList& changed);
/// Likewise for the entry `name` of that directory, which has to be there as `stored` knows it.
void compareEntry(const DirectoryPlace& place, int descriptor, const QString& name,
                  const FileWrapper& stored, QStringList& changed);
/// Calls `visit` with the name and node of each entry that `directory` should have on disk.
template <typename Visit>
void forEachStoredEntry(const FileWrapper& directory, const Visit& visit) {
    for (const auto& [name, node] : directory.fileWrappers()) {
        if (node->origin()) { visit(name, *node); }
    }
    for (const auto& [name, node] : directory.removedEntries()) {
        visit(name, *node);
    }
}

}  // namespace tweenery
