#pragma once

#include <QPointF>

#include "model/edit_time.h"
#include "model/element.h"

namespace tweenery {

/// Scales elements, at setup or at a time of the selected animation. An instance follows one resize
/// of a rectangle with the pointer.
class PCScaleCalculator {
 public:
    /// Adds each element's share of `delta`, in scale factors, along the axis on which it is
    /// larger, x when they are equal; an element with `scalesLocked` keeps its ratio. It is scaled
    /// about its anchor point, in additive mode about `additiveAP` in canvas points. An element for
    /// which that is nowhere, or the ratio not a number, keeps its scale.
    static void updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                               QPointF delta, EditTime when, QPointF additiveAP);
    /// One factor, about the anchor point, whatever `scalesLocked` says.
    static void setXScale(double factor, const PCElement::Elements& elements, EditTime when);
    static void setYScale(double factor, const PCElement::Elements& elements, EditTime when);
    /// Moves the anchor point, in unit coordinates, and the translation at the time with it, so
    /// that the state at that time stays where it is up to the shift of `position` that the setup
    /// state gets. For use in pairs: moving the anchor back takes that shift back.
    static void setTimelineAnchorPoint(QPointF anchorPoint, PCElement& element, int32_t timeInMS);

    /// The point that stays put, and the point where the resize began.
    PCScaleCalculator(QPointF resizeAnchorLocation, QPointF resizeLocation)
        : m_resizeAnchorLocation(resizeAnchorLocation), m_resizeLocation(resizeLocation) {}
    /// The factors after a further motion of the pointer.
    QPointF scaleForDelta(float deltaX, float deltaY);
    /// The factors that take the resize to `location`, computed in 32 bits; 1 along an axis on
    /// which it began at the point that stays put.
    QPointF scaleForLocation(QPointF location) const;

 private:
    float m_dx = 0;  // the sum of the motions so far
    float m_dy = 0;
    QPointF m_resizeAnchorLocation;
    QPointF m_resizeLocation;
};

}  // namespace tweenery
