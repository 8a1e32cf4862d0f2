#include "editor/canvas/scale_calculator.h"

#include <cmath>

#include "editor/canvas/additive_mode.h"
#include "editor/canvas/timed_element.h"
#include "scene/affine.h"

namespace tweenery {
namespace {

// Not finite where a locked ratio is to be kept that is none.
QPointF scaledBy(QPointF scale, QPointF delta, bool keepsRatio) {
    const double ratio = scale.x() / scale.y();
    if (keepsRatio && !std::isfinite(ratio)) { return {ratio, ratio}; }
    if (std::abs(delta.x()) >= std::abs(delta.y())) {
        const double x = delta.x() + scale.x();
        return {x, keepsRatio ? x / ratio : scale.y()};
    }
    const double y = delta.y() + scale.y();
    return {keepsRatio ? ratio * y : scale.x(), y};
}

void holdAt(PCElement& element, QPointF anchorPoint, EditTime when) {
    if (when.isSetup()) {
        element.setAnchorPoint(anchorPoint);
    } else {
        PCScaleCalculator::setTimelineAnchorPoint(anchorPoint, element, when.timeInMS());
    }
}

float factorBetween(double anchor, double start, double end) {
    const auto extent = static_cast<float>(start - anchor);
    return extent == 0 ? 1 : static_cast<float>(end - anchor) / extent;
}

}  // namespace

void PCScaleCalculator::updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                                       QPointF delta, EditTime when, QPointF additiveAP) {
    AdditiveShare shares(elements, forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        const double share = shares.next();
        const auto pivot = pivotOfEdit(*element, forAdditiveMode, additiveAP);
        TimedElement timed(*element, when);
        const QPointF scaled = scaledBy(timed.scale(), share * delta, element->scalesLocked());
        if (!pivot || !std::isfinite(scaled.x()) || !std::isfinite(scaled.y())) { continue; }

        const QPointF anchorPoint = element->anchorPoint();
        holdAt(*element, *pivot, when);
        timed.setScale(scaled);
        holdAt(*element, anchorPoint, when);
    }
}

void PCScaleCalculator::setXScale(double factor, const PCElement::Elements& elements,
                                  EditTime when) {
    for (const PCElement::Ptr& element : elements) {
        TimedElement(*element, when).setXScale(factor);
    }
}

void PCScaleCalculator::setYScale(double factor, const PCElement::Elements& elements,
                                  EditTime when) {
    for (const PCElement::Ptr& element : elements) {
        TimedElement(*element, when).setYScale(factor);
    }
}

void PCScaleCalculator::setTimelineAnchorPoint(QPointF anchorPoint, PCElement& element,
                                               int32_t timeInMS) {
    const QPointF translation = element.translationAtTimeInMS(timeInMS);
    const QPointF scale = element.scaleAtTimeInMS(timeInMS);
    const QPointF newAnchor(anchorPoint.x() * element.size().width(),
                            anchorPoint.y() * element.size().height());
    const QTransform state =
        scaleThenTurn(scale, static_cast<double>(element.zRotationAtTimeInMS(timeInMS)));
    const QPointF shift = state.map(newAnchor) - state.map(element.anchorPointInPts());
    element.setAnchorPoint(anchorPoint);
    element.setTranslation(translation + shift, timeInMS);
}

QPointF PCScaleCalculator::scaleForDelta(float deltaX, float deltaY) {
    m_dx += deltaX;
    m_dy += deltaY;
    return scaleForLocation(m_resizeLocation +
                            QPointF(static_cast<double>(m_dx), static_cast<double>(m_dy)));
}

QPointF PCScaleCalculator::scaleForLocation(QPointF location) const {
    const float x = factorBetween(m_resizeAnchorLocation.x(), m_resizeLocation.x(), location.x());
    const float y = factorBetween(m_resizeAnchorLocation.y(), m_resizeLocation.y(), location.y());
    return {static_cast<double>(x), static_cast<double>(y)};
}

}  // namespace tweenery
