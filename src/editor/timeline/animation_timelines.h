#pragma once

#include <unordered_set>
#include <vector>

#include "model/element.h"
#include "model/keyed_property_timeline.h"

namespace tweenery {

using Timelines = std::vector<PCKeyedPropertyTimeline::Ptr>;

/// All timelines of the tree that have keyframes in the selected animation, in the order of rows:
/// the canvas, then the foremost element first. The master keyframes are not among them. None in
/// setup mode.
Timelines timelinesWithKeyframes(PCProject& project);
/// Null in setup mode.
PCKeyedPropertyTimeline::Ptr masterKeyframesTimeline(PCProject& project);
bool isMasterTimeline(const PCKeyedPropertyTimeline& timeline);
/// "kite, X Translation".
QString nameOfRow(const PCKeyedPropertyTimeline& timeline);

/// Keyframes of one timeline, in the order of its list.
struct RowKeyframes {
    PCKeyedPropertyTimeline::Ptr timeline;
    PCKeyedPropertyTimeline::Keyframes keyframes;

    int32_t firstTimeInMS() const { return keyframes.front()->timeInMS(); }
    int32_t lastTimeInMS() const { return keyframes.back()->timeInMS(); }
};

/// Keyframes by their timelines, which are in no order; those that are in none are left out.
std::vector<RowKeyframes> keyframesByRow(
    const std::unordered_set<PCKeyedPropertyTimeline::KeyframePtr>& keyframes);

}  // namespace tweenery
