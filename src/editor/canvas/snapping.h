#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace tweenery {

/// Lets the near edge, the middle or the far edge of a dragged box catch on those of the canvas
/// within 10 screen points, on each axis by itself. All in canvas coordinates; `delta` is the box's
/// old place minus the new one that the pointer wants, and so is the result.
QPointF deltaSnappedToGuides(QPointF delta, const QRectF& box, QSizeF canvasSize,
                             double magnificationFactor);

}  // namespace tweenery
