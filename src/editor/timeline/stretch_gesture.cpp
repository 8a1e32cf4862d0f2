#include "editor/timeline/stretch_gesture.h"

#include <algorithm>
#include <cmath>

#include "editor/timeline/playhead_gesture.h"

namespace tweenery {
namespace {

struct Span {
    int32_t first = INT32_MAX;
    int32_t last = 0;
};

Span spanOf(const PCKeyframeManager& keyframes) {
    Span span;
    for (const TimelineKeyframe& keyframe : keyframes.selectedKeyframes()) {
        if (!keyframe->isInTimeline()) { continue; }
        span.first = std::min(span.first, keyframe->timeInMS());
        span.last = std::max(span.last, keyframe->timeInMS());
    }
    return span;
}

int32_t otherEnd(const Span& span, const PCPropertyKeyframe& keyframe) {
    return keyframe.timeInMS() == span.first ? span.last : span.first;
}

}  // namespace

bool StretchGesture::canStretchBy(const PCKeyframeManager& keyframes,
                                  const TimelineKeyframe& keyframe) {
    if (!keyframes.keyframeIsSelected(keyframe)) { return false; }
    const auto [first, last] = spanOf(keyframes);
    return first < last && (keyframe->timeInMS() == first || keyframe->timeInMS() == last);
}

StretchGesture::StretchGesture(const TimelineScene& scene, const TimelineKeyframe& pressed)
    : KeyframeDragGesture(scene, pressed),
      m_tracks(draggedTracks(scene.keyframes)),
      m_fixedTime(otherEnd(spanOf(scene.keyframes), *pressed)),
      m_leaderStart(pressed->timeInMS()) {
    m_limits = limits();
}

// As shares of the length at the start: no shorter than a tick, or than it was.
TimeLimits StretchGesture::limits() const {
    const double length = m_leaderStart - m_fixedTime;
    const double shortest = m_scene.time.subsegmentWidthInMS() / std::abs(length);
    double least = std::min(shortest, 1.0);
    double largest = (length > 0 ? INT32_MAX - m_fixedTime : m_fixedTime) / std::abs(length);
    for (const auto& [timeline, start] : m_tracks) {
        for (const auto& [keyframe, time] : start) {
            const double way = time - m_fixedTime;
            if (way == 0) { continue; }
            const TimeLimits own = limitsBetweenNeighbours(m_scene, *timeline, keyframe->index());
            const double a = (static_cast<double>(own.from) - m_fixedTime) / way;
            const double b = (static_cast<double>(own.to) - m_fixedTime) / way;
            // What stands nearer already stays.
            least = std::max(least, std::min({a, b, 1.0}));
            largest = std::min(largest, std::max({a, b, 1.0}));
        }
    }
    const double a = m_fixedTime + length * least;
    const double b = m_fixedTime + length * largest;
    return {static_cast<int64_t>(std::ceil(std::min(a, b))),
            static_cast<int64_t>(std::floor(std::max(a, b)))};
}

int32_t StretchGesture::stretched(int32_t start, int32_t leader) const {
    const double share = (leader - m_fixedTime) / (m_leaderStart - m_fixedTime);
    return static_cast<int32_t>(std::lround(m_fixedTime + (start - m_fixedTime) * share));
}

void StretchGesture::moveLeaderTo(int32_t timeInMS) {
    setTimes(m_tracks, [&](int32_t start) { return stretched(start, timeInMS); });
}

bool StretchGesture::release() {
    snapPlayhead(m_scene.time);
    moveLeaderTo(
        m_limits.applied(m_scene.time.zoomSpecificTickClosestToTimeInMS(m_leader->timeInMS())));
    return m_leader->timeInMS() != m_leaderStart;
}

}  // namespace tweenery
