#pragma once

#include <algorithm>
#include <chrono>

namespace tweenery {

/// How far a place lies outside of 0..length: negative before it, positive behind.
inline double overshoot(double at, double length) {
    return std::min(at, 0.0) + std::max(at - length, 0.0);
}

/// By how many points to scroll: a hundred times the distance in a second. After a time without
/// ticks no further than in a tenth of one.
inline double autoScrollStep(double overshoot, std::chrono::duration<double> elapsed) {
    return overshoot * 100 * std::min(elapsed.count(), 0.1);
}

}  // namespace tweenery
