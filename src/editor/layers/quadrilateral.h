#pragma once

#include <QPointF>
#include <QRectF>
#include <array>

namespace tweenery {

/// Four corners in order around a convex outline.
using Quadrilateral = std::array<QPointF, 4>;

Quadrilateral cornersOf(const QRectF& rect);
/// True when two convex outlines overlap or touch: no edge of either separates them.
bool touch(const Quadrilateral& a, const Quadrilateral& b);
/// The near edges belong to the rectangle, the far ones do not.
bool rectHolds(const QRectF& rect, QPointF point);

}  // namespace tweenery
