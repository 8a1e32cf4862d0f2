#pragma once

#include <QPointF>

#include "model/edit_time.h"
#include "model/element.h"

namespace tweenery {

/// Turns elements, at setup or at a time of the selected animation. Angles are radians.
class PCRotationCalculator {
 public:
    PCRotationCalculator() = delete;

    /// Takes each element's share of `delta` off its rotation, about its anchor point, in additive
    /// mode about `additiveAnchorPoint` in canvas points. An element that has no such point, being
    /// without an area on the canvas, keeps its rotation.
    static void updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                               double delta, EditTime when, QPointF additiveAnchorPoint);
    static void setRotation(double radians, const PCElement::Elements& elements, EditTime when);
    /// The angle at `center` from `startPoint` to `endPoint`, the short way, from -pi to pi.
    static double radiansBetweenStartPoint(QPointF startPoint, QPointF endPoint, QPointF center);
};

}  // namespace tweenery
