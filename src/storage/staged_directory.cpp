#include "storage/staged_directory.h"

#include <fcntl.h>
#include <sys/file.h>

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>

#include "base/errors.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

constexpr std::string_view savingMark = ".saving-";       // in the making, or replaced
constexpr std::string_view setAsideMark = ".set-aside-";  // replaced, but not in one step
constexpr size_t serialLength = 8;

// ".Demo.tweenery.saving-"; a long name gives way to its hash, so that the whole fits into 255
// bytes.
std::string prefixFor(const std::string& name, std::string_view mark) {
    std::string prefix = ".";
    if (name.size() + mark.size() + serialLength + 1 <= NAME_MAX) {
        prefix += name;
    } else {
        prefix += QCryptographicHash::hash(name, QCryptographicHash::Sha1).toHex().toStdString();
    }
    return prefix.append(mark);
}

std::string nameWithSerial(const std::string& name, std::string_view mark) {
    const QByteArray serial = QByteArray::number(QRandomGenerator::global()->generate(), 16);
    return prefixFor(name, mark) + serial.rightJustified(serialLength, '0').toStdString();
}

bool isNameWithSerial(const std::string& candidate, const std::string& prefix) {
    const auto isHexDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    return candidate.size() == prefix.size() + serialLength && candidate.starts_with(prefix) &&
           std::all_of(candidate.end() - serialLength, candidate.end(), isHexDigit);
}

enum class Lock { Taken, Held, Unknown };

Lock tryLock(const FileDescriptor& file) {
    if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) { return Lock::Taken; }
    return errno == EWOULDBLOCK ? Lock::Held : Lock::Unknown;
}

// Calls `use` with each directory beside `place` that carries the mark and no lock, until it says
// true.
template <typename Use>
bool anyAbandoned(const PackagePlace& place, std::string_view mark, const Use& use) {
    std::vector<ListedEntry> entries;
    ::lseek(place.parent.number(), 0, SEEK_SET);
    listDirectory(place.parent.number(), entries);
    const std::string prefix = prefixFor(place.name, mark);
    for (const ListedEntry& entry : entries) {
        if (!isNameWithSerial(entry.name, prefix)) { continue; }
        const FileDescriptor opened = openDirectoryAt(place.parent.number(), entry.name.c_str());
        if (opened && tryLock(opened) == Lock::Taken && use(entry.name)) { return true; }
    }
    return false;
}

void removeAbandoned(const PackagePlace& place) {
    for (const std::string_view mark : {savingMark, setAsideMark}) {
        anyAbandoned(place, mark, [&](const std::string& name) {
            removeTree(place.parent.number(), name);
            return false;
        });
    }
}

