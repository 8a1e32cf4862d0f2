#include "storage/output_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "base/errors.h"
#include "storage/interference.h"
#include "storage/staged_directory.h"
#include "storage/system_names.h"
#include "storage/temporaries.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kDirectoryFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

size_t countFilesBelow(const FileDescriptor& directory) {
    std::vector<ListedEntry> entries;
    listDirectory(directory.number(), entries);
    size_t count = 0;
    for (const ListedEntry& entry : entries) {
        const FileDescriptor opened = openDirectoryAt(directory.number(), entry.name.c_str());
        count += opened ? countFilesBelow(opened) : 1;
    }
    return count;
}

}  // namespace

OutputFolder::OutputFolder(QString path, FileDescriptor folder)
    : m_path(std::move(path)), m_folder(std::move(folder)) {
    interfereAt(Moment::FolderIsOpen);
}

OutputFolder OutputFolder::make(const QString& path) {
    const QByteArray bytes = systemPath(path);
    std::error_code error;
    std::filesystem::create_directories(bytes.constData(), error);
    FileDescriptor folder(::open(bytes.constData(), kDirectoryFlags));
    if (!folder) {
        const int reason = error ? error.value() : errno;
        throw InputError(path, failureText(u"the directory cannot be made"_s, reason));
    }
    return {path, std::move(folder)};
}

OutputFolder OutputFolder::subfolder(const QString& name) const {
    const QByteArray entry = name.toUtf8();
    const QString path = m_path + u'/' + name;
    if (!m_folder) { return pretended(path); }
    if (::mkdirat(m_folder.number(), entry, ACCESSPERMS) != 0 && errno != EEXIST) {
        throw InputError(path, failureText(u"the directory cannot be made"_s, errno));
    }
    FileDescriptor folder = openDirectoryAt(m_folder.number(), entry);
    if (!folder) {
        const bool isLinkOrFile = errno == ELOOP || errno == ENOTDIR;
        throw InputError(path, isLinkOrFile ? u"is a link or a file, and no directory"_s
                                            : failureText(u"could not be opened"_s, errno));
    }
    return {path, std::move(folder)};
}

size_t OutputFolder::remove(const QString& name) const {
    if (!m_folder) { return 0; }
    const std::string entry = name.toStdString();
    FileDescriptor opened = openDirectoryAt(m_folder.number(), entry.c_str());
    if (!opened) { return ::unlinkat(m_folder.number(), entry.c_str(), 0) == 0 ? 1 : 0; }
    const size_t count = countFilesBelow(opened);
    removeOpenedTree(m_folder.number(), entry, std::move(opened));
    return count;
}

size_t OutputFolder::countFiles(const QString& path, const QString& name) {
    const FileDescriptor folder(::open(systemPath(path).constData(), kDirectoryFlags));
    if (!folder) { return 0; }
    const QByteArray entry = name.toUtf8();
    const FileDescriptor opened = openDirectoryAt(folder.number(), entry);
    if (opened) { return countFilesBelow(opened); }
    struct stat status;
    return ::fstatat(folder.number(), entry, &status, AT_SYMLINK_NOFOLLOW) == 0 ? 1 : 0;
}

void OutputFolder::write(const QString& name, const QByteArrayList& pieces) const {
    const QString path = m_path + u'/' + name;
    if (!isSafeFilename(name)) { throw InputError(path, u"is no name that a file can have"_s); }
    if (!m_folder) { return; }
    FileInTheMaking file(m_folder, name.toStdString(), path);
    file.write(pieces);
    file.commit();
}

FileInTheMaking::FileInTheMaking(const QString& path) : m_path(path) {
    const std::string target = systemPath(path).toStdString();
    const size_t nameAt = target.rfind('/') + 1;
    const std::string folder = nameAt == 0 ? "." : target.substr(0, nameAt);
    m_ownFolder = FileDescriptor(::open(folder.c_str(), kDirectoryFlags));
    if (!m_ownFolder) { fail(errno); }
    m_folder = m_ownFolder.number();
    m_name = target.substr(nameAt);
    open();
}

FileInTheMaking::FileInTheMaking(const FileDescriptor& folder, const std::string& name,
                                 const QString& path)
    : m_path(path), m_folder(folder.number()), m_name(name) {
    open();
}

FileInTheMaking::~FileInTheMaking() {
    if (!m_isInPlace) { ::unlinkat(m_folder, m_staging.c_str(), 0); }
}

void FileInTheMaking::open() {
    m_staging = stagingName(m_name);
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    m_file = FileDescriptor(::openat(m_folder, m_staging.c_str(), flags, DEFFILEMODE));
    if (!m_file) { fail(errno); }
}

void FileInTheMaking::write(const QByteArrayList& pieces) {
    for (const QByteArray& piece : pieces) {
        requireNotStopped();
        if (!writeAll(m_file.number(), piece)) { fail(errno); }
    }
}

void FileInTheMaking::commit() {
    struct stat present;
    const bool replaces = ::fstatat(m_folder, m_name.c_str(), &present, AT_SYMLINK_NOFOLLOW) == 0 &&
                          S_ISREG(present.st_mode);
    if (replaces && ::fchmod(m_file.number(), present.st_mode & ACCESSPERMS) != 0) { fail(errno); }
    if (::fsync(m_file.number()) != 0 || !m_file.close()) { fail(errno); }
    interfereAt(Moment::FileIsWritten);
    if (::renameat(m_folder, m_staging.c_str(), m_folder, m_name.c_str()) != 0) { fail(errno); }
    m_isInPlace = true;
}

void FileInTheMaking::fail(int error) const {
    throw InputError(m_path, failureText(u"could not be written"_s, error));
}

}  // namespace tweenery
