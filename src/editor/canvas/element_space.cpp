#include "editor/canvas/element_space.h"

#include <limits>

#include "editor/layers/element_layer.h"

namespace tweenery {
namespace {

constexpr QPointF kNowhere(std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::quiet_NaN());

}  // namespace

QPointF convertPoint(QPointF point, const PCElement& from, const PCElement& to) {
    if (&from == &to) { return point; }
    const PCLayer* fromLayer = PCLayer::of(from);
    const PCLayer* toLayer = PCLayer::of(to);
    if (fromLayer && toLayer) {
        fromLayer->updateIfNeeded();
        return fromLayer->pointIn(toLayer, point).value_or(kNowhere);
    }
    if (to.elementToCanvasTransform().determinant() == 0) { return kNowhere; }
    return to.convertToElement(from.convertToCanvas(point));
}

}  // namespace tweenery
