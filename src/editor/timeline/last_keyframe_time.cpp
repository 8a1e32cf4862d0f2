#include "editor/timeline/last_keyframe_time.h"

#include <algorithm>

#include "model/project.h"

namespace tweenery {
namespace {

int32_t lastKeyframeTimeBelow(const PCElement& root) {
    int32_t last = 0;
    if (!root.hasFreshTimelines()) {
        for (const PCPropertyType type : elementTimelineTypes()) {
            const auto timeline = root.timeline(type);
            if (timeline) { last = std::max(last, timeline->durationInMS()); }
        }
    }
    for (const PCElement::Ptr& child : root.children()) {
        last = std::max(last, lastKeyframeTimeBelow(*child));
    }
    return last;
}

}  // namespace

int32_t lastKeyframeTimeInMS(PCProject& project) {
    return project.isSetupMode() ? -1 : lastKeyframeTimeBelow(*project.canvas());
}

}  // namespace tweenery
