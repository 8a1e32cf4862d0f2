#pragma once

#include <array>
#include <cstdint>

#include "model/properties/easing.h"

namespace tweenery {

/// One sampled easing curve: entry i is the curve's height at the horizontal position i/1000.
using TimingTable = std::array<double, 1000>;

/// The table of an easing mode from 1 to 6; null for linear and for anything else. The curve is the
/// cubic Bezier from (0, 0) to (1, 1) with the mode's control points, rounded to four decimals,
/// every value closer than 0.001 to 0 or 1 taken as exactly that. Made once, at the first call.
const TimingTable* timingTableForEasingMode(PCEasingMode mode);

/// The same table rounded to 32 bits, which is how the model evaluates.
using SinglePrecisionTable = std::array<float, 1000>;
const SinglePrecisionTable* singlePrecisionTimingTable(PCEasingMode mode);

}  // namespace tweenery
