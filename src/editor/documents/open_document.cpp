#include "editor/documents/open_document.h"

#include "storage/system_names.h"

namespace tweenery {

using namespace Qt::StringLiterals;

OpenDocument::OpenDocument(DocumentServices& services)
    : m_services(services),
      m_document(services.alerts, services.log),
      m_recovery(std::make_shared<RecoveryFolder>(services.recovery)),
      m_disk([this] { diskIsReady(); }, [this] { placeHangs(); }),
      m_watch(m_disk.placeThread(), [this] { m_watchTimer.start(); }) {
    constexpr int gatheringTime = 100;
    m_watchTimer.setInterval(gatheringTime);
    for (QTimer* timer : {&m_timer, &m_watchTimer}) {
        timer->setSingleShot(true);
    }
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
    QObject::connect(&m_watchTimer, &QTimer::timeout, &m_watchTimer, [this] { checkDisk(); });
}

OpenDocument::~OpenDocument() = default;

// Opening

void OpenDocument::openUntitled(const QString& name) {
    m_document.setDisplayName(name);
    attachToProject();
}

OpenDocument::Opening OpenDocument::open(const QString& path, OpenMode mode) {
    if (mode == OpenMode::Copy) { return openCopy(path); }
    m_lock = ProjectLock(m_services.lockFolder, path);
    if (mode == OpenMode::InPlace && !m_lock.tryLock()) { return Opening::HeldByOther; }
    if (!m_document.readFromPath(path)) { return Opening::Declined; }
    m_mode = mode;
    m_saved = project()->packageRoot()->snapshot();
    m_savedCount = project()->undoManager().changeCount();
    if (const auto left = m_services.recovery.leftBehindOf(path);
        left && mode == OpenMode::InPlace) {
        takeUp(*left);
    }
    attachToProject();
    m_watch.watch(path);
    return Opening::Opened;
}

OpenDocument::Opening OpenDocument::openCopy(const QString& path) {
    m_document.setDisplayName(path);
    m_document.setDisplayName(m_document.displayName() + u" copy"_s);
    if (!m_document.readFromFileWrapper(readPackage(path))) { return Opening::Declined; }
    m_isAhead = true;
    attachToProject();
    return Opening::Opened;
}

OpenDocument::Opening OpenDocument::openRecovered(const RecoveredWork& work) {
    const QString& place = work.note.projectPath;
    const bool isUnsaved = work.note.reason == RecoveryNote::Reason::Unsaved;
    const bool hasPlace = isUnsaved && !place.isEmpty();
    if (hasPlace && kindOfPath(place) == PathKind::Directory) {
        try {
            return open(place);
        } catch (const InputError&) {
            if (work.isInPlace) { throw; }  // else the copy does without the project
        }
    }
    m_document.setDisplayName(work.note.displayName);
    if (!m_recovery->takeOver(work)) { return Opening::HeldByOther; }
    if (!m_document.readFromFileWrapper(readPackage(work.work))) { return Opening::Declined; }
    m_isAhead = true;
    if (isUnsaved) { m_notices.set(noticeOfRecovery(work.time, m_services.dateTime(), false)); }
    attachToProject();
    return Opening::Opened;
}

// The project has been read from its place; `work` is what it saved by itself since its user did,
// or what could not be saved there.
void OpenDocument::takeUp(const RecoveredWork& work) {
    try {
        const auto saved = work.saved.isEmpty() ? m_saved : readPackage(work.saved)->snapshot();
        const auto ahead = work.isInPlace ? nullptr : readPackage(work.work);
        if (!m_recovery->takeOver(work)) { return; }
        if (ahead && !m_document.readFromFileWrapper(ahead)) { return; }
        m_isAhead = ahead != nullptr;
        m_isSavedKept = !work.saved.isEmpty();
        m_saved = saved;
        m_savedCount = kCountOfNoEdits;
        m_notices.set(noticeOfRecovery(work.time, m_services.dateTime(), true));
    } catch (const InputError& error) {
        m_services.log.writeLine(u"What was left of %1 cannot be read: %2 %3"_s.arg(
            path(), error.entry(), error.reason()));
    }
}

QString OpenDocument::lockHolder() const {
    const auto holder = m_lock.holder();
    return holder ? u"another Tweenery (%1)"_s.arg(holder->description()) : u"another Tweenery"_s;
}

// State

QString OpenDocument::windowTitle() const {
    QString name = m_document.displayName();
    name.replace(u"[*]"_s, u"[*][*]"_s);  // stands for itself
    return name + u"[*]"_s + (isReadOnly() ? u" (Read-Only)"_s : QString());
}

void OpenDocument::attachToProject() {
    UndoManager& undoManager = project()->undoManager();
    m_seenCount = undoManager.changeCount();
    m_edits = undoManager.addChangeHandler([this] { projectDidChange(); });
    m_recoveredCount.reset();
    if (m_isAhead) { noteChange(); }
    stateDidChange();
}

void OpenDocument::projectDidChange() {
    const int64_t count = project()->undoManager().changeCount();
    if (count == m_seenCount) { return; }
    m_seenCount = count;
    noteChange();
    if (isEdited() != m_wasEdited) { stateDidChange(); }
}

void OpenDocument::noteChange() {
    m_schedule.noteChange(m_services.clock.now());
    if (!m_timer.isActive()) { tick(); }
}

void OpenDocument::stateDidChange() {
    m_wasEdited = isEdited();
    m_observers.tell([](OpenDocumentObserver& observer) { observer.documentStateDidChange(); });
}

void OpenDocument::setNotice(const Notice& notice) {
    if (m_notices.set(notice)) { stateDidChange(); }
}

void OpenDocument::removeNotice(Notice::Topic topic) {
    if (m_notices.remove(topic)) { stateDidChange(); }
}

void OpenDocument::dismiss(Notice::Topic topic) {
    if (topic == Notice::Topic::NotSaved) { m_dismissedFailure = m_failure; }
    removeNotice(topic);
}

void OpenDocument::answer(Notice::Topic topic, Notice::Action action) {
    const auto removeWhenDone = [this, topic](const Outcome& outcome) {
        if (outcome.isDone()) { removeNotice(topic); }
    };
    switch (action) {
        case Notice::Action::GoBackToSaved:
            return revert(removeWhenDone);
        case Notice::Action::Keep:
            return removeNotice(topic);
        case Notice::Action::Reload:
            return reload(removeWhenDone);
        case Notice::Action::KeepMine:
            removeNotice(topic);
            return storeWhenIdle(OnDiskChange::Overwrite, Place::Present);
        case Notice::Action::PutBack:
            removeNotice(topic);
            return storeWhenIdle(OnDiskChange::Overwrite, Place::Chosen);
        case Notice::Action::TryAgain:
            return storeWhenIdle(OnDiskChange::Refuse, Place::Present);
        case Notice::Action::SaveElsewhere:
            return m_observers.tell([](auto& observer) { observer.documentNeedsPlace(); });
    }
}

// Changes on disk

void OpenDocument::checkDisk() {
    if (isUntitled() || m_isAhead || m_isLeft) { return; }
    m_wantsCheck = !m_disk.isIdle();
    if (m_wantsCheck) { return; }
    m_disk.atPlace<SaveOutcome::Kind>([stored = project()->packageRoot()->snapshot(),
                                       at = path()] { return comparePackageWithDisk(*stored, at); },
                                      [this](SaveOutcome::Kind found) { didCompare(found); });
}

void OpenDocument::didCompare(SaveOutcome::Kind found) {
    if (found == SaveOutcome::Kind::Stored && m_notices.contains(Notice::Topic::OnDisk)) {
        removeNotice(Notice::Topic::OnDisk);
        if (isEdited()) { noteChange(); }
    }
    if (found == SaveOutcome::Kind::ChangedOnDisk) { setNotice(noticeOfChangeOnDisk()); }
    if (found == SaveOutcome::Kind::Gone) { setNotice(noticeOfAbsence()); }
}

void OpenDocument::diskIsReady() {
    if (m_wantsCheck) { checkDisk(); }
    tick();
}

// Closing

OpenDocument::CloseNeed OpenDocument::closeNeed() const {
    if (!isEdited()) { return CloseNeed::Nothing; }
    return savesInPlace() && m_failure.isEmpty() ? CloseNeed::Save : CloseNeed::Question;
}

void OpenDocument::close(const Completion& done) {
    m_disk.whenIdle([this, done] {
        switch (closeNeed()) {
            case CloseNeed::Nothing:
                return leave(done);
            case CloseNeed::Question:
                return done({u"The project has unsaved changes."_s});
            case CloseNeed::Save:
                break;
        }
        store(path(), By::Schedule, OnDiskChange::Refuse, Place::Present,
              [this, done](const Outcome& outcome) {
                  if (!outcome.isDone()) { return done(outcome); }
                  close(done);  // edits may have been made meanwhile
              });
    });
}

void OpenDocument::discard(const Completion& done) {
    if (m_disk.isHung()) { return leave(done); }
    m_disk.whenIdle([this, done] { leave(done); });
}

void OpenDocument::leave(const Completion& done) {
    m_isLeft = true;
    m_timer.stop();
    m_watch.watch({});
    m_disk.forRecovery<bool>(
        [recovery = m_recovery] {
            recovery->remove();
            return true;
        },
        [this, done](bool) {
            m_lock.unlock();
            done({});
        });
}

}  // namespace tweenery
