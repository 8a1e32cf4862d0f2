#include "platform/posix_files.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "platform/errors.h"
#include "platform/parallel_walk.h"

namespace tweenery {

using namespace Qt::StringLiterals;

FileDescriptor openDirectoryAt(int directory, const char* name) {
    return FileDescriptor(
        ::openat(directory, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool listDirectory(int directory, std::vector<ListedEntry>& entries) {
    alignas(dirent64) char buffer[32 * 1024];
    if (::lseek(directory, 0, SEEK_SET) < 0) return false;
    for (;;) {
        const ssize_t filled = ::getdents64(directory, buffer, sizeof buffer);
        if (filled <= 0) return filled == 0;
        for (ssize_t at = 0; at < filled;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
            at += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..") entries.push_back({std::string(name), entry->d_type});
        }
    }
}

bool writeAll(int file, const QByteArray& bytes) {
    const char* rest = bytes.constData();
    const char* end = rest + bytes.size();
    while (rest < end) {
        const ssize_t written = ::write(file, rest, static_cast<size_t>(end - rest));
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) rest += written;
    }
    return true;
}

bool flushDirectory(int directory) {
    return ::fsync(directory) == 0 || errno == EINVAL || errno == ENOTSUP;
}

namespace {

// A directory on its way out: it goes when the last of its subdirectories has gone.
struct DoomedDirectory {
    std::shared_ptr<const DoomedDirectory> parent;
    int parentDirectory;
    std::string name;
    FileDescriptor descriptor;
    int depth = 0;

    DoomedDirectory(std::shared_ptr<const DoomedDirectory> itsParent, int itsParentDirectory,
                    std::string itsName, FileDescriptor itsDescriptor, int itsDepth = 0)
        : parent(std::move(itsParent)),
          parentDirectory(itsParentDirectory),
          name(std::move(itsName)),
          descriptor(std::move(itsDescriptor)),
          depth(itsDepth) {}
    DoomedDirectory(const DoomedDirectory&) = delete;
    DoomedDirectory& operator=(const DoomedDirectory&) = delete;
    ~DoomedDirectory() { ::unlinkat(parentDirectory, name.c_str(), AT_REMOVEDIR); }
};

constexpr int maxRemovedDepth = 256;  // each level keeps a file open

void empty(ParallelWalk& walk, const std::shared_ptr<const DoomedDirectory>& directory) {
    const int descriptor = directory->descriptor.number();
    struct stat status;
    if (::fstat(descriptor, &status) == 0 && (status.st_mode & S_IRWXU) != S_IRWXU)
        ::fchmod(descriptor, S_IRWXU);
    std::vector<ListedEntry> entries;
    listDirectory(descriptor, entries);
    for (const ListedEntry& entry : entries) {
        const char* name = entry.name.c_str();
        if (entry.type != DT_DIR && ::unlinkat(descriptor, name, 0) == 0) continue;
        FileDescriptor opened = openDirectoryAt(descriptor, name);
        if (!opened || directory->depth == maxRemovedDepth) continue;
        auto subdirectory = std::make_shared<const DoomedDirectory>(
            directory, descriptor, entry.name, std::move(opened), directory->depth + 1);
        walk.share([&walk, subdirectory] { empty(walk, subdirectory); });
    }
}

}  // namespace

void removeTree(int directory, const std::string& name) {
    if (::unlinkat(directory, name.c_str(), 0) == 0 || errno == ENOENT) return;
    FileDescriptor opened = openDirectoryAt(directory, name.c_str());
    if (!opened) return;
    ParallelWalk walk;
    try {
        walk.run([&] {
            empty(walk, std::make_shared<const DoomedDirectory>(nullptr, directory, name,
                                                                std::move(opened)));
        });
    } catch (const std::bad_alloc&) {
        // What is left is removed next time.
    }
}

FileWrapper::Origin originOf(const struct stat& status) {
    FileWrapper::Origin origin;
    origin.device = status.st_dev;
    origin.inode = status.st_ino;
    if (S_ISDIR(status.st_mode)) return origin;
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

QByteArray systemPath(const QString& path) {
    if (path.isEmpty() || path.contains(QChar(0)) || !path.isValidUtf16())
        throw InputError(printableName(path), u"is no path"_s);
    return path.toUtf8();
}

namespace {

bool isControl(char16_t unit) {
    return unit < 0x20 || unit == 0x7f;
}

QString escaped(uint unit) {
    return u"\\x"_s + QString::number(unit, 16).rightJustified(2, u'0');
}

}  // namespace

QString printableName(const QString& name) {
    QString text;
    for (const QChar c : name)
        text += isControl(c.unicode()) ? escaped(c.unicode()) : QString(c);
    return text;
}

QString printableName(std::string_view name) {
    const QByteArray bytes = QByteArray::fromRawData(name.data(), qsizetype(name.size()));
    if (const QString text = QString::fromUtf8(bytes); text.toUtf8() == bytes)
        return printableName(text);
    QString text;
    for (const char c : name) {
        const auto unit = static_cast<unsigned char>(c);
        text += isControl(unit) || unit > 0x7f ? escaped(unit) : QString(QLatin1Char(c));
    }
    return text;
}

QString failureText(const QString& whatFailed, int error) {
    // Neither translated nor shared between threads, as strerror() would be.
    const char* description = ::strerrordesc_np(error);
    return whatFailed + u": "_s +
           (description ? QString::fromLatin1(description) : u"error %1"_s.arg(error));
}

}  // namespace tweenery
