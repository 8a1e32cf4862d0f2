#pragma once

#include <QSizeF>
#include <cstdint>
#include <span>

namespace tweenery {

/// The magnifications that the zoom commands go through, rising; the factor is screen points for
/// one scene point.
std::span<const double> zoomValues();
/// The step with the least difference, in 32-bit arithmetic; of two at the same distance the lower.
int32_t indexInZoomScaleClosestToFloat(float factor);
/// The step after, or before, the one closest to `factor`; the last and the first are ends.
float zoomStepAfter(float factor);
float zoomStepBefore(float factor);
/// The magnification at which the canvas fills a view but for a twentieth of it; 1 for a canvas
/// without size.
double zoomToFill(QSizeF canvasSize, QSizeF viewSize);

}  // namespace tweenery
