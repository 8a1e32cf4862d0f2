#pragma once

#include <QTimer>

#include "base/listener_set.h"
#include "base/media_clock.h"
#include "editor/documents/autosave_schedule.h"
#include "editor/documents/document_disk.h"
#include "editor/documents/notice.h"
#include "editor/documents/package_saving.h"
#include "editor/documents/package_watch.h"
#include "editor/documents/project_lock.h"
#include "editor/documents/recovery_store.h"
#include "model/document.h"

namespace tweenery {

/// Shows an open document.
class OpenDocumentObserver {
 public:
    virtual ~OpenDocumentObserver() = default;
    /// Title, edited state or notices.
    virtual void documentStateDidChange() {}
    /// A snapshot is about to be taken: time for the canvas picture and the window's preferences.
    virtual void documentWillBeStored() {}
    /// project() is another one: reverted or reloaded.
    virtual void documentWasReplaced() {}
    /// A save that the user asked for is done; `text` says when, for a moment.
    virtual void documentWasSaved(const QString& /*text*/) {}
    /// The user wants it elsewhere: ask for the place, then saveAs().
    virtual void documentNeedsPlace() {}
};

/// What open documents share; lives longer than they.
struct DocumentServices {
    AlertPort& alerts;
    LogPort& log;
    const MediaClock& clock;
    std::function<QDateTime()> dateTime;
    RecoveryStore recovery;
    QString lockFolder;
};

/// The life of one open project on disk. It saves itself in place; what cannot be saved there goes
/// to a recovery copy, tells its user by notices, and is tried again. All writing happens on
/// threads of its own, and each operation tells its caller on the document's thread when it has
/// come to an end. Needs an event loop. Operations wait for one another; none is to be begun in the
/// middle of a gesture.
///
/// Left without close() or discard(), as by a crash, it leaves its recovery copies behind.
class OpenDocument {
 public:
    enum class OpenMode { InPlace, ReadOnly, Copy };
    enum class Opening { Opened, Declined, HeldByOther };
    /// Empty message: done. Else why not, in words for people.
    struct Outcome {
        QString message;
        bool isDone() const { return message.isEmpty(); }
    };
    using Completion = std::function<void(const Outcome&)>;
    enum class CloseNeed { Nothing, Save, Question };

    explicit OpenDocument(DocumentServices& services);
    ~OpenDocument();

    // Once, to begin with.

    void openUntitled(const QString& name);
    /// Declined: the user was told by an alert, or did not want the update. HeldByOther: see
    /// lockHolder(), then open it in another mode. Work that was left of the project is back, with
    /// a notice. Throws InputError for a package that cannot be read.
    Opening open(const QString& path, OpenMode mode = OpenMode::InPlace);
    /// Takes over what the store lists: opens the project that it belongs to, or makes an untitled
    /// one of it when there is none that can be read. HeldByOther: another process has it
    /// meanwhile.
    Opening openRecovered(const RecoveredWork& work);
    /// Who has the project, in words.
    QString lockHolder() const;

    // What the window shows.

    PCDocument& document() { return m_document; }
    const PCProject::Ptr& project() { return m_document.project(); }
    const QString& path() const { return m_document.path(); }
    bool isUntitled() const { return path().isEmpty(); }
    bool isReadOnly() const { return m_mode == OpenMode::ReadOnly; }
    /// With the place for the mark of an edited window: "Card[*]".
    QString windowTitle() const;
    bool isEdited() const { return m_document.isEdited() || m_isAhead; }
    const std::vector<Notice>& notices() const { return m_notices.all(); }
    [[nodiscard]] Subscription addObserver(OpenDocumentObserver* observer) {
        return m_observers.add(observer);
    }

    // Operations of the user.

    /// Of an untitled or read-only one, asks its observer for a place instead, and is not done.
    void save(const Completion& done);
    /// To a place that the user chose, also over what is there if that is a project.
    void saveAs(const QString& path, const Completion& done);
    /// Stays where it is itself.
    void saveCopy(const QString& path, const Completion& done);
    /// True when there is a version that the user saved or opened, and it is another one.
    bool canRevert() const;
    /// Back to that version. What is thrown away becomes a recovery copy first.
    void revert(const Completion& done);
    /// To what is on disk. Edits that are not there become a recovery copy.
    void reload(const Completion& done);
    /// What a button of a notice does. The notice goes when that is done.
    void answer(Notice::Topic topic, Notice::Action action);
    void dismiss(Notice::Topic topic);

