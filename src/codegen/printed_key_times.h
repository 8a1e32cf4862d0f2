#pragma once

#include <optional>

#include "model/keyed_property_timeline.h"

namespace tweenery {

/// What it costs that generated code has key times with three decimals.
struct KeyTimeLoss {
    /// How far a value strays from the timeline's, as a share of the change from one keyframe to
    /// the next: 1 for a jump that comes a whole millisecond early or late, more where a small
    /// change lies beside a large one.
    double shareOfRange = 0;
    /// How far the keyframes there are moved, in milliseconds.
    double shiftInMS = 0;
};

/// The largest loss of the timeline, by share; nothing when none is above `leastShare`.
std::optional<KeyTimeLoss> largestKeyTimeLoss(const PCKeyedPropertyTimeline& timeline,
                                              double leastShare);

}  // namespace tweenery
