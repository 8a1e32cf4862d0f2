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

TimelineKeyframe masterKeyframeAt(const TimelineScene& scene, double x) {
    const auto animation = scene.project.animationsManager().selectedAnimation();
    return animation ? closestAt(scene, *animation->masterKeyframesTimeline(), x) : nullptr;
}

PCKeyframeManager::KeyframeSet keyframesIn(const TimelineScene& scene, const QRectF& rect) {
    PCKeyframeManager::KeyframeSet found;
    const int first = scene.viewport.rowAt(rect.top());
    const int bottom = scene.viewport.rowAt(rect.bottom());
    if (first < 0) { return found; }
    const int last = bottom < 0 ? scene.outline.rowCount() - 1 : bottom;
    const int32_t from = scene.viewport.timeAt(rect.left() - kReach);
    const int32_t to = scene.viewport.timeAt(rect.right() + kReach);
    for (int row = first; row <= last; ++row) {
        const auto timeline = scene.outline.row(row).timeline;
        if (!timeline) { continue; }
        for (TimelineKeyframe& keyframe : timeline->keyframesBetweenStartTime(from, to)) {
            found.insert(std::move(keyframe));
        }
    }
    return found;
}

}  // namespace tweenery
