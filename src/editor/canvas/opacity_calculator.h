#pragma once

#include <QPointF>
#include <cstdint>

#include "model/element.h"

namespace tweenery {

/// Changes the opacity of elements: in setup mode their own, otherwise that at a time in
/// milliseconds of the selected animation. What an element is given is brought into 0 to 1.
class PCOpacityCalculator {
 public:
    PCOpacityCalculator() = delete;

    /// Gives each element `value`; in additive mode the second half of it, the third a third, and
    /// so on. The anchor point plays no part.
    static void updateElementsWithValue(const PCElement::Elements& elements, bool forAdditiveMode,
                                        double value, bool setupMode, int32_t timeInMS,
                                        QPointF additiveAnchorPoint);
    /// Adds each element's share of `delta`. The anchor point plays no part.
    static void updateElementsWithDelta(const PCElement::Elements& elements, bool forAdditiveMode,
                                        double delta, bool setupMode, int32_t timeInMS,
                                        QPointF additiveAnchorPoint);
};

}  // namespace tweenery
