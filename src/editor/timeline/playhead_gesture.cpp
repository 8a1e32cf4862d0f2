#include "editor/timeline/playhead_gesture.h"

#include "editor/timeline/auto_scroll.h"

namespace tweenery {

void snapPlayhead(PCProjectTimeManager& time) {
    time.setPlayheadPositionInMS(
        time.zoomSpecificTickClosestToTimeInMS(time.playheadPositionInMS()));
}

void PlayheadGesture::drag(const PointerEvent& event) {
    m_x = event.viewPoint.x();
    if (wantsTicks()) { return; }
    const double place = m_x + m_scene.viewport.scrollOrigin().x();
    m_scene.time.setPlayheadPositionInMS(
        m_scene.time.msFromPointValue(std::clamp(place, 0.0, m_scene.viewport.columnWidth()) - 1));
}

bool PlayheadGesture::wantsTicks() const {
    return overshoot(m_x, width()) != 0;
}

// The playhead stays at the edge, and the tracks run on behind it.
void PlayheadGesture::tick(std::chrono::duration<double> elapsed) {
    const double beyond = overshoot(m_x, width());
    m_scene.viewport.scrollBy({autoScrollStep(beyond, elapsed), 0});
    const double left = m_scene.viewport.scrollOrigin().x();
    m_scene.time.setPlayheadPositionInMS(
        m_scene.time.msFromPointValue(beyond < 0 ? left : left + width() - 1));
}

bool PlayheadGesture::release() {
    snapPlayhead(m_scene.time);
    m_scene.project.preferences().setTimelinePlayheadPosition(m_scene.time.playheadPositionInMS());
    return true;
}

}  // namespace tweenery
