#include <fcntl.h>

#include <cerrno>
#include <mutex>

#include "base/errors.h"
#include "base/parallel_walk.h"
#include "base/path_name.h"
#include "storage/output_folder.h"
#include "storage/package_comparison.h"
#include "storage/package_entries.h"
#include "storage/package_place.h"
#include "storage/package_store.h"
#include "storage/posix_files.h"
#include "storage/staged_directory.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// Up to here each new entry is flushed by itself; beyond, one flush of the whole file system takes
// less time.
constexpr int kMaxSingleFlushes = 16;

// Thrown within a save when the package on disk is not what the tree was read from.
struct ChangedOnDisk {};

// What the package holds already of the file `node`: the file itself, or the one that it replaces
// when that has the same bytes. Null when it has to be written.
const FileWrapper* storedFile(const FileWrapper::Children& removed, const QString& name,
                              const FileWrapper& node) {
    if (node.origin()) { return &node; }
    const auto found = removed.find(name);
    const bool isSame = found != removed.end() && node.isRegularFile() &&
                        found->second->isRegularFile() &&
                        found->second->contents() == node.contents();
    return isSame ? found->second.get() : nullptr;
}

// The number of flushes that `directory` takes when stored entries are linked or not, or some
// number above kMaxSingleFlushes.
int flushesFor(const FileWrapper& directory, bool links) {
    int count = 1;
    const FileWrapper::Children removed = directory.removedEntries();
    for (const auto& [name, node] : directory.fileWrappers()) {
        if (count > kMaxSingleFlushes) { break; }
        if (node->isDirectory()) { count += flushesFor(*node, links); }
        if (node->isRegularFile() && !(links && storedFile(removed, name, *node))) { ++count; }
    }
    return count;
}

// Fills a staged directory with a tree: links what is unchanged, writes the rest.
class PackageBuilder {
 public:
    using Written = WrittenPackage::Origins;

    enum class Unchanged { Link, Write };

    PackageBuilder(Unchanged unchanged, OnDiskChange policy)
        : m_unchanged(unchanged), m_policy(policy) {}

    // Everything in `staged` is on the medium afterwards. Throws InputError or ChangedOnDisk.
    // `source` is the package with the entries that may be linked; none: nothing is.
    void build(const FileWrapper& root, const QString& path, const StagedDirectory& staged,
               const FileDescriptor& source);
    // The nodes below the root whose origin changes once the staged directory is in its place.
    Written takeWritten() { return std::move(m_written); }
    bool isBig() const { return m_walk.isBig(); }

 private:
    // By the name under which it is filed: a node's own idea of its name is not to be trusted here.
    using Child = FileWrapper::Children::const_iterator;

    // A directory in the making. Stays open while a subdirectory is being filled.
    struct Directory : DirectoryPlace {
        const FileWrapper* node = nullptr;
        int current = -1;  // the same directory of the source, if it is there
        int descriptor = -1;
        FileDescriptor ownedCurrent, ownedDescriptor;
        FileWrapper::Children removed;  // entries of the node that are still on disk
        std::vector<Child> subdirectories;
        Written written;
    };
    using DirectoryPtr = std::shared_ptr<Directory>;

    void fill(const DirectoryPtr& directory);
    void finish(Directory& directory);
    void requireUnchanged(const Directory& directory) const;
    void makeSubdirectory(Directory& directory, Child child) const;
    void fillSubdirectory(const DirectoryPtr& parent, Child child);
    void openCurrent(Directory& directory, const Directory& parent, const char* name) const;
    void placeEntry(Directory& directory, const QString& name, const FileWrapper& node);
    bool linkEntry(Directory& directory, const QString& name, const char* entryName,
                   const FileWrapper& node) const;
    bool link(const Directory& directory, const char* name, const FileWrapper& node) const;
    bool linkFailed(const Directory& directory, const char* name, const FileWrapper& node,
                    int error) const;
    FileWrapper::Origin writeFile(const Directory& directory, const char* name,
                                  const QByteArray& contents) const;
    FileWrapper::Origin writeLink(const Directory& directory, const char* name,
                                  const QByteArray& target) const;
    bool refusesChanges() const { return m_policy == OnDiskChange::Refuse; }
    [[noreturn]] static void failWriting(const Directory& directory, const char* name, int error);

