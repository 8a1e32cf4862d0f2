#pragma once

#include "editor/canvas/cursor_choice.h"

namespace tweenery {

/// The canvas's tool, and the keys that put another in its place while they are down: Space the
/// hand, Control the direct tool. There is one place for what to go back to: with both keys down it
/// is the tool of the first.
class CanvasTools {
 public:
    PCSelectionState current() const { return m_current; }
    /// The tool for good: a key that is down leads back to it.
    void choose(PCSelectionState tool) { m_current = m_previous = tool; }
    /// Which keys are down now. Nothing happens for one that was before.
    void hold(bool spaceIsDown, bool controlIsDown) {
        follow(m_controlIsDown, controlIsDown, PCSelectionStateDirect);
        follow(m_spaceIsDown, spaceIsDown, PCSelectionStateHand);
    }

 private:
    PCSelectionState m_current = PCSelectionStateSelect;
    PCSelectionState m_previous = PCSelectionStateSelect;
    bool m_spaceIsDown = false;
    bool m_controlIsDown = false;

    void follow(bool& wasDown, bool isDown, PCSelectionState tool) {
        if (wasDown == isDown) { return; }
        wasDown = isDown;
        if (isDown) { m_previous = m_current; }
        m_current = isDown ? tool : m_previous;
    }
};

}  // namespace tweenery
