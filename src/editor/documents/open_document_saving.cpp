#include <cmath>

#include "editor/documents/open_document.h"
#include "editor/documents/project_path.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

struct KeptWork {
    std::optional<WrittenPackage> written;
    QString failure;
};

}  // namespace

// The schedule

void OpenDocument::tick() {
    if (m_isLeft || !m_disk.canKeepRecovery()) { return; }
    const UndoManager& undoManager = project()->undoManager();
    const bool isInEdit = undoManager.isInGesture() || !undoManager.isWhole();
    const AutosaveSchedule::Look look = m_schedule.look(m_services.clock.now(), isInEdit);
    if (look.isDue) { return autosave(); }
    if (!look.seconds) { return m_timer.stop(); }
    constexpr double msPerSecond = 1000;
    m_timer.start(static_cast<int>(std::ceil(*look.seconds * msPerSecond)));
}

bool OpenDocument::savesInPlace() const {
    return !isUntitled() && !isReadOnly() && !m_notices.contains(Notice::Topic::OnDisk);
}

void OpenDocument::autosave() {
    if (!isEdited()) { return m_schedule.noteTaken(); }
    if (savesInPlace() && !m_disk.isHung()) {
        return keepSavedThen(
            [this] { store(path(), By::Schedule, OnDiskChange::Refuse, Place::Present, {}); });
    }
    if (m_recoveredCount == project()->undoManager().changeCount()) {
        return m_schedule.noteTaken();
    }
    if (const auto snapshot = takeSnapshot({})) { keepWork(*snapshot); }
}

// Saving

void OpenDocument::save(const Completion& done) {
    if (isUntitled() || isReadOnly()) {
        done({u"The project has no place yet."_s});
        return m_observers.tell([](auto& observer) { observer.documentNeedsPlace(); });
    }
    m_disk.whenIdle(
        [this, done] { store(path(), By::User, OnDiskChange::Refuse, Place::Present, done); });
}

// Null, and told, when the project at that place is open already.
std::shared_ptr<ProjectLock> OpenDocument::lockPlace(const QString& target,
                                                     const Completion& done) const {
    auto lock = std::make_shared<ProjectLock>(m_services.lockFolder, target);
    if (lock->tryLock()) { return lock; }
    done({u"“%1” is open, here or in another Tweenery."_s.arg(target)});
    return nullptr;
}

void OpenDocument::saveAs(const QString& newPath, const Completion& done) {
    const QString target = canonicalProjectPath(newPath);
    const bool isSame = !isUntitled() && !isReadOnly() && target == canonicalProjectPath(path());
    const auto lock = isSame ? nullptr : lockPlace(target, done);
    if (!isSame && !lock) { return; }
    const auto takeLock = [this, lock, done](const Outcome& outcome) {
        if (outcome.isDone() && lock) { m_lock = std::move(*lock); }
        done(outcome);
    };
    m_disk.whenIdle([this, newPath, takeLock] {
        store(newPath, By::User, OnDiskChange::Overwrite, Place::Chosen, takeLock);
    });
}

void OpenDocument::saveCopy(const QString& newPath, const Completion& done) {
    const auto lock = lockPlace(newPath, done);
    if (!lock) { return; }
    m_disk.whenIdle([this, newPath, lock, done] {
        const auto snapshot = takeSnapshot(done);
        if (!snapshot) { return; }
        m_disk.atPlace<QString>(
            [package = snapshot->package, newPath] {
                return failureReasonOf([&] { writePackageCopy(*package, newPath, true); });
            },
            [lock, done](const QString& failure) {
                lock->unlock();
                done({failure});
            });
    });
}

void OpenDocument::storeWhenIdle(OnDiskChange policy, Place place) {
    m_disk.whenIdle([this, policy, place] {
        keepSavedThen([this, policy, place] { store(path(), By::Schedule, policy, place, {}); });
    });
}

// The version to go back to has to be safe before it is replaced. Where it cannot be kept, saving
// the work counts more.
void OpenDocument::keepSavedThen(const Task& next) {
    if (m_isSavedKept || !m_saved) { return next(); }
    m_disk.forRecovery<QString>(
        [recovery = m_recovery, saved = m_saved, note = recoveryNote()] {
            return failureReasonOf([&] { recovery->keepSaved(*saved, note); });
        },
        [this, next](const QString& failure) {
            m_isSavedKept = failure.isEmpty();
            next();
        });
}

