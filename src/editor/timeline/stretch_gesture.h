#pragma once

#include "editor/timeline/keyframe_drag_gesture.h"

namespace tweenery {

/// Stretches the selected keyframes between their first and their last, by one of the two; the
/// other stays, and those between keep their proportions. None comes nearer than a tick to a
/// neighbour that is not selected. The dragged one comes to rest on a tick.
class StretchGesture : public KeyframeDragGesture {
 public:
    /// `pressed` is at one of the ends.
    StretchGesture(const TimelineScene& scene, const TimelineKeyframe& pressed);

    bool release() override;
    QString actionName() const override { return QStringLiteral("Stretch Keyframes"); }

    /// The keyframe is selected, and the first or the last in time of those that are, at no less
    /// than two times.
    static bool canStretchBy(const PCKeyframeManager& keyframes, const TimelineKeyframe& keyframe);

 protected:
    void moveLeaderTo(int32_t timeInMS) override;

 private:
    DraggedTracks m_tracks;
    double m_fixedTime;  // of the other end, in ms
    int32_t m_leaderStart;

    TimeLimits limits() const;
    int32_t stretched(int32_t start, int32_t leader) const;
};

}  // namespace tweenery
