#include "editor/canvas/opacity_calculator.h"

#include "editor/canvas/additive_mode.h"
#include "editor/canvas/timed_element.h"

namespace tweenery {

void PCOpacityCalculator::updateElementsWithValue(const PCElement::Elements& elements,
                                                  bool forAdditiveMode, double value, EditTime when,
                                                  QPointF) {
    AdditiveShare shares(elements, forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        TimedElement(*element, when).setOpacity(value / shares.next());
    }
}

void PCOpacityCalculator::updateElementsWithDelta(const PCElement::Elements& elements,
                                                  bool forAdditiveMode, double delta, EditTime when,
                                                  QPointF) {
    AdditiveShare shares(elements, forAdditiveMode);
    for (const PCElement::Ptr& element : elements) {
        TimedElement timed(*element, when);
        timed.setOpacity(timed.opacity() + shares.next() * delta);
    }
}

}  // namespace tweenery