    /// Question: ask Save, Discard, Cancel, then close(), saveAs() and close(), or discard().
    CloseNeed closeNeed() const;
    /// Saves what is to be saved in place. Done: the window may go, and this with it, though not
    /// from within the call. Else it stays, with a notice.
    void close(const Completion& done);
    /// The same without the unsaved work.
    void discard(const Completion& done);

    /// Saves when it is time; called by a timer, and by tests.
    void tick();
    /// Looks for changes on disk, as when the window comes to the front.
    void checkDisk();
    /// What is written to.
    DocumentDisk& disk() { return m_disk; }

 private:
    enum class By { Schedule, User };
    enum class Place { Present, Chosen };
    using Task = std::function<void()>;
    static constexpr int64_t kCountOfNoEdits = -1;

    DocumentServices& m_services;
    PCDocument m_document;
    OpenMode m_mode = OpenMode::InPlace;
    ProjectLock m_lock;
    ListenerSet<OpenDocumentObserver> m_observers;
    NoticeList m_notices;
    Subscription m_edits;
    int64_t m_seenCount = 0;
    bool m_wasEdited = false;
    bool m_isLeft = false;  // closed

    AutosaveSchedule m_schedule;
    QTimer m_timer;
    QTimer m_watchTimer;  // gathers what one change sets off
    bool m_wantsCheck = false;
    QString m_failure;           // why the last save in place failed
    QString m_dismissedFailure;  // of which the user does not want to hear again

    // The version to go back to, null for an untitled project, and the count of edits that led to
    // it.
    FileWrapper::Snapshot m_saved;
    int64_t m_savedCount = kCountOfNoEdits;
    bool m_isSavedKept = false;  // in the recovery folder, for the time after a crash
    bool m_isAhead = false;      // of its place by more than its undo manager knows
    const std::shared_ptr<RecoveryFolder> m_recovery;  // once open, the recovery thread's
    std::optional<int64_t> m_recoveredCount;           // of the edits that are in the recovery copy

    // Their threads end first.
    DocumentDisk m_disk;
    PackageWatch m_watch;

    Opening openCopy(const QString& path);
    void takeUp(const RecoveredWork& work);
    void attachToProject();
    void projectDidChange();
    void noteChange();
    void stateDidChange();
    void setNotice(const Notice& notice);
    void setFailureNotice(const QString& reason, bool hasRecoveryCopy);
    void removeNotice(Notice::Topic topic);
    void didCompare(SaveOutcome::Kind found);
    void diskIsReady();
    void placeHangs();
    void leave(const Completion& done);

    bool savesInPlace() const;
    void autosave();
    std::shared_ptr<ProjectLock> lockPlace(const QString& target, const Completion& done) const;
    void storeWhenIdle(OnDiskChange policy, Place place);
    void keepSavedThen(const Task& next);
    std::optional<DocumentSnapshot> takeSnapshot(const Completion& done);
    void store(const QString& target, By by, OnDiskChange policy, Place place,
               const Completion& done);
    void didStore(const DocumentSnapshot& snapshot, const QString& target, By by,
                  const WrittenPackage& written);
    void didSaveForUser(const DocumentSnapshot& snapshot);
    void didFail(const DocumentSnapshot& snapshot, const QString& target,
                 const SaveOutcome& outcome);
    RecoveryNote recoveryNote() const;
    void keepWork(const DocumentSnapshot& snapshot);
    void didKeepWork(const DocumentSnapshot& snapshot, const QString& failure);
    void dropRecovery(void (RecoveryFolder::*drop)());
    void keepRevertedThen(const Completion& done, const Task& next);
    void replaceProject(const std::function<FileWrapper::Ptr()>& read, const Completion& done);
    void takeProject(const FileWrapper::Ptr& root);
};

}  // namespace tweenery
