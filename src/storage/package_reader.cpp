#include <dirent.h>
#include <fcntl.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <mutex>

#include "base/errors.h"
#include "base/limits.h"
#include "base/parallel_walk.h"
#include "storage/open_package.h"
#include "storage/package_entries.h"
#include "storage/package_place.h"
#include "storage/package_store.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

[[noreturn]] void failChanged(const QString& entry) {
    throw InputError(entry, u"was changed while it was read"_s);
}

unsigned char typeOf(mode_t mode) {
    return static_cast<unsigned char>(IFTODT(mode));
}

QString kindText(unsigned char type) {
    switch (type) {
        case DT_FIFO:
            return u"a named pipe"_s;
        case DT_SOCK:
            return u"a socket"_s;
        case DT_CHR:
        case DT_BLK:
            return u"a device"_s;
        default:
            return u"something unknown"_s;
    }
}

// What of the file is only said to be there. Leaves the file at its beginning.
int64_t bytesOfHoles(const FileDescriptor& file, off_t size) {
    constexpr int glances = 1000;
    int64_t stored = 0;
    off_t end = 0;
    for (int i = 0; i < glances && end < size; ++i) {
        const off_t begin = ::lseek(file.number(), end, SEEK_DATA);
        if (begin < 0) { break; }
        end = ::lseek(file.number(), begin, SEEK_HOLE);
        if (end < begin) { return 0; }  // the file system does not tell
        stored += end - begin;
    }
    ::lseek(file.number(), 0, SEEK_SET);
    return size - stored;
}

class PackageReader {
 public:
    explicit PackageReader(std::vector<InputError>* unread) : m_unread(unread) {}

    // `root` is open; its node is filled.
    void read(FileDescriptor root, const FileWrapper::Ptr& node, const QString& path);

 private:
    // A directory that is being read. Stays open while a subdirectory is.
    struct Directory : DirectoryPlace {
        FileDescriptor descriptor;
        FileWrapper* node = nullptr;
        std::vector<FileWrapper*> subdirectories;
    };
    using DirectoryPtr = std::shared_ptr<Directory>;

    void readDirectory(const DirectoryPtr& directory);
    void readSubdirectory(const DirectoryPtr& parent, FileWrapper& node);
    void readEntry(Directory& directory, const ListedEntry& entry);
    static void addSubdirectory(Directory& directory, const QString& filename);
    void readFile(const Directory& directory, const char* name, const QString& filename);
    void requireRoom(const FileDescriptor& file, const struct stat& status, const QString& entry);
    static void readLink(const Directory& directory, const char* name, const QString& filename);

    template <typename Read>
    void attempt(const Read& read);

    std::vector<InputError>* m_unread;  // null: the first entry that cannot be read ends all
    std::mutex m_mutex;
    ParallelWalk m_walk;
    std::atomic<int64_t> m_bytes = 0;
    std::atomic<int64_t> m_bytesOfHoles = 0;
};

void PackageReader::read(FileDescriptor root, const FileWrapper::Ptr& node, const QString& path) {
    auto directory = std::make_shared<Directory>();
    directory->name = path;
    directory->descriptor = std::move(root);
    directory->node = node.get();
    m_walk.run([&] { readDirectory(std::exchange(directory, nullptr)); });
}

void PackageReader::readDirectory(const DirectoryPtr& directory) {
    std::vector<ListedEntry> entries;
    if (!listDirectory(directory->descriptor.number(), entries)) {
        throw InputError(directory->path(), failureText(u"could not be listed"_s, errno));
    }
    for (const ListedEntry& entry : entries) {
        attempt([&] { readEntry(*directory, entry); });
    }
    m_walk.forEach(0, directory->subdirectories.size(), [this, directory](size_t index) {
        attempt([&] { readSubdirectory(directory, *directory->subdirectories[index]); });
    });
}

template <typename Read>
void PackageReader::attempt(const Read& read) {
    constexpr size_t mostUnread = 100;
    try {
        read();
    } catch (const InputError& error) {
        const std::lock_guard lock(m_mutex);
        if (!m_unread || m_unread->size() == mostUnread) { throw; }
        m_unread->push_back(error);
    }
}

void PackageReader::readSubdirectory(const DirectoryPtr& parent, FileWrapper& node) {
    auto directory = std::make_shared<Directory>();
    directory->enter(parent, node.filename());
    directory->node = &node;
    directory->descriptor = openDirectoryAt(parent->descriptor.number(), node.filename().toUtf8());
    struct stat status;
    if (!directory->descriptor || ::fstat(directory->descriptor.number(), &status) != 0) {
        throw InputError(directory->path(), failureText(u"could not be opened"_s, errno));
    }
    node.setOrigin(originOf(status));
    readDirectory(directory);
}

