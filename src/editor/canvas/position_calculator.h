#pragma once

#include <QPointF>

#include "model/edit_time.h"
#include "model/element.h"

namespace tweenery {

/// Moves elements: at setup their positions, at a time of the selected animation their
/// translations. Each step is the element's own, with undo and notification.
class PCPositionCalculator {
 public:
    PCPositionCalculator() = delete;

    /// Moves each element by its share of `delta`, in canvas points, whatever the groups around it
    /// do. An element in a group that is scaled to nothing stays, and so does the canvas.
    static void updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                               QPointF delta, EditTime when);
    /// One coordinate in the parent's points; at a time the translation itself.
    static void setXPosition(float x, const PCElement::Elements& elements, EditTime when);
    static void setYPosition(float y, const PCElement::Elements& elements, EditTime when);
};

}  // namespace tweenery
