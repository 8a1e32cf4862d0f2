#pragma once

#include "editor/timeline/timeline_gesture.h"

namespace tweenery {

/// What may change during a press on the timeline and undo does not bring back: which keyframes and
/// tweens are selected, the playhead, and what shows.
class TimelineBeforePress {
 public:
    explicit TimelineBeforePress(const TimelineScene& scene);
    void restore(const TimelineScene& scene) const;

 private:
    PCKeyframeManager::KeyframeSet m_keyframes;
    PCKeyframeManager::KeyframeSet m_tweens;
    int32_t m_playhead;
    QPointF m_scrollOrigin;
};

}  // namespace tweenery
