#include "editor/canvas/press_step.h"

namespace tweenery {
namespace {

UndoManager& afterEvent(UndoManager& undoManager) {
    undoManager.endEvent();
    return undoManager;
}

}  // namespace

PressStep::PressStep(UndoManager& undoManager)
    : m_undoManager(afterEvent(undoManager)),
      m_changeCount(undoManager.changeCount()),
      m_undo(undoManager) {}

void PressStep::end() {
    if (hasEdits()) { m_undoManager.setActionName(m_actionName); }
}

}  // namespace tweenery
