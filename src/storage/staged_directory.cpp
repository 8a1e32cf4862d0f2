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
#include "storage/interference.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

constexpr std::string_view kSavingMark = ".saving-";       // in the making, or replaced
constexpr std::string_view kSetAsideMark = ".set-aside-";  // replaced, but not in one step
constexpr std::string_view kMarkSuffix = ".mark";  // of the file that tells which ones are ours
constexpr size_t kSerialLength = 8;

// ".Demo.tweenery.saving-"; a long name gives way to its hash, so that the whole fits into 255
// bytes.
std::string prefixFor(const std::string& name, std::string_view mark) {
    std::string prefix = ".";
    if (name.size() + mark.size() + kSerialLength + kMarkSuffix.size() + 1 <= NAME_MAX) {
        prefix += name;
    } else {
        prefix += QCryptographicHash::hash(name, QCryptographicHash::Sha1).toHex().toStdString();
    }
    return prefix.append(mark);
}

std::string serialOf(const std::string& nameWithSerial) {
    return nameWithSerial.substr(nameWithSerial.size() - kSerialLength);
}

// The file that belongs to a directory of either kind.
std::string markNameFor(const std::string& name, const std::string& serial) {
    return prefixFor(name, kSavingMark).append(serial).append(kMarkSuffix);
}

bool isNameWithSerial(const std::string& candidate, const std::string& prefix) {
    const auto isHexDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    return candidate.size() == prefix.size() + kSerialLength && candidate.starts_with(prefix) &&
           std::all_of(candidate.end() - kSerialLength, candidate.end(), isHexDigit);
}

enum class Lock { Taken, Held, Unknown };

Lock tryLock(const FileDescriptor& file) {
    if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) { return Lock::Taken; }
    return errno == EWOULDBLOCK ? Lock::Held : Lock::Unknown;
}

// The names beside `place` that begin with its prefix for `mark`, have a serial, and end in
// `suffix`.
std::vector<std::string> namesBeside(const PackagePlace& place, std::string_view mark,
                                     std::string_view suffix = {}) {
    std::vector<ListedEntry> entries;
    ::lseek(place.parent.number(), 0, SEEK_SET);
    listDirectory(place.parent.number(), entries);
    const std::string prefix = prefixFor(place.name, mark);
    std::vector<std::string> names;
    for (const ListedEntry& entry : entries) {
        if (!entry.name.ends_with(suffix)) { continue; }
        const std::string name = entry.name.substr(0, entry.name.size() - suffix.size());
        if (isNameWithSerial(name, prefix)) { names.push_back(name); }
    }
    return names;
}

// What a save that is no more has left under this name. A folder that its mark does not name is
// somebody's; it is not ours to remove unless it is empty, as it is when the save died that early.
void removeLeftover(const PackagePlace& place, SaveMark& mark, const std::string& name) {
    const int parent = place.parent.number();
    FileDescriptor opened = openDirectoryAt(parent, name.c_str());
    struct stat status;
    if (!opened || ::fstat(opened.number(), &status) != 0) { return; }
    if (mark.names(status)) {
        if (!removeOpenedTree(parent, name, std::move(opened))) { mark.keep(); }
    } else if (status.st_uid == ::geteuid()) {
        ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
    }
}

void removeAbandoned(const PackagePlace& place) {
    for (const std::string& name : namesBeside(place, kSavingMark, kMarkSuffix)) {
        const std::string serial = serialOf(name);
        auto mark = SaveMark::abandoned(place.parent.number(), markNameFor(place.name, serial));
        if (!mark) { continue; }
        removeLeftover(place, *mark, name);
        removeLeftover(place, *mark, prefixFor(place.name, kSetAsideMark) + serial);
    }
}

