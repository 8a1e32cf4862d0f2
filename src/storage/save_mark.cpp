#include "storage/save_mark.h"

#include <fcntl.h>
#include <sys/file.h>

#include <array>
#include <cstdio>

namespace tweenery {
namespace {

constexpr size_t kLongestText = 128;

FileDescriptor openMark(int directory, const std::string& name) {
    FileDescriptor file(::openat(directory, name.c_str(),
                                 O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status;
    const bool isOwn = file && ::fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode) &&
                       status.st_uid == ::geteuid() && status.st_nlink == 1;
    return isOwn ? std::move(file) : FileDescriptor();
}

bool isNamedIn(const FileDescriptor& file, const struct stat& entry) {
    if (entry.st_uid != ::geteuid() || !S_ISDIR(entry.st_mode)) { return false; }
    std::array<char, kLongestText + 1> text{};
    unsigned long long device = 0;
    unsigned long long staged = 0;
    unsigned long long replaced = 0;
    if (::pread(file.number(), text.data(), kLongestText, 0) <= 0 ||
        std::sscanf(text.data(), "tweenery save %llu %llu %llu", &device, &staged, &replaced) !=
            3) {
        return false;
    }
    return device == entry.st_dev && (staged == entry.st_ino || replaced == entry.st_ino);
}

}  // namespace

std::optional<SaveMark> SaveMark::make(int directory, const std::string& name) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor file(::openat(directory, name.c_str(), flags, S_IRUSR | S_IWUSR));
    if (!file) { return std::nullopt; }
    // Where the file system knows no locks, two saves at once are the user's own affair.
    ::flock(file.number(), LOCK_EX | LOCK_NB);
    return SaveMark(directory, name, std::move(file));
}

std::optional<SaveMark> SaveMark::abandoned(int directory, const std::string& name) {
    FileDescriptor file = openMark(directory, name);
    if (!file || ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) { return std::nullopt; }
    return SaveMark(directory, name, std::move(file));
}

bool SaveMark::names(int directory, const std::string& name, const struct stat& entry) {
    const FileDescriptor file = openMark(directory, name);
    return file && isNamedIn(file, entry);
}

SaveMark::SaveMark(SaveMark&& other) noexcept
    : m_directory(other.m_directory),
      m_name(std::exchange(other.m_name, {})),
      m_file(std::move(other.m_file)) {}

SaveMark::~SaveMark() {
    if (!m_name.empty()) { ::unlinkat(m_directory, m_name.c_str(), 0); }
}

bool SaveMark::note(const struct stat& staged, const struct stat* replaced) const {
    std::array<char, kLongestText> text;
    const int length =
        std::snprintf(text.data(), text.size(), "tweenery save %llu %llu %llu\n",
                      static_cast<unsigned long long>(staged.st_dev),
                      static_cast<unsigned long long>(staged.st_ino),
                      static_cast<unsigned long long>(replaced ? replaced->st_ino : 0));
    return writeAll(m_file.number(), QByteArray::fromRawData(text.data(), length));
}

bool SaveMark::names(const struct stat& entry) const {
    return isNamedIn(m_file, entry);
}

}  // namespace tweenery
