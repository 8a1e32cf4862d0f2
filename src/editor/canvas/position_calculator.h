#pragma once

#include <QPointF>
#include <cstdint>

#include "model/element.h"

namespace tweenery {

/// Moves elements: in setup mode their positions, otherwise their translations at a time in
/// milliseconds of the selected animation. Each step is the element's own, with undo and
/// notification.
class PCPositionCalculator {
 public:
    PCPositionCalculator() = delete;

    /// Moves each element by its share of `delta`, in canvas points, whatever the groups around it
    /// do. An element in a group that is scaled to nothing stays, and so does the canvas.
    static void updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                               QPointF delta, bool setupMode, int32_t timeInMS);
    /// One coordinate in the parent's points; outside setup mode the translation itself.
    static void setXPosition(float x, const PCElement::Elements& elements, bool setupMode,
                             int32_t timeInMS);
    static void setYPosition(float y, const PCElement::Elements& elements, bool setupMode,
                             int32_t timeInMS);
};

}  // namespace tweenery
