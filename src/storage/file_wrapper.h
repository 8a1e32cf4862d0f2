#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace tweenery {

/// One node of a package in memory: a directory, a regular file, or something else (a symbolic
/// link), which is carried along untouched and never opened. The tree is owned from the root down.
/// Files and links do not change once they are filed: another one takes their place. So a snapshot
/// shares them, and the directories that did not change since the snapshot before it.
class FileWrapper {
 public:
    enum class Kind { Directory, RegularFile, SymbolicLink };
    using Ptr = std::shared_ptr<FileWrapper>;
    /// A tree that never changes, for any thread to read.
    using Snapshot = std::shared_ptr<const FileWrapper>;
    /// By name, in code-unit order of the name.
    using Children = std::map<QString, Ptr>;

    /// Where a node was read from, to notice changes on disk and to hard-link what is unchanged.
    /// A directory has only device and inode; its entries say the rest.
    struct Origin {
        uint64_t device = 0;
        uint64_t inode = 0;
        int64_t size = 0;
        int64_t modifiedSeconds = 0;
        int64_t modifiedNanoseconds = 0;
        bool operator==(const Origin&) const = default;
    };

    static Ptr directory(const QString& preferredFilename = {});
    static Ptr regularFile(const QByteArray& contents, const QString& preferredFilename);
    /// A file whose bytes cost time: `make` is called once, by the thread that first asks for them.
    static Ptr regularFileMadeLater(std::function<QByteArray()> make,
                                    const QString& preferredFilename);
    static Ptr symbolicLink(const QByteArray& target, const QString& preferredFilename);
    ~FileWrapper();
    FileWrapper(const FileWrapper&) = delete;
    FileWrapper& operator=(const FileWrapper&) = delete;

    Kind kind() const { return m_kind; }
    bool isDirectory() const { return m_kind == Kind::Directory; }
    bool isRegularFile() const { return m_kind == Kind::RegularFile; }

    /// The name under which the node is filed in its parent, or on disk; null when it has none.
    const QString& filename() const { return m_filename; }
    void setFilename(const QString& name);
    /// The name that the node would like to be filed under.
    const QString& preferredFilename() const { return m_preferredFilename; }

    /// The bytes of a regular file, or the target of a symbolic link. Shared, never copied.
    /// Throws what the maker of a file made later throws.
    const QByteArray& contents() const;

    /// Empty for anything but a directory.
    const Children& fileWrappers() const;
    /// The child of that name, or null.
    Ptr child(const QString& name) const;
    /// Files `node` under its preferred name and returns the name used: when the name is taken, a
    /// number is put before the extension. The node loses its origins: it is new at this place. A
    /// file that was filed before is filed as a copy, which shares the bytes.
    /// Throws AssertionFailure when this is no directory, or the name is empty, ".", "..", or holds
    /// "/" or NUL.
    QString addFileWrapper(const Ptr& node);
    /// Throws AssertionFailure when `node` is no child. A directory loses its origins.
    void removeFileWrapper(const Ptr& node);

    /// What was on disk when this node was read or last saved; nullopt for a node made in memory.
    /// The parent of a node with an origin has one too. A node and what stands for it in snapshots
    /// have one origin between them.
    const std::optional<Origin>& origin() const { return m_place->origin; }
    /// Says what is on disk now, of a directory also that the entries removed from it are not there
    /// any more. Not while a snapshot is being saved.
    void setOrigin(const std::optional<Origin>& origin) const;
    /// The entries that are on disk, as far as we know, and were taken out of this directory since:
    /// nodes that carry their kind, origin, bytes and stored entries. A child that was filed under
    /// such a name since has no origin.
    Children removedEntries() const;

    /// This directory with all below it as it stands now. Takes as long as there are entries in the
    /// directories that hold others and changed, or hold changed ones, since the last snapshot;
    /// copies no bytes, and no list of files before that list changes.
    Snapshot snapshot() const;

    // Helpers used by every writer of the package.

    /// Removes the child of that name if there is one, then adds a regular file with these bytes.
    /// When the bytes are equal to the child's, the child stays, so that a save keeps its entry.
    void pc_replaceSubFileWrapperNamed(const QString& name, const QByteArray& data);
    void pc_deleteSubFileWrapperNamed(const QString& name);
    void pc_ensureSubfileWrapperDoesNotExistWithName(const QString& name);
    /// The child of that name, or a new empty directory. Throws InputError when the child is there
    /// and is no directory.
    Ptr pc_ensureSubfileWrapperDirectoryExistsWithName(const QString& name);
    /// Deep copy of all children into another directory; nodes that are neither directory nor
    /// regular file are skipped.
    void pc_copySubFileWrappersToFileWrapper(FileWrapper& target) const;
    /// One line per node, each level indented by a further vertical bar and five blanks; a
    /// `name.data` file is shown with its decoded name behind it.
    QString debugDescriptionWithIndent(const QString& indent) const;

 private:
    struct Node;
    struct Deferred;
    // What is known about the disk, shared by all that stand for one node.
    struct Place {
        std::optional<Origin> origin;
        bool isInSnapshot = false;  // and may get an origin once that is saved
        bool mayBeStored() const { return origin || isInSnapshot; }
    };

    FileWrapper(Kind kind, std::shared_ptr<Place> place)
        : m_kind(kind), m_place(std::move(place)) {}
    static Ptr create(Kind kind, const QString& preferredFilename);
    Ptr copyOfFile() const;
    Children& ownChildren();
    void removeChild(QString name);
    static Ptr takeStoredState(Ptr& node);
    void didChange();
    void describe(const QString& indent, QString& text) const;

    Kind m_kind;
    QString m_filename;
    QString m_preferredFilename;
    QByteArray m_contents;
    std::shared_ptr<Deferred> m_deferred;  // in place of the contents, of files made later
    std::shared_ptr<Place> m_place;

    // Of directories.
    std::shared_ptr<Children> m_children;
    bool m_holdsDirectories = false;              // or did once
    mutable bool m_sharesChildren = false;        // with snapshots, as long as all are files
    std::unique_ptr<std::vector<Ptr>> m_removed;  // once one lost an entry; several of one name
    FileWrapper* m_parent = nullptr;
    mutable Ptr m_snapshot;  // until this or something below changes
};

/// True for a name that one directory entry can have: not empty, ".", or "..", without "/" and NUL,
/// valid Unicode, at most 255 bytes in UTF-8.
bool isSafeFilename(const QString& name);

}  // namespace tweenery