std::optional<DocumentSnapshot> OpenDocument::takeSnapshot(const Completion& done) {
    m_observers.tell([](auto& observer) { observer.documentWillBeStored(); });
    std::optional<DocumentSnapshot> snapshot;
    const QString failure = failureReasonOf([&] { snapshot = m_document.snapshot(); });
    m_schedule.noteTaken();
    if (!snapshot) {
        m_schedule.noteFailed(m_services.clock.now());
        setFailureNotice(failure, false);
        if (done) { done({failure}); }
    }
    return snapshot;
}

void OpenDocument::store(const QString& target, By by, OnDiskChange policy, Place place,
                         const Completion& done) {
    const auto snapshot = takeSnapshot(done);
    if (!snapshot) { return; }
    // What a dead process left was read from its recovery copy, not from the project.
    SaveRequest request{snapshot->package, target, m_isAhead ? OnDiskChange::Overwrite : policy,
                        place == Place::Chosen};
    m_disk.atPlace<SaveOutcome>([request] { return savePackageAsRequested(request); },
                                [this, snapshot, target, by, done](const SaveOutcome& outcome) {
                                    if (outcome.kind == SaveOutcome::Kind::Stored) {
                                        didStore(*snapshot, target, by, *outcome.written);
                                    } else {
                                        didFail(*snapshot, target, outcome);
                                    }
                                    if (done) { done({outcome.reason}); }
                                });
}

void OpenDocument::didStore(const DocumentSnapshot& snapshot, const QString& target, By by,
                            const WrittenPackage& written) {
    m_document.didWrite(snapshot, written, target);
    m_mode = OpenMode::InPlace;
    m_isAhead = false;
    m_failure.clear();
    m_dismissedFailure.clear();
    removeNotice(Notice::Topic::OnDisk);
    removeNotice(Notice::Topic::NotSaved);
    m_watch.watch(target);
    if (by == By::User) {
        didSaveForUser(snapshot);
    } else if (m_recoveredCount && !isEdited()) {
        dropRecovery(&RecoveryFolder::removeWork);
    }
    if (isEdited()) { noteChange(); }  // what was taken for a recovery copy meanwhile
    stateDidChange();
}

void OpenDocument::didSaveForUser(const DocumentSnapshot& snapshot) {
    m_saved = snapshot.package;
    m_savedCount = snapshot.changeCount;
    m_isSavedKept = false;
    removeNotice(Notice::Topic::Recovered);
    dropRecovery(&RecoveryFolder::remove);
    const QString text = u"Saved at %1"_s.arg(m_services.dateTime().toString(u"HH:mm"_s));
    m_observers.tell([&](auto& observer) { observer.documentWasSaved(text); });
}

void OpenDocument::didFail(const DocumentSnapshot& snapshot, const QString& target,
                           const SaveOutcome& outcome) {
    m_schedule.noteFailed(m_services.clock.now());
    if (target != path()) { return; }  // the user is told, and chooses another
    didCompare(outcome.kind);
    const bool isKept = m_recoveredCount == snapshot.changeCount;
    if (outcome.kind == SaveOutcome::Kind::Failed) {
        m_failure = outcome.reason;
        setFailureNotice(m_failure, isKept);
    }
    if (!isKept) { keepWork(snapshot); }
}

void OpenDocument::setFailureNotice(const QString& reason, bool hasRecoveryCopy) {
    if (reason != m_dismissedFailure) { setNotice(noticeOfFailure(reason, hasRecoveryCopy)); }
}

void OpenDocument::placeHangs() {
    m_failure = u"the disk does not answer"_s;
    setFailureNotice(m_failure, false);
    if (m_isLeft || !m_disk.canKeepRecovery()) { return; }
    if (const auto snapshot = takeSnapshot({})) { keepWork(*snapshot); }
}

// Recovery copies

RecoveryNote OpenDocument::recoveryNote() const {
    return {RecoveryNote::Reason::Unsaved, path(), m_document.displayName()};
}

