#include "editor/documents/recovery_store.h"

#include <sys/stat.h>

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include "base/errors.h"
#include "base/identifier.h"
#include "base/path_name.h"
#include "editor/documents/project_path.h"
#include "storage/input_file.h"
#include "storage/package_entries.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

const QString kWork = u"Work.tweenery"_s;
const QString kSaved = u"Saved.tweenery"_s;
const QString kNote = u"note.json"_s;

constexpr int kDaysOfReverted = 30;
constexpr int kDaysOfEmpty = 1;

// For another process that only looks at the folder, in milliseconds.
constexpr int kLockPatience = 200;

// Stands beside the folder, which can go before it.
std::unique_ptr<QLockFile> lockFolder(const QString& folder) {
    auto lock = std::make_unique<QLockFile>(folder + u".lock"_s);
    lock->setStaleLockTime(0);
    return lock->tryLock(kLockPatience) ? std::move(lock) : nullptr;
}

bool isFolder(const QString& path) {
    return kindOfPath(path) == PathKind::Directory;
}

QString packageIn(const QString& folder, const QString& name) {
    const QString path = folder + u'/' + name;
    return isFolder(path) ? path : QString();
}

// Identifies the package that was at the project's path when its saved version was kept.
QString textOf(const FileWrapper::Origin& origin) {
    return u"%1:%2"_s.arg(origin.device).arg(origin.inode);
}

QString identityOf(const QString& path) {
    struct stat status;
    if (::stat(systemPath(path).constData(), &status) != 0) { return {}; }
    return textOf(originOf(status));
}

struct StoredNote {
    RecoveryNote note;
    QString savedIdentity;
};

// A path can have bytes that are no text.
QString encodedPath(const QString& path) {
    return path.isEmpty() ? QString()
                          : QString::fromLatin1(systemPath(path).toPercentEncoding("/ "));
}

QString decodedPath(const QString& text) {
    return textOfSystemName(QByteArray::fromPercentEncoding(text.toLatin1()));
}

// What a damaged note does not tell is left empty: the work counts, not the note.
StoredNote readNote(const QString& folder) {
    QJsonObject object;
    try {
        object = QJsonDocument::fromJson(readInputFile(folder + u'/' + kNote)).object();
    } catch (const InputError&) {}
    StoredNote stored;
    const bool isReverted = object[u"reason"_s].toString() == u"reverted";
    stored.note.reason =
        isReverted ? RecoveryNote::Reason::Reverted : RecoveryNote::Reason::Unsaved;
    stored.note.projectPath = decodedPath(object[u"path"_s].toString());
    stored.note.displayName = object[u"name"_s].toString();
    stored.savedIdentity = object[u"saved"_s].toString();
    if (stored.note.displayName.isEmpty()) { stored.note.displayName = u"Recovered Project"_s; }
    return stored;
}

// Where the work of a process is that has kept the saved version: in the project, if that has saved
// itself since; null when there is none. A project that is not there any more leaves what was
// saved.
QString workBeside(const QString& saved, const StoredNote& stored) {
    const QString& project = stored.note.projectPath;
    if (saved.isEmpty() || project.isEmpty()) { return {}; }
    if (!isFolder(project)) { return saved; }
    return identityOf(project) == stored.savedIdentity ? QString() : project;
}

}  // namespace

QByteArray RecoveredWork::preview() const {
    try {
        return readInputFile(work + u"/QuickLook/Preview_Thumbnail@2x.jpg"_s);
    } catch (const InputError&) { return {}; }
}

RecoveryStore::RecoveryStore(const QString& folder) : m_folder(folder) {}

std::vector<RecoveredWork> RecoveryStore::leftBehind() const {
    std::vector<RecoveredWork> found;
    for (const QString& name : QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (auto work = readSubfolder(m_folder + u'/' + name)) { found.push_back(*work); }
    }
    std::sort(found.begin(), found.end(),
              [](const auto& left, const auto& right) { return left.time > right.time; });
    return found;
}

