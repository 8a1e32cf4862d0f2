#include "editor/canvas/snapping.h"

namespace tweenery {
namespace {

constexpr double kTolerance = 10;  // screen points

double snapped(double delta, double boxStart, double boxLength, double canvasLength,
               double tolerance) {
    for (const double canvasLine : {0.0, canvasLength / 2, canvasLength}) {
        for (const double boxOffset : {0.0, boxLength / 2, boxLength}) {
            const double line = boxStart + boxOffset;
            const double wanted = line - delta;
            if (wanted > canvasLine - tolerance && wanted < canvasLine + tolerance) {
                return line - canvasLine;
            }
        }
    }
    return delta;
}

}  // namespace

QPointF deltaSnappedToGuides(QPointF delta, const QRectF& box, QSizeF canvasSize,
                             double magnificationFactor) {
    const double tolerance = kTolerance / magnificationFactor;
    return {snapped(delta.x(), box.x(), box.width(), canvasSize.width(), tolerance),
            snapped(delta.y(), box.y(), box.height(), canvasSize.height(), tolerance)};
}

}  // namespace tweenery
