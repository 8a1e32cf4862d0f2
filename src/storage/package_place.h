#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

#include "storage/posix_files.h"

namespace tweenery {

/// Where a directory stands in its package: bounds the depth and names entries in errors.
struct DirectoryPlace {
    static constexpr int maxDepth = 64;

    std::shared_ptr<const DirectoryPlace> parent;  // null for the package itself
    QString name;                                  // of the package itself: its path
    int depth = 0;

    /// Throws InputError when that is too deep.
    void enter(const std::shared_ptr<const DirectoryPlace>& directory, const QString& filename);
    /// Relative to the package, fit for a message.
    QString path() const;
    QString pathOf(const QString& filename) const;
};

/// A place for a package: an open directory and a name in it.
struct PackagePlace {
    QString path;  // for messages
    FileDescriptor parent;
    std::string name;

    /// The place that `path` means. A symbolic link to a package means the package; else the last
    /// component need not exist. Throws InputError.
    explicit PackagePlace(const QString& path);
    [[noreturn]] void fail(const QString& whatFailed, int error) const;
};

/// The last component of `path`, or of what it stands for ("." for example).
QString packageName(const QString& path);

}  // namespace tweenery