bool lacksOperation(int error) {
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

bool renameIn(int directory, const std::string& from, const std::string& to) {
    return ::renameat(directory, from.c_str(), directory, to.c_str()) == 0;
}

bool renameToFreeName(int directory, const std::string& from, const std::string& to) {
    if (::renameat2(directory, from.c_str(), directory, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    return lacksOperation(errno) && renameIn(directory, from, to);
}

// Where the file system cannot exchange, there is a moment without a package; recoverSetAside()
// knows what to do should we die in it.
bool exchangeInSteps(const PackagePlace& place, const std::string& name) {
    const int directory = place.parent.number();
    const std::string aside = nameWithSerial(place.name, setAsideMark);
    if (!renameIn(directory, place.name, aside)) { return false; }
    if (!renameIn(directory, name, place.name)) {
        const int error = errno;
        renameIn(directory, aside, place.name);
        errno = error;
        return false;
    }
    renameIn(directory, aside, name);
    return true;
}

bool exchangeNames(const PackagePlace& place, const std::string& name) {
    const int directory = place.parent.number();
    if (::renameat2(directory, name.c_str(), directory, place.name.c_str(), RENAME_EXCHANGE) == 0) {
        return true;
    }
    return lacksOperation(errno) && exchangeInSteps(place, name);
}

}  // namespace

std::string stagingName(const std::string& name) {
    return nameWithSerial(name, savingMark);
}

bool recoverSetAside(const PackagePlace& place) {
    return anyAbandoned(place, setAsideMark, [&](const std::string& name) {
        return renameToFreeName(place.parent.number(), name, place.name);
    });
}

StagedDirectory::StagedDirectory(const PackagePlace& place, bool replace) : m_place(place) {
    m_current = openDirectoryAt(place.parent.number(), place.name.c_str());
    if (!m_current && errno == ENOENT && recoverSetAside(place)) {
        m_current = openDirectoryAt(place.parent.number(), place.name.c_str());
    }
    if (m_current ? !replace : errno == ENOTDIR && !replace) {
        throw InputError(place.path, u"already exists"_s);
    }
    if (!m_current && errno == ENOTDIR) { throw InputError(place.path, u"is not a directory"_s); }
    if (!m_current && errno != ENOENT) { place.fail(u"could not be opened"_s, errno); }
    if (m_current) { lockCurrent(); }
    removeAbandoned(place);
    create();
}

void StagedDirectory::lockCurrent() {
    if (tryLock(m_current) == Lock::Held) {
        throw InputError(m_place.path, u"is being saved by another program"_s);
    }
    // The lock is on what we opened; has it been replaced meanwhile?
    struct stat opened, present;
    if (::fstat(m_current.number(), &opened) != 0 ||
        ::fstatat(m_place.parent.number(), m_place.name.c_str(), &present, AT_SYMLINK_NOFOLLOW) !=
            0) {
        m_place.fail(u"could not be examined"_s, errno);
    }
    if (originOf(opened) != originOf(present)) {
        throw InputError(m_place.path, u"is being saved by another program"_s);
    }
}

void StagedDirectory::create() {
    constexpr int attempts = 16;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (tryCreate()) { return; }
    }
    throw InputError(m_place.path, u"could not be saved: no name is free beside it"_s);
}

// False when another program has taken the directory for a leftover before it was locked.
bool StagedDirectory::tryCreate() {
    const int parent = m_place.parent.number();
    const mode_t mode = m_current ? S_IRWXU : ACCESSPERMS;  // commit() gives the current one's mode
    m_name = stagingName(m_place.name);
    if (::mkdirat(parent, m_name.c_str(), mode) != 0) {
        if (errno == EEXIST) { return false; }
        m_place.fail(u"no directory could be made beside it"_s, errno);
    }
    m_descriptor = openDirectoryAt(parent, m_name.c_str());
    if (!m_descriptor) {
        if (errno == ENOENT) { return false; }
        const int error = errno;
        ::unlinkat(parent, m_name.c_str(), AT_REMOVEDIR);
        m_place.fail(u"the directory made beside it could not be opened"_s, error);
    }
    struct stat status;
    return tryLock(m_descriptor) != Lock::Held && ::fstat(m_descriptor.number(), &status) == 0 &&
           status.st_nlink > 0;
}

StagedDirectory::~StagedDirectory() {
    if (!m_name.empty()) { removeTree(m_place.parent.number(), m_name); }
}

namespace {

// One piece of work at a time: the next one waits for it, and so does the end of the program.
void inBackground(const std::function<void()>& work) {
    static std::mutex mutex;
    static std::jthread thread;
    const std::lock_guard lock(mutex);
    try {
        thread = std::jthread(work);
    } catch (const std::system_error&) {
        work();  // the system gives no thread
    }
}

}  // namespace

void StagedDirectory::removeReplacedInBackground() {
    const auto parent =
        std::make_shared<FileDescriptor>(::fcntl(m_place.parent.number(), F_DUPFD_CLOEXEC, 0));
    if (!m_current || !*parent) { return; }
    // The lock goes along, or else the next save would take the directory for a leftover.
    const auto locked = std::make_shared<FileDescriptor>(std::move(m_current));
    inBackground(
        [parent, locked, name = std::exchange(m_name, {})] { removeTree(parent->number(), name); });
}

void StagedDirectory::commit() {
    takePlace();
    if (flushDirectory(m_place.parent.number())) { return; }
    const int error = errno;
    leavePlace();
    m_place.fail(u"could not be flushed"_s, error);
}

void StagedDirectory::takePlace() {
    const bool done = m_current ? exchangeNames(m_place, m_name)
                                : renameToFreeName(m_place.parent.number(), m_name, m_place.name);
    if (!done) { m_place.fail(u"could not be put in its place"_s, errno); }
}

void StagedDirectory::leavePlace() {
    if (m_current) {
        exchangeNames(m_place, m_name);
    } else {
        renameToFreeName(m_place.parent.number(), m_place.name, m_name);
    }
}

}  // namespace tweenery
