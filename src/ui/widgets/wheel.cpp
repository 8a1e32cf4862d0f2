#include "ui/widgets/wheel.h"

#include <QWheelEvent>
#include <cmath>

namespace tweenery {
namespace {

constexpr double kAnglePerWheelStep = 120;     // eighths of a degree; QWheelEvent::angleDelta()
constexpr double kZoomPerWheelPoint = 0.0025;  // natural logarithm

}  // namespace

QPointF wheelDistance(const QWheelEvent& event) {
    if (!event.pixelDelta().isNull()) { return event.pixelDelta(); }
    return QPointF(event.angleDelta()) * kPointsPerWheelStep / kAnglePerWheelStep;
}

QPointF scrollDistance(const QWheelEvent& event) {
    const QPointF distance = wheelDistance(event);
    // Alt turns the axes by itself on some desktops.
    const bool isAcross = event.modifiers().testFlag(Qt::ShiftModifier);
    return isAcross && distance.x() == 0 ? distance.transposed() : distance;
}

double wheelZoom(const QWheelEvent& event) {
    return std::exp(wheelDistance(event).y() * kZoomPerWheelPoint);
}

}  // namespace tweenery
