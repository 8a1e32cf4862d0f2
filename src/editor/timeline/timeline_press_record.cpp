#include "editor/timeline/timeline_press_record.h"

namespace tweenery {

TimelineBeforePress::TimelineBeforePress(const TimelineScene& scene)
    : m_keyframes(scene.keyframes.selectedKeyframes()),
      m_tweens(scene.keyframes.selectedTweens()),
      m_playhead(scene.time.playheadPositionInMS()),
      m_scrollOrigin(scene.viewport.scrollOrigin()) {}

void TimelineBeforePress::restore(const TimelineScene& scene) const {
    scene.keyframes.selectKeyframes(m_keyframes);
    scene.keyframes.selectTweens(m_tweens);
    scene.time.setPlayheadPositionInMS(m_playhead);
    scene.viewport.scrollTo(m_scrollOrigin);
}

}  // namespace tweenery
