#include "editor/canvas/rotation_calculator.h"

#include <cmath>
#include <numbers>

#include "editor/canvas/additive_mode.h"

namespace tweenery {
namespace {

void installAnchor(PCElement& element, QPointF anchorPoint, bool setupMode, int32_t timeInMS) {
    if (setupMode) {
        element.setAnchorPoint(anchorPoint);
    } else {
        element.setAnchorPoint(anchorPoint, timeInMS);
    }
}

void turnTo(double radians, PCElement& element, bool setupMode, int32_t timeInMS) {
    if (setupMode) {
        element.setZRotation(radians);
    } else {
        element.setZRotation(static_cast<float>(radians), timeInMS);
    }
}

}  // namespace

void PCRotationCalculator::updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                                          double delta, bool setupMode, int32_t timeInMS,
                                          QPointF additiveAnchorPoint) {
    AdditiveShare shares(forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        const double share = shares.next();
        const auto pivot = pivotOfEdit(*element, forAdditiveMode, additiveAnchorPoint);
        if (!pivot) { continue; }
        const QPointF anchorPoint = element->anchorPoint();
        installAnchor(*element, *pivot, setupMode, timeInMS);
        const double rotation = setupMode
                                    ? element->zRotation()
                                    : static_cast<double>(element->zRotationAtTimeInMS(timeInMS));
        turnTo(rotation - share * delta, *element, setupMode, timeInMS);
        installAnchor(*element, anchorPoint, setupMode, timeInMS);
    }
}

void PCRotationCalculator::setRotation(double radians, const PCElement::Elements& elements,
                                       bool setupMode, int32_t timeInMS) {
    for (const PCElement::Ptr& element : elements) {
        turnTo(radians, *element, setupMode, timeInMS);
    }
}

double PCRotationCalculator::radiansBetweenStartPoint(QPointF startPoint, QPointF endPoint,
                                                      QPointF center) {
    constexpr double kPi = std::numbers::pi;
    const QPointF start = startPoint - center;
    const QPointF end = endPoint - center;
    const double difference =
        std::fmod(std::atan2(end.y(), end.x()) - std::atan2(start.y(), start.x()), 2 * kPi);
    if (difference < -kPi) { return difference + 2 * kPi; }
    return difference > kPi ? difference - 2 * kPi : difference;
}

}  // namespace tweenery
