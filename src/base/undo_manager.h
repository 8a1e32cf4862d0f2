#pragma once

#include <QString>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <unordered_set>
#include <vector>

#include "base/handler_set.h"
#include "base/undo_action.h"

namespace tweenery {

/// What an edit sets: one property, by a number of the owner's own, of one object, by its address.
struct UndoKey {
    const void* object = nullptr;
    int property = 0;
    bool operator==(const UndoKey&) const = default;
};

/// Records the inverse of each edit and plays it back. While undoing, what is registered becomes
/// the redo step, and the other way round. Steps registered within one group are undone together,
/// last first. Groups nest: only the outermost makes a step. A step holds what it needs alive.
///
/// A gesture is a group that can be cancelled: everything is as it was before, and what could be
/// redone still can be. However often its events set the same thing, one inverse stands for them
/// all (see needsInverse()), so that memory and time go by what was touched. It is also how an edit
/// that may fail half-way leaves nothing behind.
///
/// A save may come at any moment that isWhole(), also between two events of a gesture. What is
/// saved then is what is on the screen; the changeCount() to remember is the one read with it, and
/// every edit afterwards, of the same step too, makes it another.
class UndoManager {
 public:
    using Action = UndoAction;

    UndoManager();
    ~UndoManager();
    UndoManager(const UndoManager&) = delete;
    UndoManager& operator=(const UndoManager&) = delete;

    /// Registers the inverse of an edit. Ignored while registration is disabled. Outside of any
    /// group, actions gather in the current event's group, which endEvent() or undo() closes. A
    /// step that is kept drops what could be redone.
    void registerUndo(Action action);
    /// To be asked before a value is set whose inverse does nothing but store what was there, and
    /// which no other inverse reads or writes. False when nothing is to be registered: while
    /// registration is disabled, and when the gesture under way holds an inverse for `key` already,
    /// which leads back further. The inverse that follows a true keeps the key's object alive.
    bool needsInverse(const UndoKey& key);

    void beginUndoGrouping();
    /// Closes the innermost group; an empty outermost group leaves no step. Throws AssertionFailure
    /// without an open group.
    void endUndoGrouping();
    /// Closes the group of the current event, if one is open. The application calls it once a turn
    /// of its event loop; a test or a command between two edits. Explicit groups stay open over it,
    /// so that a drag of many events is one step.
    void endEvent();

    /// Begins a gesture. Within a group, also that of the current event, or another gesture it is
    /// part of their step, and still can be cancelled by itself. Throws AssertionFailure from
    /// within an action.
    void beginGesture();
    /// Ends the innermost gesture. One without edits leaves no step. Throws AssertionFailure
    /// without an open gesture, and while a group that began within it is open; so does
    /// cancelGesture().
    void endGesture();
    /// Ends it too and plays its edits back: no step, nothing to redo, the count as it was. When an
    /// action throws, all steps are dropped, because they no longer fit.
    void cancelGesture();
    bool isInGesture() const { return !m_gestures.empty(); }
    /// False in the middle of an edit: within a group, and while undoing or redoing. Who saves on a
    /// timer waits for it to be true, which it is between the events of a gesture.
    bool isWhole() const;

    /// Nested calls count: registration is on again after as many enables.
    void disableUndoRegistration();
    void enableUndoRegistration();
    bool isUndoRegistrationEnabled() const { return m_disabledCount == 0; }

    /// Both are false during a gesture.
    bool canUndo() const;
    bool canRedo() const;
    /// Play the last step back. False when there is none, and during a gesture, which has to end
    /// first. Throw AssertionFailure from within a group or an action. When an action throws, all
    /// steps are dropped, because they no longer fit.
    bool undo();
    bool redo();
    bool isUndoing() const { return m_state == State::Undoing; }
    bool isRedoing() const { return m_state == State::Redoing; }

