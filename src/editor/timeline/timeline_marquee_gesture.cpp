#include "editor/timeline/timeline_marquee_gesture.h"

#include <algorithm>

#include "editor/timeline/playhead_gesture.h"
#include "editor/timeline/timeline_hits.h"

namespace tweenery {
namespace {

constexpr double kPointsASecond = 1000;

double sideOf(double at, double first, double last) {
    return at <= first ? -1 : at >= last ? 1 : 0;
}

}  // namespace

TimelineMarqueeGesture::TimelineMarqueeGesture(const TimelineScene& scene,
                                               const PointerEvent& press)
    : m_scene(scene),
      m_start(press.viewPoint + scene.viewport.scrollOrigin()),
      m_end(press.viewPoint) {
    scene.keyframes.deselectAllTweens();
}

void TimelineMarqueeGesture::drag(const PointerEvent& event) {
    const QRectF tracks = m_scene.viewport.tracksRect();
    m_end = {std::clamp(event.viewPoint.x(), tracks.left(), tracks.right()),
             std::clamp(event.viewPoint.y(), tracks.top(), tracks.bottom())};
    select();
}

QPointF TimelineMarqueeGesture::direction() const {
    const QRectF tracks = m_scene.viewport.tracksRect();
    return {sideOf(m_end.x(), tracks.left(), tracks.right()),
            sideOf(m_end.y(), tracks.top(), tracks.bottom())};
}

void TimelineMarqueeGesture::tick(std::chrono::duration<double> elapsed) {
    m_scene.viewport.scrollBy(direction() * kPointsASecond * std::min(elapsed.count(), 0.1));
    select();
}

void TimelineMarqueeGesture::select() {
    m_scene.time.setPlayheadPositionInMS(m_scene.viewport.timeAt(m_end.x()));
    m_scene.keyframes.selectKeyframes(keyframesIn(m_scene, *marquee()));
}

std::optional<QRectF> TimelineMarqueeGesture::marquee() const {
    return QRectF(m_start - m_scene.viewport.scrollOrigin(), m_end).normalized();
}

bool TimelineMarqueeGesture::release() {
    snapPlayhead(m_scene.time);
    return true;
}

}  // namespace tweenery