// The package that a save has set aside, if its mark says so; `name` becomes its name.
FileDescriptor findSetAside(const PackagePlace& place, std::string& name) {
    for (const std::string& candidate : namesBeside(place, kSetAsideMark)) {
        FileDescriptor opened = openDirectoryAt(place.parent.number(), candidate.c_str());
        struct stat status;
        if (opened && ::fstat(opened.number(), &status) == 0 &&
            SaveMark::names(place.parent.number(), markNameFor(place.name, serialOf(candidate)),
                            status)) {
            name = candidate;
            return opened;
        }
    }
    return {};
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

// Where the file system cannot exchange, there is a moment without a package; the next save puts it
// back should we die in it, and readers find it where it is.
bool exchangeInSteps(const PackagePlace& place, const std::string& name) {
    const int directory = place.parent.number();
    const std::string aside = prefixFor(place.name, kSetAsideMark) + serialOf(name);
    if (!renameIn(directory, place.name, aside)) { return false; }
    if (!renameIn(directory, name, place.name)) {
        const int error = errno;
        renameIn(directory, aside, place.name);
        errno = error;
        return false;
    }
    if (renameIn(directory, aside, name)) { return true; }
    const int error = errno;
    renameIn(directory, place.name, name);
    renameIn(directory, aside, place.name);
    errno = error;
    return false;
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
    const QByteArray serial = QByteArray::number(QRandomGenerator::global()->generate(), 16);
    return prefixFor(name, kSavingMark) + serial.rightJustified(kSerialLength, '0').toStdString();
}

FileDescriptor openSetAside(const PackagePlace& place) {
    std::string name;
    return findSetAside(place, name);
}

namespace {

bool recoverSetAside(const PackagePlace& place) {
    std::string name;
    const FileDescriptor opened = findSetAside(place, name);
    return opened && tryLock(opened) == Lock::Taken &&
           renameToFreeName(place.parent.number(), name, place.name);
}

}  // namespace

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
    interfereAt(Moment::PackageIsOpen);
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

// False when the name is taken, or another program has put something else there.
bool StagedDirectory::tryCreate() {
    const int parent = m_place.parent.number();
    const mode_t mode = m_current ? S_IRWXU : ACCESSPERMS;  // commit() gives the current one's mode
    m_name = stagingName(m_place.name);
    m_mark.reset();
    if (auto mark = SaveMark::make(parent, m_name + std::string(kMarkSuffix))) {
        m_mark.emplace(std::move(*mark));
    }
    if (!m_mark || ::mkdirat(parent, m_name.c_str(), mode) != 0) {
        const int error = errno;
        m_mark.reset();
        if (error == EEXIST) { return false; }
        m_place.fail(u"no directory could be made beside it"_s, error);
    }
    m_descriptor = openDirectoryAt(parent, m_name.c_str());
    if (!m_descriptor) {
        if (errno == ENOENT) { return false; }
        const int error = errno;
        ::unlinkat(parent, m_name.c_str(), AT_REMOVEDIR);
        m_mark.reset();
        m_place.fail(u"the directory made beside it could not be opened"_s, error);
    }
    struct stat made, replaced;
    if (::fstat(m_descriptor.number(), &made) != 0 || made.st_uid != ::geteuid() ||
        tryLock(m_descriptor) == Lock::Held || made.st_nlink == 0) {
        ::unlinkat(parent, m_name.c_str(), AT_REMOVEDIR);
        return false;
    }
    const bool replaces = m_current && ::fstat(m_current.number(), &replaced) == 0;
    if (!m_mark->note(made, replaces ? &replaced : nullptr)) {
        const int error = errno;
        ::unlinkat(parent, m_name.c_str(), AT_REMOVEDIR);
        m_mark.reset();
        m_place.fail(u"no file could be written beside it"_s, error);
    }
    m_leftover = Leftover::Staged;
    return true;
}

StagedDirectory::~StagedDirectory() {
    if (FileDescriptor leftover = takeLeftover()) {
        const bool isGone = removeOpenedTree(m_place.parent.number(), m_name, std::move(leftover));
        if (!isGone && m_mark) { m_mark->keep(); }
    }
}

FileDescriptor StagedDirectory::takeLeftover() {
    switch (std::exchange(m_leftover, Leftover::None)) {
        case Leftover::Staged:
            return std::move(m_descriptor);
        case Leftover::Replaced:
            return std::move(m_current);
        case Leftover::None:
            break;
    }
    return {};
}

namespace {

// What a removal needs that goes on when the save has ended. The lock goes along with the mark, or
// else the next save would take the directory for a leftover.
struct Removal {
    std::shared_ptr<const Temporary> temporary;
    FileDescriptor parent;
    FileDescriptor directory;
    std::string name;
    SaveMark mark;  // goes first

    void carryOut() {
        if (!removeOpenedTree(parent.number(), name, std::move(directory))) { mark.keep(); }
    }
};

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
    FileDescriptor parent(::fcntl(m_place.parent.number(), F_DUPFD_CLOEXEC, 0));
    if (m_leftover != Leftover::Replaced || !parent) { return; }
    m_mark->setDirectory(parent.number());
    const auto removal = std::make_shared<Removal>(
        Removal{m_temporary, std::move(parent), takeLeftover(), m_name, std::move(*m_mark)});
    m_mark.reset();
    inBackground([removal] { removal->carryOut(); });
}

void StagedDirectory::commit() {
    interfereAt(Moment::PackageIsBuilt);
    requireNotStopped();
    takePlace();
    if (m_current && !hasReplacedCurrent()) {
        leavePlace();
        throw InputError(m_place.path, u"was replaced by another program while it was saved"_s);
    }
    if (flushDirectory(m_place.parent.number())) { return; }
    const int error = errno;
    leavePlace();
    m_place.fail(u"could not be flushed"_s, error);
}

void StagedDirectory::takePlace() {
    const bool done = m_current ? exchangeNames(m_place, m_name)
                                : renameToFreeName(m_place.parent.number(), m_name, m_place.name);
    if (!done) { m_place.fail(u"could not be put in its place"_s, errno); }
    m_leftover = m_current ? Leftover::Replaced : Leftover::None;
}

// Is what was put out of its place what we opened, locked and looked at?
bool StagedDirectory::hasReplacedCurrent() const {
    struct stat opened, replaced;
    return ::fstat(m_current.number(), &opened) == 0 &&
           ::fstatat(m_place.parent.number(), m_name.c_str(), &replaced, AT_SYMLINK_NOFOLLOW) ==
               0 &&
           originOf(opened) == originOf(replaced);
}

// Should even that fail, both directories stay.
void StagedDirectory::leavePlace() {
    const bool done = m_current ? exchangeNames(m_place, m_name)
                                : renameToFreeName(m_place.parent.number(), m_place.name, m_name);
    m_leftover = done ? Leftover::Staged : Leftover::None;
}

}  // namespace tweenery