    const Unchanged m_unchanged;
    const OnDiskChange m_policy;
    bool m_links = false;
    bool m_flushesEach = false;
    ParallelWalk m_walk;
    std::mutex m_mutex;
    Written m_written;
};

void PackageBuilder::build(const FileWrapper& root, const QString& path,
                           const StagedDirectory& staged, const FileDescriptor& source) {
    m_links = m_unchanged == Unchanged::Link && source;
    m_flushesEach = flushesFor(root, m_links) <= kMaxSingleFlushes;
    auto directory = std::make_shared<Directory>();
    directory->name = path;
    directory->node = &root;
    directory->current = source.number();
    directory->descriptor = staged.descriptor().number();
    m_walk.run([&] { fill(std::exchange(directory, nullptr)); });
    if (!m_flushesEach && ::syncfs(staged.descriptor().number()) != 0) {
        throw InputError(path, failureText(u"could not be flushed"_s, errno));
    }
}

void PackageBuilder::fill(const DirectoryPtr& directory) {
    directory->removed = directory->node->removedEntries();
    if (directory->current >= 0 && refusesChanges()) { requireUnchanged(*directory); }
    const FileWrapper::Children& children = directory->node->fileWrappers();
    for (auto child = children.begin(); child != children.end(); ++child) {
        const auto& [name, node] = *child;
        if (!isSafeFilename(name)) {
            throw InputError(directory->pathOf(name), u"is no name that a file can have"_s);
        }
        if (node->isDirectory()) {
            makeSubdirectory(*directory, child);
        } else {
            placeEntry(*directory, name, *node);
        }
    }
    finish(*directory);
    m_walk.forEach(0, directory->subdirectories.size(), [this, directory](size_t index) {
        fillSubdirectory(directory, directory->subdirectories[index]);
    });
}

// Entries that are kept show whether they changed when they are linked or entered. What is left
// to see here is whether others came, and whether those that go are the ones we know.
void PackageBuilder::requireUnchanged(const Directory& directory) const {
    if (directory.parent && !directory.node->origin()) {
        return;  // the parent saw to what was here
    }
    std::vector<ListedEntry> entries;
    if (!listDirectory(directory.current, entries)) {
        throw InputError(directory.path(), failureText(u"could not be listed"_s, errno));
    }
    size_t expected = 0;
    forEachStoredEntry(*directory.node, [&](const QString&, const FileWrapper&) { ++expected; });
    QStringList changed;
    for (const auto& [name, stored] : directory.removed) {
        compareEntry(directory, directory.current, name, *stored, changed);
    }
    if (entries.size() != expected || !changed.isEmpty()) { throw ChangedOnDisk(); }
}

void PackageBuilder::makeSubdirectory(Directory& directory, Child child) const {
    const QByteArray entryName = child->first.toUtf8();
    if (::mkdirat(directory.descriptor, entryName, ACCESSPERMS) != 0) {
        failWriting(directory, entryName, errno);
    }
    directory.subdirectories.push_back(child);
}

void PackageBuilder::fillSubdirectory(const DirectoryPtr& parent, Child child) {
    const auto& [name, node] = *child;
    const QByteArray entryName = name.toUtf8();
    auto directory = std::make_shared<Directory>();
    directory->enter(parent, name);
    directory->node = node.get();
    openCurrent(*directory, *parent, entryName);
    directory->ownedDescriptor = openDirectoryAt(parent->descriptor, entryName);
    directory->descriptor = directory->ownedDescriptor.number();
    if (directory->descriptor < 0) { failWriting(*parent, entryName, errno); }
    fill(directory);
}

void PackageBuilder::openCurrent(Directory& directory, const Directory& parent,
                                 const char* name) const {
    if (parent.current < 0) { return; }
    directory.ownedCurrent = openDirectoryAt(parent.current, name);
    directory.current = directory.ownedCurrent.number();
    if (directory.current >= 0 || !directory.node->origin() || !refusesChanges()) { return; }
    if (errno == ENOENT || errno == ENOTDIR) { throw ChangedOnDisk(); }
    throw InputError(directory.path(), failureText(u"could not be opened"_s, errno));
}

