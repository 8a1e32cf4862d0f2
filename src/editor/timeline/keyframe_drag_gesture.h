#pragma once

#include <vector>

#include "editor/timeline/timeline_gesture.h"
#include "editor/timeline/timeline_hits.h"

namespace tweenery {

/// The selected keyframes of one timeline, with the times that they had when a drag began.
struct DraggedTrack {
    PCKeyedPropertyTimeline::Ptr timeline;
    std::vector<PCKeyedPropertyTimeline::KeyframeTime> start;
};
using DraggedTracks = std::vector<DraggedTrack>;
/// Those of the selected keyframes that are in a timeline.
DraggedTracks draggedTracks(const PCKeyframeManager& keyframes);
/// Gives each keyframe the time that `timeOf(its time at the start)` says; each timeline is told
/// once. False when all have it already.
bool setTimes(const DraggedTracks& tracks, const std::function<int32_t(int32_t)>& timeOf);

/// From where to where a time may go; `from` counts where they cross.
struct TimeLimits {
    int64_t from = 0;
    int64_t to = INT32_MAX;
    int32_t applied(int64_t timeInMS) const {
        return static_cast<int32_t>(std::max(from, std::min(to, timeInMS)));
    }
};
/// Where the keyframe at `index` may go: not before 0, and no nearer than a tick to a neighbour,
/// unless that is selected too.
TimeLimits limitsBetweenNeighbours(const TimelineScene& scene,
                                   const PCKeyedPropertyTimeline& timeline, size_t index);

/// A drag by one keyframe, which goes where the pointer is, as does the playhead; beside the tracks
/// both go on, and the tracks scroll.
class KeyframeDragGesture : public TimelineGesture {
 public:
    void drag(const PointerEvent& event) override;
    bool wantsTicks() const override;
    void tick(std::chrono::duration<double> elapsed) override;
    QString feedback() const override;

 protected:
    KeyframeDragGesture(const TimelineScene& scene, TimelineKeyframe leader);

    TimelineScene m_scene;
    TimelineKeyframe m_leader;  // under the pointer
    TimeLimits m_limits;        // of its time

    /// Within the limits.
    virtual void moveLeaderTo(int32_t timeInMS) = 0;

 private:
    double m_x;

    double width() const { return m_scene.viewport.size().width(); }
};

}  // namespace tweenery
