#include "editor/canvas/opacity_calculator.h"

#include "editor/canvas/additive_mode.h"

namespace tweenery {
namespace {

void write(double opacity, PCElement& element, bool setupMode, int32_t timeInMS) {
    if (setupMode) {
        element.setOpacity(opacity);
    } else {
        element.setOpacity(static_cast<float>(opacity), timeInMS);
    }
}

}  // namespace

void PCOpacityCalculator::updateElementsWithValue(const PCElement::Elements& elements,
                                                  bool forAdditiveMode, double value,
                                                  bool setupMode, int32_t timeInMS, QPointF) {
    AdditiveShare shares(forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        write(value / shares.next(), *element, setupMode, timeInMS);
    }
}

void PCOpacityCalculator::updateElementsWithDelta(const PCElement::Elements& elements,
                                                  bool forAdditiveMode, double delta,
                                                  bool setupMode, int32_t timeInMS, QPointF) {
    AdditiveShare shares(forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        const double opacity = setupMode
                                   ? element->opacity()
                                   : static_cast<double>(element->opacityAtTimeInMS(timeInMS));
        write(opacity + shares.next() * delta, *element, setupMode, timeInMS);
    }
}

}  // namespace tweenery
