#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QLockFile>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "storage/package_store.h"

namespace tweenery {

/// What is said about a recovery copy, in a small file beside it.
struct RecoveryNote {
    enum class Reason { Unsaved, Reverted };
    Reason reason = Reason::Unsaved;
    QString projectPath;  // empty: the project is untitled
    QString displayName;
};

/// Work of a process that is no more, or that Revert threw away, for its user to have back.
struct RecoveredWork {
    QString folder;  // in the store; names it
    RecoveryNote note;
    QDateTime time;  // when the work was last kept
    QString work;   // the package that holds it: a recovery copy, or the project as it saved itself
    QString saved;  // the last version that the user saved or opened; null when nobody kept one
    bool isInPlace = false;  // `work` is the project itself

    /// The picture of the canvas, as a JPEG; empty without one.
    QByteArray preview() const;
    /// Was left more than 30 days ago. Nothing of it goes unasked.
    bool isOld(const QDateTime& now) const { return time.daysTo(now) > 30; }
};

/// The folder in which recovery copies lie, one subfolder for each open project that needs one.
///
/// What a process left unsaved stays until somebody takes it over or dismisses it, however old.
/// What Revert threw away goes after 30 days, and a subfolder with nothing in it after a day.
class RecoveryStore {
 public:
    explicit RecoveryStore(const QString& folder);

    /// The newest first. Not what a living process, this one too, is working with.
    std::vector<RecoveredWork> leftBehind() const;
    /// What was left of the project at `path`: unsaved work, the newest.
    std::optional<RecoveredWork> leftBehindOf(const QString& path) const;
    /// The user does not want it back. False when another process has taken it over.
    bool dismiss(const RecoveredWork& work) const;
    /// A copy that stays when the project is closed. Throws InputError.
    void keepReverted(const FileWrapper& package, const RecoveryNote& note) const;
    const QString& folder() const { return m_folder; }

 private:
    QString m_folder;

    std::optional<RecoveredWork> readSubfolder(const QString& folder) const;
};

/// The subfolder of one open project. It comes to be with the first thing that is kept in it, and
/// is this process's until the project is closed. One thread at a time.
class RecoveryFolder {
 public:
    explicit RecoveryFolder(const RecoveryStore& store) : m_store(store.folder()) {}

    /// Goes on with what a dead process left. False when it is gone, or another has taken it.
    bool takeOver(const RecoveredWork& work);
    /// Keeps the version to go back to, as long as the project saves itself; of what is still at
    /// `note.projectPath` by hard links. Throws InputError, as the others do.
    void keepSaved(const FileWrapper& package, const RecoveryNote& note);
    /// Keeps work that has no other place: what is unchanged since the last time is hard-linked.
    /// The origins of `package` have to be those of the last one, see writeSnapshot().
    WrittenPackage keepWork(const FileWrapper::Snapshot& package, const RecoveryNote& note);
    /// Keeps work beside a project that cannot be written, whose origins stay.
    void keepCopyOfWork(const FileWrapper& package, const RecoveryNote& note);
    /// The work is stored in its place.
    void removeWork();
    /// Nothing is to be had back.
    void remove();

 private:
    QString m_store;
    QString m_folder;  // null: there is none yet
    std::unique_ptr<QLockFile> m_lock;
    std::optional<FileWrapper::Origin> m_savedOrigin;

    void make();
    QString placeOf(const QString& name) const { return m_folder + u'/' + name; }
    void writeNote(const RecoveryNote& note) const;
};

}  // namespace tweenery
