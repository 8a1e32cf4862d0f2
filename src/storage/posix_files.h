#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QString>
#include <string>
#include <utility>
#include <vector>

#include "storage/file_wrapper.h"

namespace tweenery {

/// Owns an open file. Converts to true when there is one.
class FileDescriptor {
 public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() { close(); }

    int number() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }
    /// False when the system reports a late write error (errno says which).
    bool close() {
        const int number = std::exchange(m_number, -1);
        return number < 0 || ::close(number) == 0 || errno == EINTR;
    }

 private:
    int m_number = -1;
};

struct ListedEntry {
    std::string name;
    unsigned char type;  // DT_REG and so on; DT_UNKNOWN where the file system does not tell
};

/// Opens the directory `name` of `directory`, never through a symbolic link.
FileDescriptor openDirectoryAt(int directory, const char* name);
/// All entries but "." and ".." from the directory's read position on, which is its beginning once,
/// in no order. False, with errno, when they cannot be read.
bool listDirectory(int directory, std::vector<ListedEntry>& entries);
/// Writes all of `bytes`. False, with errno, when that fails.
bool writeAll(int file, const QByteArray& bytes);
/// Flushes a directory; true as well where the file system knows no such thing.
bool flushDirectory(int directory);

/// Removes the entry `name` of `directory` with everything in it. What cannot be removed stays.
void removeTree(int directory, const std::string& name);
/// Empties the directory `opened`, and removes what is empty under `name` in `directory` then. What
/// the name has come to mean meanwhile loses nothing. True when nothing has that name then.
bool removeOpenedTree(int directory, const std::string& name, FileDescriptor opened);

FileWrapper::Origin originOf(const struct stat& status);
/// True when `status` is what `stored` (a node with an origin) was read from or saved as.
bool isAsStored(const FileWrapper& stored, const struct stat& status);

/// "could not be read: Input/output error"
QString failureText(const QString& whatFailed, int error);

}  // namespace tweenery
