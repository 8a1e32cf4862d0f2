#pragma once

#include <QByteArrayList>
#include <QString>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "storage/file_wrapper.h"

namespace tweenery {

/// Reads the directory at `path` with all its contents. Regular files only, opened without
/// following links; symbolic links are kept as nodes; any other kind of entry, an unreadable one,
/// one larger than 1 GiB or with a name that is not UTF-8 throws InputError naming it. `path`
/// itself may be a link to the package. Depth of directories is bounded by 64. The
/// root's filename is the last path component.
/// With `unread`, an entry that cannot be read is listed there and left out, up to 100 of them.
FileWrapper::Ptr readPackage(const QString& path, std::vector<InputError>* unread = nullptr);

/// Entries (relative paths) in which the package at `path` differs from what `root` was read from
/// or last saved as; empty when nothing changed behind our back. Compares identity, size and time.
/// What was edited in memory since is no difference. Throws InputError when there is no package.
QStringList entriesChangedOnDisk(const FileWrapper& root, const QString& path);

/// What a save does with a package that changed on disk since it was read.
enum class OnDiskChange { Refuse, Overwrite };

/// What a save put on disk, for the tree that the snapshot was taken of to learn.
class WrittenPackage {
 public:
    using Origins = std::vector<std::pair<const FileWrapper*, FileWrapper::Origin>>;

    WrittenPackage(FileWrapper::Snapshot snapshot, Origins origins)
        : m_snapshot(std::move(snapshot)), m_origins(std::move(origins)) {}
    /// Every node of the snapshot has its origin from now on, also where it stands in the tree or
    /// in a later snapshot. On the thread that owns the tree, while no snapshot of it is written.
    void becomeStored() const;

 private:
    FileWrapper::Snapshot m_snapshot;  // holds the nodes
    Origins m_origins;
};

/// Writes `snapshot` as the package at `path`, atomically: a new directory beside it, unchanged
/// entries hard-linked into it, changed ones written and flushed, then both exchanged in one step,
/// then the old one removed (a big one by a thread, which the next big save and the end of the
/// program wait for). A crash or failure at any moment leaves the old package or the new one,
/// whole. Throws InputError naming the entry and the reason; then nothing at `path` has changed.
/// `path` may be new; its parent directory must exist. A link to a package stays and the package is
/// replaced. Modes of directories and files are kept. A package that another program is saving is
/// refused.
///
/// On any thread, while the tree that the snapshot was taken of is edited. Snapshots of one tree
/// are written one at a time, in the order in which they were taken, each after the one before it
/// became stored; or one is refused as changed on disk.
WrittenPackage writeSnapshot(const FileWrapper::Snapshot& snapshot, const QString& path,
                             OnDiskChange policy = OnDiskChange::Refuse);

/// Writes `root` as it stands in that way, and every node's origin is what is then on disk.
void savePackage(const FileWrapper& root, const QString& path,
                 OnDiskChange policy = OnDiskChange::Refuse);

/// Writes `root` as a package at a place where nothing is yet, leaving the nodes' origins alone (a
/// backup, a copy). Atomic likewise. Throws InputError when something is at `path`, unless
/// `replace`: then it may be a package, told by its own name and its `version`, wherever a link at
/// `path` leads.
void writePackageCopy(const FileWrapper& root, const QString& path, bool replace = false);

/// Writes `root` in that way too, in the place of what package is at `path`; entries that are still
/// at `from` as `root` was read from there or saved to there are hard-linked where the file system
/// can, so that a copy costs little. Never in place of a package that `root` was read from.
void writeLinkedPackageCopy(const FileWrapper& root, const QString& path, const QString& from);

/// Writes one file atomically (temporary file beside it, flush, rename). A symbolic link at `path`
/// is replaced, not followed; a directory is refused. Throws InputError.
void writeFileAtomically(const QString& path, const QByteArray& data);
/// The same with bytes that come in pieces.
void writeFileAtomically(const QString& path, const QByteArrayList& pieces);

}  // namespace tweenery
