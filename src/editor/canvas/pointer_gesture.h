#pragma once

#include <QString>

#include "editor/canvas/pointer_event.h"

namespace tweenery {

/// One drag of a pane, from the press that began it until that is over, when it is destroyed and
/// takes with it what only a drag shows. The undo step is its owner's, and so is taking it all
/// back.
class PointerGesture {
 public:
    PointerGesture() = default;
    virtual ~PointerGesture() = default;
    PointerGesture(const PointerGesture&) = delete;
    PointerGesture& operator=(const PointerGesture&) = delete;

    /// The pointer is there now, with these modifiers; either may be what has changed.
    virtual void drag(const PointerEvent& event) = 0;
    /// Of its step; null where it leaves none.
    virtual QString actionName() const { return {}; }
    /// What the drag has changed so far, for the plate beside the pointer; null for nothing.
    virtual QString feedback() const { return {}; }
};

}  // namespace tweenery
