#include "base/undo_manager.h"

#include <exception>
#include <utility>

#include "base/errors.h"

namespace tweenery {

UndoManager::UndoManager() = default;
UndoManager::~UndoManager() = default;

void UndoManager::registerUndo(Action action) {
    if (!isUndoRegistrationEnabled()) { return; }
    if (!m_open) {
        openStep();
        m_isEventOpen = true;
    }
    const bool isFirst = m_open->actions.empty();
    if (isFirst && m_state == State::Normal && m_placeSource) { m_open->place = m_placeSource(); }
    m_open->actions.push_back(std::move(action));
    noteEdit();
    if (isFirst && m_state == State::Normal) { changed(); }
}

bool UndoManager::needsInverse(const UndoKey& key) {
    if (!isUndoRegistrationEnabled()) { return false; }
    if (!isInGesture() || m_gestures.back().keys.insert(key).second) { return true; }
    noteEdit();
    return false;
}

void UndoManager::openStep() {
    m_open = Step{};
    m_open->countBefore = m_changeCount;
}

// Each edit counts, not each step: a save may come between two of one step.
void UndoManager::noteEdit() {
    if (m_state != State::Normal || m_amendment != Amendment::None) { return; }
    m_open->countAfter = m_changeCount = ++m_lastCount;
}

void UndoManager::beginUndoGrouping() {
    if (m_groupLevel++ == 0 && !m_open) { openStep(); }
}

void UndoManager::endUndoGrouping() {
    const int levelOfPlayback = m_state == State::Normal ? 0 : 1;
    assertContract(m_groupLevel > levelOfPlayback,
                   QStringLiteral("endUndoGrouping called without a matching begin"));
    if (--m_groupLevel == 0 && !m_isEventOpen) { closeStep(); }
}

void UndoManager::endEvent() {
    m_isEventOpen = false;
    if (m_groupLevel == 0) { closeStep(); }
}

void UndoManager::beginGesture() {
    assertContract(m_state == State::Normal,
                   QStringLiteral("a gesture cannot begin within an action"));
    beginUndoGrouping();
    m_gestures.push_back({m_groupLevel, m_open->actions.size(), m_changeCount, {}});
    changed();
}

UndoManager::Gesture UndoManager::takeGesture() {
    assertContract(isInGesture() && m_gestures.back().groupLevel == m_groupLevel,
                   QStringLiteral("a gesture ends where none is the innermost group"));
    Gesture gesture = std::move(m_gestures.back());
    m_gestures.pop_back();
    return gesture;
}

void UndoManager::endGesture() {
    Gesture gesture = takeGesture();
    if (isInGesture()) { m_gestures.back().keys.merge(gesture.keys); }
    endUndoGrouping();
    changed();
}

void UndoManager::cancelGesture() {
    const Gesture gesture = takeGesture();
    std::deque<Action>& actions = m_open->actions;
    try {
        const UndoRegistrationPause pause(*this);
        playActions(actions, gesture.firstAction, State::Undoing);
    } catch (...) {
        endUndoGrouping();
        throw;
    }
    while (actions.size() > gesture.firstAction) {
        actions.pop_back();
    }
    m_open->countAfter = m_changeCount = gesture.countBefore;
    endUndoGrouping();
    changed();
}

bool UndoManager::isWhole() const {
    return m_state == State::Normal && m_groupLevel == static_cast<int>(m_gestures.size());
}

void UndoManager::disableUndoRegistration() {
    ++m_disabledCount;
}

void UndoManager::enableUndoRegistration() {
    assertContract(m_disabledCount > 0,
                   QStringLiteral("enableUndoRegistration called without a matching disable"));
    --m_disabledCount;
}

bool UndoManager::hasOpenActions() const {
    return m_state == State::Normal && m_open && !m_open->actions.empty();
}

bool UndoManager::canUndo() const {
    return !isInGesture() && (!m_undoStack.empty() || hasOpenActions());
}

bool UndoManager::canRedo() const {
    return !isInGesture() && !m_redoStack.empty() && !hasOpenActions();
}

bool UndoManager::undo() {
    if (isInGesture()) { return false; }
    endEvent();
    return play(m_undoStack, m_redoStack, State::Undoing);
}

bool UndoManager::redo() {
    if (isInGesture()) { return false; }
    endEvent();
    return play(m_redoStack, m_undoStack, State::Redoing);
}

void UndoManager::setActionName(const QString& name) {
    if (m_state != State::Normal || !isUndoRegistrationEnabled()) { return; }
    if (m_open) {
        m_open->name = name;
    } else if (!m_undoStack.empty()) {
        m_undoStack.back().name = name;
    }
}

QString UndoManager::undoActionName() const {
    if (hasOpenActions()) { return m_open->name; }
    return m_undoStack.empty() ? QString() : m_undoStack.back().name;
}

QString UndoManager::redoActionName() const {
    return canRedo() ? m_redoStack.back().name : QString();
}

void UndoManager::beginAmendment() {
    assertContract(m_amendment == Amendment::None, QStringLiteral("amendments do not nest"));
    if (m_state != State::Normal) { return; }
    if (m_open) {
        m_amendment = Amendment::OfOpenStep;
    } else if (m_undoStack.empty()) {
        m_amendment = Amendment::Unrecorded;
        disableUndoRegistration();
    } else {
        m_amendment = Amendment::OfLastStep;
        m_open = std::move(m_undoStack.back());
        m_undoStack.pop_back();
        ++m_groupLevel;
    }
}

void UndoManager::endAmendment() {
    switch (std::exchange(m_amendment, Amendment::None)) {
        case Amendment::None:
        case Amendment::OfOpenStep:
            return;
        case Amendment::Unrecorded:
            enableUndoRegistration();
            return;
        case Amendment::OfLastStep:
            --m_groupLevel;
            m_undoStack.push_back(std::move(*m_open));
            m_open.reset();
            return;
    }
}

QString UndoManager::placeOfUndo() const {
    if (hasOpenActions()) { return m_open->place; }
    return canUndo() ? m_undoStack.back().place : QString();
}

QString UndoManager::placeOfRedo() const {
    return canRedo() ? m_redoStack.back().place : QString();
}

void UndoManager::removeAllActions() {
    m_undoStack.clear();
    m_redoStack.clear();
    if (m_open) { m_open->actions.clear(); }
    for (Gesture& gesture : m_gestures) {
        gesture.firstAction = 0;
        gesture.keys.clear();
    }
    endEvent();
    changed();
}

void UndoManager::setLevelsOfUndo(size_t levels) {
    m_levels = levels;
    dropOldSteps();
}

Subscription UndoManager::addChangeHandler(std::function<void()> handler) {
    return m_changeHandlers.add(std::move(handler));
}

void UndoManager::closeStep() {
    if (!m_open) { return; }
    Step step = std::move(*m_open);
    m_open.reset();
    if (step.actions.empty()) { return; }
    m_redoStack.clear();
    m_undoStack.push_back(std::move(step));
    dropOldSteps();
    changed();
}

bool UndoManager::play(std::deque<Step>& from, std::deque<Step>& to, State state) {
    assertContract(m_state == State::Normal && m_groupLevel == 0,
                   QStringLiteral("undo or redo called from within a group or an action"));
    if (from.empty()) { return false; }
    const Step step = std::move(from.back());
    from.pop_back();

    m_open = Step{step.name, step.place, step.countBefore, step.countAfter, {}};
    playActions(step.actions, 0, state);

    if (!m_open->actions.empty()) { to.push_back(std::move(*m_open)); }
    m_open.reset();
    m_changeCount = state == State::Undoing ? step.countBefore : step.countAfter;
    changed();
    return true;
}

// Runs the actions, last first, down to `first`. What they record goes to m_open.
void UndoManager::playActions(const std::deque<Action>& actions, size_t first, State state) {
    const int groupLevel = m_groupLevel;
    m_state = state;
    ++m_groupLevel;
    try {
        for (size_t i = actions.size(); i > first; --i) {
            actions[i - 1]();
        }
    } catch (...) {
        m_state = State::Normal;
        m_groupLevel = groupLevel;
        m_changeCount = ++m_lastCount;
        removeAllActions();
        throw;
    }
    m_state = State::Normal;
    m_groupLevel = groupLevel;
}

void UndoManager::dropOldSteps() {
    if (m_levels == 0 || m_undoStack.size() <= m_levels) { return; }
    m_undoStack.erase(m_undoStack.begin(), m_undoStack.end() - static_cast<ptrdiff_t>(m_levels));
}

void UndoManager::changed() {
    m_changeHandlers.call();
}

UndoGesture::UndoGesture(UndoManager& manager)
    : m_manager(&manager), m_exceptions(std::uncaught_exceptions()) {
    manager.beginGesture();
}

UndoGesture::~UndoGesture() {
    if (!m_manager) { return; }
    if (std::uncaught_exceptions() == m_exceptions) {
        m_manager->endGesture();
        return;
    }
    try {
        m_manager->cancelGesture();
    } catch (...) {  // has dropped all steps; the exception under way says what went wrong
    }
}

void UndoGesture::cancel() {
    std::exchange(m_manager, nullptr)->cancelGesture();
}

}  // namespace tweenery
