#pragma once

#include <QPointF>

class QWheelEvent;

namespace tweenery {

/// What a turn of the wheel asks of a pane that scrolls and zooms, in points: touchpads give
/// pixels, wheels steps.
QPointF wheelDistance(const QWheelEvent& event);
/// The same for scrolling: with Shift, what goes up and down goes across.
QPointF scrollDistance(const QWheelEvent& event);
/// With Control the wheel zooms: by this factor.
double wheelZoom(const QWheelEvent& event);

/// Of a step of the wheel, in points.
inline constexpr double kPointsPerWheelStep = 60;

}  // namespace tweenery
