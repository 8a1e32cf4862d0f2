#include "storage/package_comparison.h"

#include <fcntl.h>

#include <cerrno>
#include <set>

#include "base/errors.h"
#include "storage/open_package.h"
#include "storage/package_store.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

std::set<QString> storedNames(const FileWrapper& directory) {
    std::set<QString> names;
    forEachStoredEntry(directory,
                       [&](const QString& name, const FileWrapper&) { names.insert(name); });
    return names;
}

}  // namespace

void compareEntry(const DirectoryPlace& place, int descriptor, const QString& name,
                  const FileWrapper& stored, QStringList& changed) {
    const QByteArray entryName = name.toUtf8();
    struct stat status;
    if (::fstatat(descriptor, entryName, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !isAsStored(stored, status)) {
        changed.append(place.pathOf(name));
        return;
    }
    if (!stored.isDirectory()) { return; }
    const FileDescriptor opened = openDirectoryAt(descriptor, entryName);
    if (!opened) {
        changed.append(place.pathOf(name));
        return;
    }
    // The parent outlives this call; the place needs no ownership of it.
    DirectoryPlace subdirectory;
    subdirectory.enter({std::shared_ptr<void>(), &place}, name);
    compareDirectory(subdirectory, opened.number(), stored, changed);
}

void compareDirectory(const DirectoryPlace& place, int descriptor, const FileWrapper& stored,
                      QStringList& changed) {
    std::vector<ListedEntry> entries;
    if (!listDirectory(descriptor, entries)) {
        throw InputError(place.path(), failureText(u"could not be listed"_s, errno));
    }
    const std::set<QString> names = storedNames(stored);
    for (const ListedEntry& entry : entries) {
        if (!names.contains(QString::fromStdString(entry.name))) {
            changed.append(place.pathOf(printableName(entry.name)));
        }
    }
    forEachStoredEntry(stored, [&](const QString& name, const FileWrapper& node) {
        compareEntry(place, descriptor, name, node, changed);
    });
}

QStringList entriesChangedOnDisk(const FileWrapper& root, const QString& path) {
    const FileDescriptor package = openPackage(path);
    DirectoryPlace place;
    place.name = path;
    QStringList changed;
    compareDirectory(place, package.number(), root, changed);
    changed.sort();
    return changed;
}

}  // namespace tweenery
