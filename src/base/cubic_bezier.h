#pragma once

namespace tweenery {

/// The height of the cubic Bezier from (0, 0) to (1, 1) with inner control points (x1, y1), (x2,
/// y2) at the horizontal position `x` (0 to 1). x1 and x2 lie in 0 to 1. Solved to 1e-12 in x.
double cubicBezierHeight(double x1, double y1, double x2, double y2, double x);

}  // namespace tweenery
