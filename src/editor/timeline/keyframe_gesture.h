#pragma once

#include "editor/timeline/keyframe_drag_gesture.h"

namespace tweenery {

/// Moves the selected keyframes, or copies of them, which it leaves selected. Keyframes stop a tick
/// before neighbours that stay; copies may cross them. Every keyframe comes to rest on its closest
/// tick; a copy that is still on its first one vanishes. Master keyframes are walls: the value at
/// those next to the dragged keyframe is pinned in its timeline.
class KeyframeGesture : public KeyframeDragGesture {
 public:
    /// `pressed` is selected.
    KeyframeGesture(const TimelineScene& scene, const TimelineKeyframe& pressed, bool duplicates);

    bool release() override;
    QString actionName() const override;

    /// No tick lies between the keyframe and its neighbours on either side, so that it cannot move.
    static bool isSqueezed(const TimelineScene& scene, const PCPropertyKeyframe& keyframe);

 protected:
    void moveLeaderTo(int32_t timeInMS) override;

 private:
    PCKeyframeManager::KeyframeSet m_originals;  // of copies
    DraggedTracks m_tracks;
    int32_t m_leaderStart = 0;

    void duplicate();
    TimeLimits limits() const;
    void pinAtMasterKeyframes();
    bool removeCopiesThatStayed();
};

}  // namespace tweenery