// All entries are made: gives the directory the mode that it has in the package, and flushes it.
void PackageBuilder::finish(Directory& directory) {
    struct stat made, current;
    const auto require = [&](bool done) {
        if (!done) {
            throw InputError(directory.path(), failureText(u"could not be written"_s, errno));
        }
    };
    require(::fstat(directory.descriptor, &made) == 0);
    if (directory.current >= 0) {
        require(::fstat(directory.current, &current) == 0);
        if (made.st_mode != current.st_mode) {
            require(::fchmod(directory.descriptor, current.st_mode & ALLPERMS) == 0);
        }
    }
    if (m_flushesEach) { require(flushDirectory(directory.descriptor)); }
    const std::lock_guard lock(m_mutex);
    m_written.insert(m_written.end(), directory.written.begin(), directory.written.end());
    if (directory.parent) { m_written.emplace_back(directory.node, originOf(made)); }
}

void PackageBuilder::placeEntry(Directory& directory, const QString& name,
                                const FileWrapper& node) {
    requireNotStopped();
    const QByteArray entryName = name.toUtf8();
    if (linkEntry(directory, name, entryName, node)) { return; }
    const FileWrapper::Origin origin = node.isRegularFile()
                                           ? writeFile(directory, entryName, node.contents())
                                           : writeLink(directory, entryName, node.contents());
    directory.written.emplace_back(&node, origin);
}

// False when the entry has to be written.
bool PackageBuilder::linkEntry(Directory& directory, const QString& name, const char* entryName,
                               const FileWrapper& node) const {
    if (!m_links || directory.current < 0) { return false; }
    const FileWrapper* stored = storedFile(directory.removed, name, node);
    if (!stored || !link(directory, entryName, *stored)) { return false; }
    if (stored != &node) { directory.written.emplace_back(&node, *stored->origin()); }
    return true;
}