    /// Names the step now being recorded, or the last one when none is open. Ignored while
    /// registration is disabled, and while undoing or redoing: a step keeps its name both ways.
    void setActionName(const QString& name);
    /// Of the step under way; empty without one.
    QString nameOfOpenStep() const { return m_open ? m_open->name : QString(); }
    QString undoActionName() const;
    QString redoActionName() const;

    /// Edits that only follow from those before, and count as none: until endAmendment() their
    /// inverses join the step that is under way, or the last one; without any they are not kept.
    /// What could be redone still can be. Ignored while undoing or redoing, which records anyway.
    void beginAmendment();
    void endAmendment();

    /// Asked where each step is made, such as in which animation, when its first edit is
    /// registered.
    void setPlaceSource(std::function<QString()> source) { m_placeSource = std::move(source); }
    /// Where the step was made that undo() or redo() would play; null without one.
    QString placeOfUndo() const;
    QString placeOfRedo() const;

    void removeAllActions();
    /// 0 keeps all steps. Older steps are dropped first.
    void setLevelsOfUndo(size_t levels);

    /// Called after every change of what can be undone or redone, as long as the subscription is
    /// kept; for menus and the edited state.
    Subscription addChangeHandler(std::function<void()> handler);
    /// The state that the edits have led to: goes up with each edit, back with undo and cancelling
    /// and forth with redo. The document is unedited when it equals the count remembered at the
    /// save. A number is never used twice, so that an edit after an undo, or after a save in the
    /// middle of a step, is no return to a saved state.
    int64_t changeCount() const { return m_changeCount; }

 private:
    enum class State { Normal, Undoing, Redoing };
    struct Step {
        QString name;
        QString place;
        int64_t countBefore = 0;
        int64_t countAfter = 0;
        std::deque<Action> actions;  // of a big edit many, which are not to be copied as they grow
    };
    struct KeyHash {
        size_t operator()(const UndoKey& key) const {
            return std::hash<const void*>()(key.object) ^ static_cast<size_t>(key.property);
        }
    };
    struct Gesture {
        int groupLevel = 0;
        size_t firstAction = 0;
        int64_t countBefore = 0;
        std::unordered_set<UndoKey, KeyHash> keys;  // whose inverses it holds
    };

    State m_state = State::Normal;
    int m_disabledCount = 0;
    int m_groupLevel = 0;
    bool m_isEventOpen = false;
    size_t m_levels = 0;
    int64_t m_changeCount = 0;
    int64_t m_lastCount = 0;
    std::optional<Step> m_open;
    std::vector<Gesture> m_gestures;  // the innermost last
    std::function<QString()> m_placeSource;
    enum class Amendment { None, OfOpenStep, OfLastStep, Unrecorded };
    Amendment m_amendment = Amendment::None;
    std::deque<Step> m_undoStack;
    std::deque<Step> m_redoStack;
    HandlerSet m_changeHandlers;

    void openStep();
    void noteEdit();
    bool hasOpenActions() const;
    void closeStep();
    Gesture takeGesture();
    bool play(std::deque<Step>& from, std::deque<Step>& to, State state);
    void playActions(const std::deque<Action>& actions, size_t first, State state);
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

/// A gesture for its life: ended, unless it was cancelled, or an exception leaves its scope.
class UndoGesture {
 public:
    explicit UndoGesture(UndoManager& manager);
    ~UndoGesture();
    UndoGesture(const UndoGesture&) = delete;
    UndoGesture& operator=(const UndoGesture&) = delete;

    /// At most once.
    void cancel();

 private:
    UndoManager* m_manager;  // null once cancelled
    int m_exceptions;        // under way when it began
};

/// An amendment for its life.
class UndoAmendment {
 public:
    explicit UndoAmendment(UndoManager& manager) : m_manager(manager) {
        m_manager.beginAmendment();
    }
    ~UndoAmendment() { m_manager.endAmendment(); }
    UndoAmendment(const UndoAmendment&) = delete;
    UndoAmendment& operator=(const UndoAmendment&) = delete;

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
