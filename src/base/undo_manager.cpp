#include "base/undo_manager.h"

#include <algorithm>

#include "base/errors.h"

namespace tweenery {

UndoManager::UndoManager() = default;
UndoManager::~UndoManager() = default;

void UndoManager::registerUndo(Action action) {
    if (!isUndoRegistrationEnabled()) { return; }
    if (!m_open) {
        m_open = Step{};
        m_isEventOpen = true;
    }
    const bool isFirst = m_open->actions.empty();
    m_open->actions.push_back(std::move(action));
    if (!isFirst || m_state != State::Normal) { return; }

    m_open->countBefore = m_changeCount;
    m_open->countAfter = m_changeCount = ++m_lastCount;
    m_redoStack.clear();
    changed();
}

void UndoManager::beginUndoGrouping() {
    if (m_groupLevel++ == 0 && !m_open) { m_open = Step{}; }
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

void UndoManager::disableUndoRegistration() {
    ++m_disabledCount;
}

void UndoManager::enableUndoRegistration() {
    assertContract(m_disabledCount > 0,
                   QStringLiteral("enableUndoRegistration called without a matching disable"));
    --m_disabledCount;
}

bool UndoManager::canUndo() const {
    return !m_undoStack.empty() || (m_state == State::Normal && m_open && !m_open->actions.empty());
}

bool UndoManager::canRedo() const {
    return !m_redoStack.empty();
}

void UndoManager::undo() {
    endEvent();
    play(m_undoStack, m_redoStack, State::Undoing);
}

void UndoManager::redo() {
    endEvent();
    play(m_redoStack, m_undoStack, State::Redoing);
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
    if (m_state == State::Normal && m_open && !m_open->actions.empty()) { return m_open->name; }
    return m_undoStack.empty() ? QString() : m_undoStack.back().name;
}

QString UndoManager::redoActionName() const {
    return m_redoStack.empty() ? QString() : m_redoStack.back().name;
}

void UndoManager::removeAllActions() {
    m_undoStack.clear();
    m_redoStack.clear();
    if (m_open) { m_open->actions.clear(); }
    endEvent();
    changed();
}

void UndoManager::setLevelsOfUndo(size_t levels) {
    m_levels = levels;
    dropOldSteps();
}

Subscription UndoManager::addChangeHandler(std::function<void()> handler) {
    const auto owned = std::make_shared<std::function<void()>>(std::move(handler));
    const auto membership = std::make_shared<Subscription>(m_changeHandlers.add(owned.get()));
    return Subscription([owned, membership] { membership->end(); });
}

void UndoManager::closeStep() {
    if (!m_open) { return; }
    Step step = std::move(*m_open);
    m_open.reset();
    if (step.actions.empty()) { return; }
    m_undoStack.push_back(std::move(step));
    dropOldSteps();
    changed();
}

void UndoManager::play(std::deque<Step>& from, std::deque<Step>& to, State state) {
    assertContract(m_state == State::Normal && m_groupLevel == 0,
                   QStringLiteral("undo or redo called from within a group or an action"));
    if (from.empty()) { return; }
    const Step step = std::move(from.back());
    from.pop_back();

    playActions(step, state);

    if (!m_open->actions.empty()) { to.push_back(std::move(*m_open)); }
    m_open.reset();
    m_changeCount = state == State::Undoing ? step.countBefore : step.countAfter;
    changed();
}

/// Runs the actions, last first, and leaves the step that they recorded in m_open.
void UndoManager::playActions(const Step& step, State state) {
    m_open = Step{step.name, step.countBefore, step.countAfter, {}};
    m_state = state;
    m_groupLevel = 1;
    try {
        std::for_each(step.actions.rbegin(), step.actions.rend(),
                      [](const Action& action) { action(); });
    } catch (...) {
        m_state = State::Normal;
        m_groupLevel = 0;
        m_changeCount = ++m_lastCount;
        removeAllActions();
        throw;
    }
    m_state = State::Normal;
    m_groupLevel = 0;
}

void UndoManager::dropOldSteps() {
    if (m_levels == 0 || m_undoStack.size() <= m_levels) { return; }
    m_undoStack.erase(m_undoStack.begin(), m_undoStack.end() - static_cast<ptrdiff_t>(m_levels));
}

void UndoManager::changed() {
    m_changeHandlers.tell([](const auto& handler) { handler(); });
}

}  // namespace tweenery
