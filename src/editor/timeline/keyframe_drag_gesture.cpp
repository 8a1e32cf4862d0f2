#include "editor/timeline/keyframe_drag_gesture.h"

#include <algorithm>
#include <unordered_map>

#include "editor/timeline/auto_scroll.h"

namespace tweenery {

DraggedTracks draggedTracks(const PCKeyframeManager& keyframes) {
    DraggedTracks tracks;
    std::unordered_map<const PCKeyedPropertyTimeline*, size_t> places;
    for (const TimelineKeyframe& keyframe : keyframes.selectedKeyframes()) {
        if (!keyframe->isInTimeline()) { continue; }
        auto timeline = keyframe->timeline();
        const auto [place, isNew] = places.emplace(timeline.get(), tracks.size());
        if (isNew) { tracks.push_back({std::move(timeline), {}}); }
        tracks[place->second].start.push_back({keyframe, keyframe->timeInMS()});
    }
    return tracks;
}

bool setTimes(const DraggedTracks& tracks, const std::function<int32_t(int32_t)>& timeOf) {
    bool hasMoved = false;
    for (const auto& [timeline, start] : tracks) {
        std::vector<PCKeyedPropertyTimeline::KeyframeTime> times = start;
        bool differs = false;
        for (auto& [keyframe, timeInMS] : times) {
            timeInMS = timeOf(timeInMS);
            differs = differs || timeInMS != keyframe->timeInMS();
        }
        if (differs) { timeline->setTimes(times); }
        hasMoved = hasMoved || differs;
    }
    return hasMoved;
}

TimeLimits limitsBetweenNeighbours(const TimelineScene& scene,
                                   const PCKeyedPropertyTimeline& timeline, size_t index) {
    const int32_t time = timeline.timeOfKeyframe(index);
    TimeLimits limits;
    const size_t previous = time == 0 ? PCKeyedPropertyTimeline::kNotFound
                                      : timeline.firstKeyframeIndexAtOrBeforeTimeInMS(time - 1);
    if (previous != PCKeyedPropertyTimeline::kNotFound) {
        const bool moves = scene.keyframes.keyframeIsSelected(timeline, previous);
        limits.from =
            moves ? INT32_MIN
                  : scene.time.zoomSpecificTickAfterTimeInMS(timeline.timeOfKeyframe(previous));
    }
    const size_t next = time == INT32_MAX ? PCKeyedPropertyTimeline::kNotFound
                                          : timeline.firstKeyframeIndexAtOrAfterTimeInMS(time + 1);
    const bool isBounded = next != PCKeyedPropertyTimeline::kNotFound &&
                           !scene.keyframes.keyframeIsSelected(timeline, next);
    if (isBounded) {
        limits.to = scene.time.zoomSpecificTickBeforeTimeInMS(timeline.timeOfKeyframe(next));
    }
    return limits;
}

KeyframeDragGesture::KeyframeDragGesture(const TimelineScene& scene, TimelineKeyframe leader)
    : m_scene(scene),
      m_leader(std::move(leader)),
      m_x(scene.viewport.pointForTime(m_leader->timeInMS())) {}

void KeyframeDragGesture::drag(const PointerEvent& event) {
    m_x = event.viewPoint.x();
    m_scene.time.setPlayheadPositionInMS(m_scene.viewport.timeAt(m_x));
    if (wantsTicks()) { return; }
    const int64_t time = int64_t{m_scene.time.msFromPointValue(m_x)} +
                         m_scene.time.msFromPointValue(m_scene.viewport.scrollOrigin().x());
    moveLeaderTo(m_limits.applied(time));
}

bool KeyframeDragGesture::wantsTicks() const {
    return overshoot(m_x, width()) != 0;
}

// Where the keyframe cannot follow, the tracks stay.
void KeyframeDragGesture::tick(std::chrono::duration<double> elapsed) {
    const double beyond = overshoot(m_x, width());
    const double edge = beyond < 0 ? 0 : width();
    if (beyond > 0 && m_scene.viewport.timeAt(edge) > m_limits.to) { return; }
    m_scene.viewport.scrollBy({autoScrollStep(beyond, elapsed), 0});
    moveLeaderTo(m_limits.applied(m_scene.viewport.timeAt(edge)));
}

QString KeyframeDragGesture::feedback() const {
    return PCProjectTimeManager::displayStringForTimeInMS(m_leader->timeInMS());
}

}  // namespace tweenery
