#include "storage/posix_files.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "base/parallel_walk.h"

using namespace Qt::StringLiterals;

namespace tweenery {

FileDescriptor openDirectoryAt(int directory, const char* name) {
    return FileDescriptor(
        ::openat(directory, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool listDirectory(int directory, std::vector<ListedEntry>& entries) {
    alignas(dirent64) char buffer[32 * 1024];
    for (;;) {
        const ssize_t filled = ::getdents64(directory, buffer, sizeof buffer);
        if (filled <= 0) { return filled == 0; }
        for (ssize_t at = 0; at < filled;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
            at += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..") {
                entries.push_back({std::string(name), entry->d_type});
            }
        }
    }
}

bool writeAll(int file, const QByteArray& bytes) {
    const char* rest = bytes.constData();
    const char* end = rest + bytes.size();
    while (rest < end) {
        const ssize_t written = ::write(file, rest, static_cast<size_t>(end - rest));
        if (written < 0 && errno != EINTR) { return false; }
        if (written > 0) { rest += written; }
    }
    return true;
}

bool flushDirectory(int directory) {
    return ::fsync(directory) == 0 || errno == EINVAL || errno == ENOTSUP;
}

namespace {

// A directory on its way out: it goes when the last of its subdirectories has gone.
struct DoomedDirectory {
    std::shared_ptr<DoomedDirectory> parent;
    int parentDescriptor = -1;
    std::string name;
    int depth = 0;
    FileDescriptor descriptor;
    std::vector<ListedEntry> subdirectories;

    ~DoomedDirectory() {
        if (::unlinkat(parentDescriptor, name.c_str(), AT_REMOVEDIR) == 0 || errno != EACCES ||
            !parent) {
            return;
        }
        ::fchmod(parentDescriptor, S_IRWXU);
        ::unlinkat(parentDescriptor, name.c_str(), AT_REMOVEDIR);
    }
};

constexpr int kMaxRemovedDepth = 256;  // each level keeps a file open

// Also out of a directory that the user has protected.
bool unlinkIn(int directory, const char* name) {
    if (::unlinkat(directory, name, 0) == 0) { return true; }
    return errno == EACCES && ::fchmod(directory, S_IRWXU) == 0 &&
           ::unlinkat(directory, name, 0) == 0;
}

void empty(ParallelWalk& walk, const std::shared_ptr<DoomedDirectory>& directory) {
    if (directory->depth > kMaxRemovedDepth) { return; }
    std::vector<ListedEntry>& entries = directory->subdirectories;
    listDirectory(directory->descriptor.number(), entries);
    std::erase_if(entries, [&](const ListedEntry& entry) {
        return entry.type != DT_DIR && unlinkIn(directory->descriptor.number(), entry.name.c_str());
    });
    walk.forEach(0, entries.size(), [&walk, directory](size_t index) {
        auto subdirectory = std::make_shared<DoomedDirectory>();
        subdirectory->parent = directory;
        subdirectory->parentDescriptor = directory->descriptor.number();
        subdirectory->name = directory->subdirectories[index].name;
        subdirectory->depth = directory->depth + 1;
        subdirectory->descriptor =
            openDirectoryAt(subdirectory->parentDescriptor, subdirectory->name.c_str());
        if (subdirectory->descriptor) { empty(walk, subdirectory); }
    });
}

}  // namespace

bool removeOpenedTree(int directory, const std::string& name, FileDescriptor opened) {
    ::lseek(opened.number(), 0, SEEK_SET);  // it may have been listed before
    auto root = std::make_shared<DoomedDirectory>();
    root->parentDescriptor = directory;
    root->name = name;
    root->descriptor = std::move(opened);
    ParallelWalk walk;
    try {
        walk.run([&] { empty(walk, std::exchange(root, nullptr)); });
    } catch (const std::bad_alloc&) {
        // What is left is removed next time.
    }
    struct stat status;
    return ::fstatat(directory, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
}

void removeTree(int directory, const std::string& name) {
    if (::unlinkat(directory, name.c_str(), 0) == 0 || errno == ENOENT) { return; }
    if (FileDescriptor opened = openDirectoryAt(directory, name.c_str())) {
        removeOpenedTree(directory, name, std::move(opened));
    }
}

FileWrapper::Origin originOf(const struct stat& status) {
    FileWrapper::Origin origin;
    origin.device = status.st_dev;
    origin.inode = status.st_ino;
    if (S_ISDIR(status.st_mode)) { return origin; }
    origin.size = status.st_size;
    origin.modifiedSeconds = status.st_mtim.tv_sec;
    origin.modifiedNanoseconds = status.st_mtim.tv_nsec;
    return origin;
}

bool isAsStored(const FileWrapper& stored, const struct stat& status) {
    switch (stored.kind()) {
        case FileWrapper::Kind::Directory:
            return S_ISDIR(status.st_mode);
        case FileWrapper::Kind::RegularFile:
            return S_ISREG(status.st_mode) && stored.origin() == originOf(status);
        case FileWrapper::Kind::SymbolicLink:
            return S_ISLNK(status.st_mode) && stored.origin() == originOf(status);
    }
    return false;
}

QString failureText(const QString& whatFailed, int error) {
    // Neither translated nor shared between threads, as strerror() would be.
    const char* description = ::strerrordesc_np(error);
    return whatFailed + u": "_s +
           (description ? QString::fromLatin1(description) : u"error %1"_s.arg(error));
}

}  // namespace tweenery
