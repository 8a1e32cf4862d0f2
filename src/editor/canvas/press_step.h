#pragma once

#include <QString>

#include "base/undo_manager.h"

namespace tweenery {

/// The one step of undo that a press is, for its life: what came before is a step of its own, and a
/// press that changed nothing leaves none.
class PressStep {
 public:
    explicit PressStep(UndoManager& undoManager);

    void setActionName(const QString& name) { m_actionName = name; }
    bool hasEdits() const { return m_undoManager.changeCount() != m_changeCount; }
    /// The press is over, and its step named. At most once, like cancel(), and not both.
    void end();
    /// The press is over, and all its edits are taken back.
    void cancel() { m_undo.cancel(); }

 private:
    UndoManager& m_undoManager;
    int64_t m_changeCount;
    UndoGesture m_undo;
    QString m_actionName;
};

}  // namespace tweenery
