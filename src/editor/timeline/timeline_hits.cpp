#include "editor/timeline/timeline_hits.h"

#include <algorithm>
#include <cmath>

namespace tweenery {
namespace {

constexpr double kReach = 10;  // points to either side of a keyframe's time

PCKeyedPropertyTimeline::Ptr timelineAt(const TimelineScene& scene, double y) {
    const int row = scene.viewport.rowAt(y);
    return row < 0 ? nullptr : scene.outline.row(row).timeline;
}

bool reachesTo(const TimelineScene& scene, int32_t timeInMS, double x) {
    const double place = std::trunc(scene.time.pointValueFromMS(timeInMS));
    return std::abs(x + scene.viewport.scrollOrigin().x() - place) <= kReach;
}

TimelineKeyframe closestAt(const TimelineScene& scene, const PCKeyedPropertyTimeline& timeline,
                           double x) {
    const size_t closest = timeline.indexOfKeyframeClosestToTimeInMS(scene.viewport.timeAt(x));
    if (closest == PCKeyedPropertyTimeline::kNotFound) { return nullptr; }
    const int32_t time = timeline.timeOfKeyframe(closest);
    if (!reachesTo(scene, time, x)) { return nullptr; }
    return timeline.existingKeyframeAtTimeInMS(time);
}

}  // namespace

TimelineKeyframe keyframeAt(const TimelineScene& scene, QPointF point) {
    const auto timeline = timelineAt(scene, point.y());
    return timeline ? closestAt(scene, *timeline, point.x()) : nullptr;
}

TimelineKeyframe tweenAt(const TimelineScene& scene, QPointF point) {
    const auto timeline = timelineAt(scene, point.y());
    if (!timeline) { return nullptr; }
    const size_t end =
        timeline->firstKeyframeIndexAtOrAfterTimeInMS(scene.viewport.timeAt(point.x()));
    if (end == PCKeyedPropertyTimeline::kNotFound || timeline->keyframeIsInstant(end)) {
        return nullptr;
    }
    return timeline->existingKeyframeAtKeyframeIndex(end);
}

bool changesValue(const PCKeyedPropertyTimeline& timeline, size_t endIndex) {
    if (endIndex == 0) {
        return !valuesEqual(timeline.valueOfKeyframeAtIndex(0), timeline.setupValue());
    }
    return !valuesEqual(timeline.storedValueOfKeyframe(endIndex),
                        timeline.storedValueOfKeyframe(endIndex - 1));
}

TimelineKeyframe masterKeyframeAt(const TimelineScene& scene, double x) {
    const auto animation = scene.project.animationsManager().selectedAnimation();
    return animation ? closestAt(scene, *animation->masterKeyframesTimeline(), x) : nullptr;
}

KeyframeArea areaTouchedBy(const TimelineScene& scene, const QRectF& rect) {
    const int top = scene.viewport.rowAt(rect.top());
    const int bottom = scene.viewport.rowAt(rect.bottom());
    if (top < 0) { return {}; }
    return {top, bottom < 0 ? scene.outline.rowCount() : bottom + 1,
            scene.viewport.timeAt(rect.left() - kReach),
            scene.viewport.timeAt(rect.right() + kReach)};
}

}  // namespace tweenery
