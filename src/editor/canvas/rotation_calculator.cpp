#include "editor/canvas/rotation_calculator.h"

#include <cmath>
#include <numbers>

#include "editor/canvas/additive_mode.h"
#include "editor/canvas/timed_element.h"

namespace tweenery {

void PCRotationCalculator::updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                                          double delta, EditTime when,
                                          QPointF additiveAnchorPoint) {
    AdditiveShare shares(elements, forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        const double share = shares.next();
        const auto pivot = pivotOfEdit(*element, forAdditiveMode, additiveAnchorPoint);
        if (!pivot) { continue; }
        const QPointF anchorPoint = element->anchorPoint();
        TimedElement timed(*element, when);
        timed.setAnchorPoint(*pivot);
        timed.setZRotation(timed.zRotation() - share * delta);
        timed.setAnchorPoint(anchorPoint);
    }
}

void PCRotationCalculator::setRotation(double radians, const PCElement::Elements& elements,
                                       EditTime when) {
    for (const PCElement::Ptr& element : elements) {
        TimedElement(*element, when).setZRotation(radians);
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
