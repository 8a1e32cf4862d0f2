#pragma once

#include <QPointF>

#include "model/edit_time.h"
#include "model/element.h"

namespace tweenery {

/// Changes the opacity of elements, at setup or at a time of the selected animation. What an
/// element is given is brought into 0 to 1.
class PCOpacityCalculator {
 public:
    PCOpacityCalculator() = delete;

    /// Gives each element `value`; in additive mode the second half of it, the third a third, and
    /// so on. The anchor point plays no part.
    static void updateElementsWithValue(const PCElement::Elements& elements, bool forAdditiveMode,
                                        double value, EditTime when, QPointF additiveAnchorPoint);
    /// Adds each element's share of `delta`. The anchor point plays no part.
    static void updateElementsWithDelta(const PCElement::Elements& elements, bool forAdditiveMode,
                                        double delta, EditTime when, QPointF additiveAnchorPoint);
};

}  // namespace tweenery
