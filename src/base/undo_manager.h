#pragma once

#include <QString>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

#include "base/listener_set.h"
#include "base/undo_action.h"

namespace tweenery {

/// Records the inverse of each edit and plays it back. While undoing, what is registered becomes
/// the redo step, and the other way round. Steps registered within one group are undone together,
/// last first. Groups nest: only the outermost makes a step. A step holds what it needs alive.
class UndoManager {
 public:
    using Action = UndoAction;

    UndoManager();
    ~UndoManager();
    UndoManager(const UndoManager&) = delete;
    UndoManager& operator=(const UndoManager&) = delete;

    /// Registers the inverse of an edit. Ignored while registration is disabled. Outside of any
    /// group, actions gather in the current event's group, which endEvent() or undo() closes. A new
    /// edit drops what could be redone.
    void registerUndo(Action action);

    void beginUndoGrouping();
    /// Closes the innermost group; an empty outermost group leaves no step. Throws AssertionFailure
    /// without an open group.
    void endUndoGrouping();
    /// Closes the group of the current event, if one is open. The application calls it once a turn
    /// of its event loop; a test or a command between two edits. Explicit groups stay open over it,
    /// so that a drag of many events is one step.
    void endEvent();

    /// Nested calls count: registration is on again after as many enables.
    void disableUndoRegistration();
    void enableUndoRegistration();
    bool isUndoRegistrationEnabled() const { return m_disabledCount == 0; }

    bool canUndo() const;
    bool canRedo() const;
    /// Plays the last step back; nothing without one. Throws AssertionFailure from within a group
    /// or an action. When an action throws, all steps are dropped, because they no longer fit.
    void undo();
    void redo();
    bool isUndoing() const { return m_state == State::Undoing; }
    bool isRedoing() const { return m_state == State::Redoing; }

    /// Names the step now being recorded, or the last one when none is open. Ignored while
    /// registration is disabled, and while undoing or redoing: a step keeps its name both ways.
    void setActionName(const QString& name);
    QString undoActionName() const;
    QString redoActionName() const;

    void removeAllActions();
    /// 0 keeps all steps. Older steps are dropped first.
    void setLevelsOfUndo(size_t levels);

    /// Called after every change of what can be undone or redone, as long as the subscription is
    /// kept; for menus and the edited state.
    Subscription addChangeHandler(std::function<void()> handler);
    /// The state that the steps have led to: goes up with each new step, back with undo and forth
    /// with redo. The document is unedited when it equals the count remembered at the save. A
    /// number is never used twice, so that an edit after an undo is no return to a saved state.
    int64_t changeCount() const { return m_changeCount; }

 private:
    enum class State { Normal, Undoing, Redoing };
    struct Step {
        QString name;
        int64_t countBefore = 0;
        int64_t countAfter = 0;
        std::deque<Action> actions;  // of a big edit many, which are not to be copied as they grow
    };

    State m_state = State::Normal;
    int m_disabledCount = 0;
    int m_groupLevel = 0;
    bool m_isEventOpen = false;
    size_t m_levels = 0;
    int64_t m_changeCount = 0;
    int64_t m_lastCount = 0;
    std::optional<Step> m_open;
    std::deque<Step> m_undoStack;
    std::deque<Step> m_redoStack;
    ListenerSet<std::function<void()>> m_changeHandlers;

    void closeStep();
    void play(std::deque<Step>& from, std::deque<Step>& to, State state);
    void playActions(const Step& step, State state);
    void dropOldSteps();
    void changed();
};

/// Groups the steps registered during its life into one.
class UndoGroup {
 public:
    explicit UndoGroup(UndoManager& manager) : m_manager(manager) { m_manager.beginUndoGrouping(); }
    ~UndoGroup() { m_manager.endUndoGrouping(); }
    UndoGroup(const UndoGroup&) = delete;
    UndoGroup& operator=(const UndoGroup&) = delete;

 private:
    UndoManager& m_manager;
};

/// Keeps registration off during its life.
class UndoRegistrationPause {
 public:
    explicit UndoRegistrationPause(UndoManager& manager) : m_manager(manager) {
        m_manager.disableUndoRegistration();
    }
    ~UndoRegistrationPause() { m_manager.enableUndoRegistration(); }
    UndoRegistrationPause(const UndoRegistrationPause&) = delete;
    UndoRegistrationPause& operator=(const UndoRegistrationPause&) = delete;

 private:
    UndoManager& m_manager;
};

}  // namespace tweenery