void OpenDocument::keepWork(const DocumentSnapshot& snapshot) {
    const bool hasOtherPlace = !isUntitled();
    m_disk.forRecovery<KeptWork>(
        [recovery = m_recovery, package = snapshot.package, note = recoveryNote(), hasOtherPlace] {
            KeptWork kept;
            kept.failure = failureReasonOf([&] {
                if (hasOtherPlace) { return recovery->keepCopyOfWork(*package, note); }
                kept.written = recovery->keepWork(package, note);
            });
            return kept;
        },
        [this, snapshot](const KeptWork& kept) {
            if (kept.written) { kept.written->becomeStored(); }
            didKeepWork(snapshot, kept.failure);
        });
}

void OpenDocument::didKeepWork(const DocumentSnapshot& snapshot, const QString& failure) {
    const bool isKept = failure.isEmpty();
    if (isKept) {
        m_recoveredCount = snapshot.changeCount;
    } else {
        m_schedule.noteFailed(m_services.clock.now());
    }
    if (!m_failure.isEmpty()) {
        setFailureNotice(m_failure, isKept);
    } else if (isKept) {
        removeNotice(Notice::Topic::NotSaved);
    } else {
        setFailureNotice(failure, false);
    }
}

void OpenDocument::dropRecovery(void (RecoveryFolder::*drop)()) {
    m_disk.forRecovery<bool>(
        [recovery = m_recovery, drop] {
            (*recovery.*drop)();
            return true;
        },
        [this](bool) { m_recoveredCount.reset(); });
}

// Reverting

bool OpenDocument::canRevert() const {
    if (isUntitled() || !m_saved) { return false; }
    return m_isAhead || m_seenCount != m_savedCount;
}

void OpenDocument::revert(const Completion& done) {
    m_disk.whenIdle([this, done] {
        if (!canRevert()) { return done({}); }
        const auto read = [saved = m_saved, at = path(), writes = !isReadOnly()] {
            if (writes) { writeSnapshot(saved, at, OnDiskChange::Overwrite); }
            return readPackage(at);
        };
        keepRevertedThen(done, [this, read, done] { replaceProject(read, done); });
    });
}

void OpenDocument::reload(const Completion& done) {
    m_disk.whenIdle([this, done] {
        const Task next = [this, done] {
            replaceProject([at = path()] { return readPackage(at); }, done);
        };
        if (!isEdited()) { return next(); }
        keepRevertedThen(done, next);
    });
}

void OpenDocument::keepRevertedThen(const Completion& done, const Task& next) {
    const auto snapshot = takeSnapshot(done);
    if (!snapshot) { return; }
    m_disk.forRecovery<QString>(
        [store = m_services.recovery, package = snapshot->package, note = recoveryNote()] {
            return failureReasonOf([&] { store.keepReverted(*package, note); });
        },
        [done, next](const QString& failure) {
            if (failure.isEmpty()) { return next(); }
            done({u"What would be lost could not be kept: %1."_s.arg(failure)});
        });
}

void OpenDocument::replaceProject(const std::function<FileWrapper::Ptr()>& read,
                                  const Completion& done) {
    struct Reread {
        FileWrapper::Ptr root;
        QString failure;
    };
    m_disk.atPlace<Reread>(
        [read] {
            Reread reread;
            reread.failure = failureReasonOf([&] { reread.root = read(); });
            return reread;
        },
        [this, done](Reread reread) {
            if (reread.root) {
                reread.failure = failureReasonOf([&] { takeProject(reread.root); });
            }
            done({reread.failure});
        });
}

void OpenDocument::takeProject(const FileWrapper::Ptr& root) {
    if (!m_document.readFromFileWrapper(root)) { throw InputError(path(), u"was not opened"_s); }
    m_isAhead = false;
    m_failure.clear();
    m_saved = root->snapshot();
    m_savedCount = project()->undoManager().changeCount();
    m_isSavedKept = false;
    m_schedule.noteTaken();
    m_notices = {};
    dropRecovery(&RecoveryFolder::remove);
    attachToProject();
    m_watch.watch(path());
    m_observers.tell([](auto& observer) { observer.documentWasReplaced(); });
}

}  // namespace tweenery