// Links first and looks then, so that what was looked at is what was linked. False when the entry
// has to be written.
bool PackageBuilder::link(const Directory& directory, const char* name,
                          const FileWrapper& node) const {
    if (::linkat(directory.current, name, directory.descriptor, name, 0) != 0) {
        return linkFailed(directory, name, node, errno);
    }
    struct stat status;
    if (::fstatat(directory.descriptor, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        failWriting(directory, name, errno);
    }
    if (isAsStored(node, status)) { return true; }
    if (refusesChanges()) { throw ChangedOnDisk(); }
    if (::unlinkat(directory.descriptor, name, 0) != 0) { failWriting(directory, name, errno); }
    return false;
}

bool PackageBuilder::linkFailed(const Directory& directory, const char* name,
                                const FileWrapper& node, int error) const {
    struct stat status;
    const bool isThere = ::fstatat(directory.current, name, &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (!isThere || !isAsStored(node, status)) {
        if (refusesChanges()) { throw ChangedOnDisk(); }
        return false;
    }
    for (const int writable : {EPERM, EMLINK, EXDEV, ENOTSUP, ENOSYS}) {
        if (error == writable) { return false; }
    }
    failWriting(directory, name, error);
}

FileWrapper::Origin PackageBuilder::writeFile(const Directory& directory, const char* name,
                                              const QByteArray& contents) const {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor file(::openat(directory.descriptor, name, flags, DEFFILEMODE));
    if (!file) { failWriting(directory, name, errno); }
    struct stat current, written;
    const bool replaces = directory.current >= 0 &&
                          ::fstatat(directory.current, name, &current, AT_SYMLINK_NOFOLLOW) == 0 &&
                          S_ISREG(current.st_mode);
    if (!writeAll(file.number(), contents) ||
        (replaces && ::fchmod(file.number(), current.st_mode & ACCESSPERMS) != 0) ||
        (m_flushesEach && ::fsync(file.number()) != 0) || ::fstat(file.number(), &written) != 0 ||
        !file.close()) {
        failWriting(directory, name, errno);
    }
    return originOf(written);
}

FileWrapper::Origin PackageBuilder::writeLink(const Directory& directory, const char* name,
                                              const QByteArray& target) const {
    struct stat written;
    if (::symlinkat(target, directory.descriptor, name) != 0 ||
        ::fstatat(directory.descriptor, name, &written, AT_SYMLINK_NOFOLLOW) != 0) {
        failWriting(directory, name, errno);
    }
    return originOf(written);
}

void PackageBuilder::failWriting(const Directory& directory, const char* name, int error) {
    throw InputError(directory.pathOf(QString::fromUtf8(name)),
                     failureText(u"could not be written"_s, error));
}

void requireDirectory(const FileWrapper& root) {
    assertContract(root.isDirectory(), u"a package is a directory"_s);
}

[[noreturn]] void refuseChanged(const FileWrapper& root, const QString& path) {
    if (!root.origin()) { throw InputError(path, u"already exists"_s); }
    const QStringList changed = entriesChangedOnDisk(root, path);
    throw InputError(changed.isEmpty() ? path : changed.first(),
                     u"was changed on disk since it was opened"_s);
}

// A link may have led here, and a name alone makes no package.
void requireReplaceable(const PackagePlace& place, const FileDescriptor& current) {
    const QString name = QString::fromUtf8(place.name);
    if (pathExtension(name) != kPackageExtension || !isPackage(current)) {
        throw InputError(place.path, u"is no package that could be replaced"_s);
    }
}

}  // namespace

void WrittenPackage::becomeStored() const {
    for (const auto& [node, origin] : m_origins) {
        node->setOrigin(origin);
    }
}

WrittenPackage writeSnapshot(const FileWrapper::Snapshot& snapshot, const QString& path,
                             OnDiskChange policy) {
    requireDirectory(*snapshot);
    const PackagePlace place(path);
    StagedDirectory staged(place, true);
    PackageBuilder builder(PackageBuilder::Unchanged::Link, policy);
    struct stat status;
    try {
        builder.build(*snapshot, path, staged, staged.current());
    } catch (const ChangedOnDisk&) { refuseChanged(*snapshot, path); }
    if (::fstat(staged.descriptor().number(), &status) != 0) {
        place.fail(u"could not be examined"_s, errno);
    }
    WrittenPackage::Origins origins = builder.takeWritten();
    origins.emplace_back(snapshot.get(), originOf(status));
    staged.commit();
    if (builder.isBig()) {
        staged.removeReplacedInBackground();  // it takes as long as building
    }
    return {snapshot, std::move(origins)};
}

void savePackage(const FileWrapper& root, const QString& path, OnDiskChange policy) {
    requireDirectory(root);
    writeSnapshot(root.snapshot(), path, policy).becomeStored();
}

void writePackageCopy(const FileWrapper& root, const QString& path, bool replace) {
    requireDirectory(root);
    const PackagePlace place(path);
    StagedDirectory staged(place, replace);
    if (staged.current()) { requireReplaceable(place, staged.current()); }
    PackageBuilder(PackageBuilder::Unchanged::Write, OnDiskChange::Overwrite)
        .build(root, path, staged, staged.current());
    staged.commit();
}

void writeLinkedPackageCopy(const FileWrapper& root, const QString& path, const QString& from) {
    requireDirectory(root);
    const FileDescriptor source(
        ::open(systemPath(from).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const PackagePlace place(path);
    StagedDirectory staged(place, true);
    if (staged.current()) { requireReplaceable(place, staged.current()); }
    PackageBuilder(PackageBuilder::Unchanged::Link, OnDiskChange::Overwrite)
        .build(root, path, staged, source);
    staged.commit();
}

void writeFileAtomically(const QString& path, const QByteArray& data) {
    writeFileAtomically(path, QByteArrayList{data});
}

void writeFileAtomically(const QString& path, const QByteArrayList& pieces) {
    FileInTheMaking file(path);
    file.write(pieces);
    file.commit();
}

}  // namespace tweenery
