#include "editor/canvas/position_calculator.h"

#include <cmath>

#include "editor/canvas/additive_mode.h"
#include "editor/canvas/element_space.h"
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
                                          QPointF delta, bool setupMode, int32_t timeInMS) {
    AdditiveShare shares(forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        const double share = shares.next();
        const PCElement* parent = element->parentElement();
        const PCProject* project = element->project();
        if (!parent || !project) { continue; }
        const QPointF moved = distanceInParent(share * delta, *project->canvas(), *parent);
        if (!std::isfinite(moved.x()) || !std::isfinite(moved.y())) { continue; }
        if (setupMode) {
            element->setPosition(element->position() + moved);
        } else {
            element->setTranslation(element->translationAtTimeInMS(timeInMS) + moved, timeInMS);
        }
    }
}

void PCPositionCalculator::setXPosition(float x, const PCElement::Elements& elements,
                                        bool setupMode, int32_t timeInMS) {
    for (const PCElement::Ptr& element : elements) {
        if (setupMode) {
            element->setPosition({static_cast<double>(x), element->position().y()});
        } else {
            element->setXTranslation(x, timeInMS);
        }
    }
}

void PCPositionCalculator::setYPosition(float y, const PCElement::Elements& elements,
                                        bool setupMode, int32_t timeInMS) {
    for (const PCElement::Ptr& element : elements) {
        if (setupMode) {
            element->setPosition({element->position().x(), static_cast<double>(y)});
        } else {
            element->setYTranslation(y, timeInMS);
        }
    }
}

}  // namespace tweenery
