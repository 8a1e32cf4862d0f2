#include "editor/canvas/position_calculator.h"

#include <cmath>

#include "editor/canvas/additive_mode.h"
#include "editor/canvas/element_space.h"
#include "editor/canvas/timed_element.h"
#include "model/project.h"

namespace tweenery {
namespace {

// A distance turned and scaled as the groups around the parent's children ask for. Taken between
// two converted points, so that the offset of the parent cancels before it is added to anything: an
// axis along which nothing moves keeps its value to the bit.
QPointF distanceInParent(QPointF distance, const PCElement& canvas, const PCElement& parent) {
    return convertPoint(distance, canvas, parent) - convertPoint(QPointF(), canvas, parent);
}

}  // namespace

void PCPositionCalculator::updateElements(const PCElement::Elements& elements, bool forAdditiveMode,
                                          QPointF delta, EditTime when) {
    AdditiveShare shares(elements, forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        const double share = shares.next();
        const PCElement* parent = element->parentElement();
        const EditContext* project = element->project();
        if (!parent || !project) { continue; }
        const QPointF moved = distanceInParent(share * delta, *project->canvas(), *parent);
        if (!std::isfinite(moved.x()) || !std::isfinite(moved.y())) { continue; }
        TimedElement(*element, when).moveBy(moved);
    }
}

void PCPositionCalculator::setXPosition(float x, const PCElement::Elements& elements,
                                        EditTime when) {
    for (const PCElement::Ptr& element : elements) {
        TimedElement(*element, when).setX(x);
    }
}

void PCPositionCalculator::setYPosition(float y, const PCElement::Elements& elements,
                                        EditTime when) {
    for (const PCElement::Ptr& element : elements) {
        TimedElement(*element, when).setY(y);
    }
}

}  // namespace tweenery
