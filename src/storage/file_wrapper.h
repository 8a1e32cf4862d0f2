#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>

namespace tweenery {

/// One node of a package in memory: a directory, a regular file, or something else (a symbolic
/// link), which is carried along untouched and never opened. The tree is owned from the root down.
class FileWrapper : public std::enable_shared_from_this<FileWrapper> {
 public:
    enum class Kind { Directory, RegularFile, SymbolicLink };
    using Ptr = std::shared_ptr<FileWrapper>;
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
    static Ptr symbolicLink(const QByteArray& target, const QString& preferredFilename);

    Kind kind() const { return m_kind; }
    bool isDirectory() const { return m_kind == Kind::Directory; }
    bool isRegularFile() const { return m_kind == Kind::RegularFile; }

    /// The name under which the node is filed in its parent, or on disk; null when it has none.
    const QString& filename() const { return m_filename; }
    void setFilename(const QString& name) { m_filename = name; }
    /// The name that the node would like to be filed under.
    const QString& preferredFilename() const { return m_preferredFilename; }
    void setPreferredFilename(const QString& name) { m_preferredFilename = name; }

    /// The bytes of a regular file, or the target of a symbolic link. Shared, never copied.
    const QByteArray& contents() const { return m_contents; }

    /// Empty for anything but a directory.
    const Children& fileWrappers() const;
    /// The child of that name, or null.
    Ptr child(const QString& name) const;
    /// Files `node` under its preferred name and returns the name used: when the name is taken, a
    /// number is put before the extension. The node loses its origins: it is new at this place.
    /// Throws AssertionFailure when this is no directory, or the name is empty, ".", "..", or holds
    /// "/" or NUL.
    QString addFileWrapper(const Ptr& node);
    /// Throws AssertionFailure when `node` is no child. The node loses its origins.
    void removeFileWrapper(const Ptr& node);

    /// What was on disk when this node was read or last saved; nullopt for a node made in memory.
    /// The parent of a node with an origin has one too.
    const std::optional<Origin>& origin() const { return m_origin; }
    /// Says what is on disk now. A directory forgets its removed entries.
    void setOrigin(const std::optional<Origin>& origin);
    /// The entries that are on disk, as far as we know, and were taken out of this directory since:
    /// nodes that carry their kind, origin and stored children only. A child that was filed under
    /// such a name since has no origin.
    const Children& removedEntries() const;

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
    explicit FileWrapper(Kind kind) : m_kind(kind) {}
    static Ptr create(Kind kind, const QString& preferredFilename);
    void removeChild(Children::iterator position);
    Ptr takeStoredState();
    void describe(const QString& indent, QString& text) const;

    Kind m_kind;
    QString m_filename;
    QString m_preferredFilename;
    QByteArray m_contents;
    std::unique_ptr<Children> m_children;  // of directories
    std::unique_ptr<Children> m_removed;   // of directories that lost an entry
    std::optional<Origin> m_origin;
};

/// True for a name that one directory entry can have: not empty, ".", or "..", without "/" and NUL,
/// valid Unicode, at most 255 bytes in UTF-8.
bool isSafeFilename(const QString& name);

}  // namespace tweenery