void PackageReader::readEntry(Directory& directory, const ListedEntry& entry) {
    const char* name = entry.name.c_str();
    const QString filename = QString::fromUtf8(entry.name);
    if (filename.toUtf8() != QByteArrayView(entry.name)) {
        throw InputError(directory.pathOf(printableName(entry.name)),
                         u"has a name that is not UTF-8"_s);
    }
    unsigned char type = entry.type;
    if (type == DT_UNKNOWN) {
        struct stat status;
        if (::fstatat(directory.descriptor.number(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
            throw InputError(directory.pathOf(filename),
                             failureText(u"could not be examined"_s, errno));
        }
        type = typeOf(status.st_mode);
    }
    switch (type) {
        case DT_DIR:
            return addSubdirectory(directory, filename);
        case DT_REG:
            return readFile(directory, name, filename);
        case DT_LNK:
            return readLink(directory, name, filename);
        default:
            throw InputError(directory.pathOf(filename),
                             u"is %1, which has no place in a package"_s.arg(kindText(type)));
    }
}

void PackageReader::addSubdirectory(Directory& directory, const QString& filename) {
    const FileWrapper::Ptr node = FileWrapper::directory(filename);
    directory.node->addFileWrapper(node);
    directory.subdirectories.push_back(node.get());
}

// Counts what is about to be read. A file of a few blocks can claim any size; what is not stored of
// it costs a package nothing, and us memory.
void PackageReader::requireRoom(const FileDescriptor& file, const struct stat& status,
                                const QString& entry) {
    if (status.st_size > limits::kBytesOfEntry) {
        throw InputError(
            entry, beyondLimit(u"bytes of an entry"_s, status.st_size, limits::kBytesOfEntry));
    }
    const int64_t bytes = m_bytes += status.st_size;
    if (bytes > limits::kBytesReadInAll) {
        throw InputError(entry, beyondLimit(u"bytes of the package up to here"_s, bytes,
                                            limits::kBytesReadInAll));
    }
    constexpr int64_t blockSize = 512;  // of st_blocks, whatever the file system has
    if (status.st_blocks * blockSize >= status.st_size) { return; }
    const int64_t holes = m_bytesOfHoles += bytesOfHoles(file, status.st_size);
    if (holes > limits::kBytesOfHolesInAll) {
        throw InputError(entry, beyondLimit(u"bytes of the package that are nowhere stored"_s,
                                            holes, limits::kBytesOfHolesInAll));
    }
}

// O_NONBLOCK: should a named pipe have taken the file's place, opening it must not wait.
void PackageReader::readFile(const Directory& directory, const char* name,
                             const QString& filename) {
    const auto entry = [&] { return directory.pathOf(filename); };
    const FileDescriptor file(::openat(directory.descriptor.number(), name,
                                       O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat before;
    if (!file || ::fstat(file.number(), &before) != 0) {
        if (errno == ELOOP || errno == ENOENT) { failChanged(entry()); }
        throw InputError(entry(), failureText(u"could not be opened"_s, errno));
    }
    if (!S_ISREG(before.st_mode)) { failChanged(entry()); }
    requireRoom(file, before, entry());

    QByteArray contents(before.st_size, Qt::Uninitialized);
    for (off_t filled = 0; filled < before.st_size;) {
        const ssize_t got = ::read(file.number(), contents.data() + filled,
                                   static_cast<size_t>(before.st_size - filled));
        if (got < 0 && errno != EINTR) {
            throw InputError(entry(), failureText(u"could not be read"_s, errno));
        }
        if (got == 0) { failChanged(entry()); }
        if (got > 0) { filled += got; }
    }
    struct stat after;
    if (::fstat(file.number(), &after) != 0 || originOf(after) != originOf(before)) {
        failChanged(entry());
    }

    FileWrapper::Ptr node = FileWrapper::regularFile(contents, filename);
    directory.node->addFileWrapper(node);
    node->setOrigin(originOf(before));
}

void PackageReader::readLink(const Directory& directory, const char* name,
                             const QString& filename) {
    char target[PATH_MAX];
    struct stat status;
    const ssize_t length = ::readlinkat(directory.descriptor.number(), name, target, sizeof target);
    if (length < 0 ||
        ::fstatat(directory.descriptor.number(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        throw InputError(directory.pathOf(filename), failureText(u"could not be read"_s, errno));
    }
    FileWrapper::Ptr node = FileWrapper::symbolicLink(QByteArray(target, length), filename);
    directory.node->addFileWrapper(node);
    node->setOrigin(originOf(status));
}

}  // namespace

FileWrapper::Ptr readPackage(const QString& path, std::vector<InputError>* unread) {
    FileDescriptor root = openPackage(path);
    struct stat status;
    if (::fstat(root.number(), &status) != 0) {
        throw InputError(path, failureText(u"could not be opened"_s, errno));
    }
    if (!looksLikePackage(root)) { throw InputError(path, u"is not a Tweenery package"_s); }
    FileWrapper::Ptr node = FileWrapper::directory(packageName(path));
    node->setFilename(node->preferredFilename());
    node->setOrigin(originOf(status));
    try {
        PackageReader(unread).read(std::move(root), node, path);
    } catch (const std::bad_alloc&) {
        throw InputError(path, u"needs more memory than there is"_s);
    }
    return node;
}

}  // namespace tweenery
