#pragma once

#include <cstdint>

namespace tweenery {

class PCProject;

/// The time in milliseconds of the last keyframe of the selected animation, over all timelines of
/// all elements in the tree; the master keyframes do not count. 0 without a keyframe, -1 in setup
/// mode. Time is in the number of timelines.
int32_t lastKeyframeTimeInMS(PCProject& project);

}  // namespace tweenery