// Removes a subfolder whose time has come.
std::optional<RecoveredWork> RecoveryStore::readSubfolder(const QString& folder) const {
    const auto lock = lockFolder(folder);
    if (!lock) { return {}; }
    const StoredNote stored = readNote(folder);
    RecoveredWork found;
    found.folder = folder;
    found.note = stored.note;
    found.saved = packageIn(folder, kSaved);
    found.work = packageIn(folder, kWork);
    if (found.work.isEmpty()) {
        found.work = workBeside(found.saved, stored);
        found.isInPlace = found.work == stored.note.projectPath;
    }
    const bool isEmpty = found.work.isEmpty();
    found.time = QFileInfo(isEmpty ? folder : found.work).lastModified();
    const qint64 days = found.time.daysTo(QDateTime::currentDateTime());
    const bool isReverted = stored.note.reason == RecoveryNote::Reason::Reverted;
    if ((isEmpty && days > kDaysOfEmpty) || (isReverted && days > kDaysOfReverted)) {
        QDir(folder).removeRecursively();
        return {};
    }
    return isEmpty ? std::nullopt : std::optional(found);
}

std::optional<RecoveredWork> RecoveryStore::leftBehindOf(const QString& path) const {
    const QString place = canonicalProjectPath(path);
    for (const RecoveredWork& work : leftBehind()) {
        const bool isUnsaved = work.note.reason == RecoveryNote::Reason::Unsaved;
        if (isUnsaved && work.note.projectPath == place) { return work; }
    }
    return {};
}

bool RecoveryStore::dismiss(const RecoveredWork& work) const {
    const auto lock = lockFolder(work.folder);
    return lock && QDir(work.folder).removeRecursively();
}

void RecoveryStore::keepReverted(const FileWrapper& package, const RecoveryNote& note) const {
    RecoveryNote reverted = note;
    reverted.reason = RecoveryNote::Reason::Reverted;
    RecoveryFolder(*this).keepCopyOfWork(package, reverted);
}

bool RecoveryFolder::takeOver(const RecoveredWork& work) {
    if (!isFolder(work.folder)) { return false; }
    auto lock = lockFolder(work.folder);
    if (!lock) { return false; }
    m_folder = work.folder;
    m_lock = std::move(lock);
    return true;
}

void RecoveryFolder::make() {
    if (!m_folder.isEmpty() && isFolder(m_folder)) { return; }
    QDir().mkpath(m_store);
    const QString folder = m_store + u'/' + Identifier::generate().toString();
    if (::mkdir(systemPath(folder).constData(), S_IRWXU) != 0) {
        throw InputError(folder, failureText(u"could not be made"_s, errno));
    }
    m_folder = folder;
    m_lock = lockFolder(folder);  // without it, others take the work for left behind: no loss
}

void RecoveryFolder::writeNote(const RecoveryNote& note) const {
    const bool isReverted = note.reason == RecoveryNote::Reason::Reverted;
    const QString path =
        note.projectPath.isEmpty() ? QString() : canonicalProjectPath(note.projectPath);
    const QJsonObject object{
        {u"reason"_s, isReverted ? u"reverted"_s : u"unsaved"_s},
        {u"path"_s, encodedPath(path)},
        {u"name"_s, note.displayName},
        {u"saved"_s, m_savedOrigin ? textOf(*m_savedOrigin) : QString()},
        {u"process"_s, QCoreApplication::applicationPid()},
        {u"time"_s, QDateTime::currentDateTime().toString(Qt::ISODate)},
    };
    writeFileAtomically(placeOf(kNote), QJsonDocument(object).toJson());
}

void RecoveryFolder::keepSaved(const FileWrapper& package, const RecoveryNote& note) {
    make();
    writeLinkedPackageCopy(package, placeOf(kSaved), note.projectPath);
    m_savedOrigin = package.origin();
    writeNote(note);
}

WrittenPackage RecoveryFolder::keepWork(const FileWrapper::Snapshot& package,
                                        const RecoveryNote& note) {
    make();
    writeNote(note);
    return writeSnapshot(package, placeOf(kWork), OnDiskChange::Overwrite);
}

void RecoveryFolder::keepCopyOfWork(const FileWrapper& package, const RecoveryNote& note) {
    make();
    writeNote(note);
    writePackageCopy(package, placeOf(kWork), true);
}

void RecoveryFolder::removeWork() {
    if (!m_folder.isEmpty()) { QDir(placeOf(kWork)).removeRecursively(); }
}

void RecoveryFolder::remove() {
    if (m_folder.isEmpty()) { return; }
    QDir(m_folder).removeRecursively();
    m_lock.reset();
    m_folder.clear();
    m_savedOrigin.reset();
}

}  // namespace tweenery
