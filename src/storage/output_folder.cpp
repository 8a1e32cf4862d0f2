#include "storage/output_folder.h"

#include <fcntl.h>

#include <algorithm>
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

size_t countFiles(const FileDescriptor& directory) {
    std::vector<ListedEntry> entries;
    listDirectory(directory.number(), entries);
    size_t count = 0;
    for (const ListedEntry& entry : entries) {
        const FileDescriptor opened = openDirectoryAt(directory.number(), entry.name.c_str());
        count += opened ? countFiles(opened) : 1;
    }
    return count;
}

bool writePieces(int file, const QByteArrayList& pieces) {
    return std::all_of(pieces.begin(), pieces.end(), [&](const QByteArray& piece) {
        requireNotStopped();
        return writeAll(file, piece);
    });
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
    const size_t count = countFiles(opened);
    removeOpenedTree(m_folder.number(), entry, std::move(opened));
    return count;
}

void OutputFolder::write(const QString& name, const QByteArrayList& pieces) const {
    const QString path = m_path + u'/' + name;
    if (!isSafeFilename(name)) { throw InputError(path, u"is no name that a file can have"_s); }
    if (m_folder) { writeFileInto(m_folder, name.toStdString(), pieces, path); }
}

void writeFileInto(const FileDescriptor& folder, const std::string& name,
                   const QByteArrayList& pieces, const QString& path) {
    const Temporary temporary;
    const int directory = folder.number();
    const std::string staging = stagingName(name);
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor file(::openat(directory, staging.c_str(), flags, DEFFILEMODE));
    if (!file) { throw InputError(path, failureText(u"could not be written"_s, errno)); }
    struct stat present;
    const bool replaces = ::fstatat(directory, name.c_str(), &present, AT_SYMLINK_NOFOLLOW) == 0 &&
                          S_ISREG(present.st_mode);
    int error = 0;
    try {
        const bool isWritten =
            writePieces(file.number(), pieces) &&
            (!replaces || ::fchmod(file.number(), present.st_mode & ACCESSPERMS) == 0) &&
            ::fsync(file.number()) == 0 && file.close();
        error = isWritten ? 0 : errno;
        if (isWritten) { interfereAt(Moment::FileIsWritten); }
        if (isWritten && ::renameat(directory, staging.c_str(), directory, name.c_str()) == 0) {
            return;
        }
        error = isWritten ? errno : error;
    } catch (...) {
        ::unlinkat(directory, staging.c_str(), 0);
        throw;
    }
    ::unlinkat(directory, staging.c_str(), 0);
    throw InputError(path, failureText(u"could not be written"_s, error));
}

}  // namespace tweenery
