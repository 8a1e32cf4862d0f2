#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "model/project.h"

namespace tweenery {

/// Frames at a steady rate, in milliseconds.
struct FrameRange {
    int32_t from = 0;
    std::optional<int32_t> to;  // included; without it the animation's own end
    double framesPerSecond = 60;
};

/// The times of the range in the project's selected animation. Without `to` they run to the last
/// keyframe; of an animation that repeats they are one full period, without the time at which the
/// next one begins. Throws InputError when they are more than kMostFrames.
std::vector<int32_t> frameTimes(const FrameRange& range, const PCProject& project);

/// The common period of the loops of the selected animation in milliseconds, 0 when it has none.
int64_t loopPeriodInMS(const PCProject& project);
/// How long the frames of the range show together if they are one period of a loop; 0 otherwise.
int64_t lengthOfLoopInMS(const FrameRange& range, const PCProject& project);

inline constexpr size_t kMostFrames = 100'000;

}  // namespace tweenery
