#include "canvas/element_space.h"

#include <limits>

#include "model/element.h"

namespace tweenery {

QPointF convertPoint(QPointF point, const PCElement& from, const PCElement& to) {
    if (&from == &to) return point;
    const QTransform toCanvas = to.elementToCanvasTransform();
    if (toCanvas.determinant() == 0) {
        constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
        return {kNone, kNone};
    }
    return to.convertToElement(from.convertToCanvas(point));
}

}  // namespace tweenery
