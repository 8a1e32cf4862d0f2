#pragma once

#include <array>
#include <cstdint>

namespace tweenery {

/// One sampled easing curve: entry i is the curve's height at the horizontal position i/1000.
using TimingTable = std::array<double, 1000>;

/// The table of an easing mode from 1 to 6; null for linear and for anything else. The curve is the
/// cubic Bezier from (0, 0) to (1, 1) with the mode's control points, rounded to four decimals,
/// every value closer than 0.001 to 0 or 1 taken as exactly that. Made once, at the first call.
const TimingTable* timingTableForEasingMode(int64_t mode);

/// The same table rounded to 32 bits, which is how the model evaluates.
using SinglePrecisionTable = std::array<float, 1000>;
const SinglePrecisionTable* singlePrecisionTimingTable(int64_t mode);

/// The height of the cubic Bezier from (0, 0) to (1, 1) with inner control points (x1, y1), (x2,
/// y2) at the horizontal position `x` (0 to 1). x1 and x2 lie in 0 to 1. Solved to 1e-12 in x.
double cubicBezierHeight(double x1, double y1, double x2, double y2, double x);

}  // namespace tweenery
