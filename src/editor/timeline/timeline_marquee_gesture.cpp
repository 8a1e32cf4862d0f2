#include "editor/timeline/timeline_marquee_gesture.h"

#include <algorithm>

#include "editor/timeline/playhead_gesture.h"

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
    scene.keyframes.deselectAllKeyframes();
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
    selectArea(areaTouchedBy(m_scene, *marquee()));
}

// Only what comes and goes is touched.
void TimelineMarqueeGesture::selectArea(const KeyframeArea& area) {
    const KeyframeArea before = std::exchange(m_selected, area);
    const int32_t from = std::min(before.from, area.from);
    const int32_t to = std::max(before.to, area.to);
    const bool hasSameTimes = before.from == area.from && before.to == area.to;
    const int end = std::max(before.endRow, area.endRow);
    for (int row = std::min(before.firstRow, area.firstRow); row < end; ++row) {
        if (hasSameTimes && before.hasRow(row) == area.hasRow(row)) { continue; }
        const auto timeline = m_scene.outline.row(row).timeline;
        if (!timeline) { continue; }
        const PackedKeyframes keyframes = timeline->packedKeyframes();
        for (size_t i = timeline->firstKeyframeIndexAtOrAfterTimeInMS(from);
             i < keyframes.count && keyframes.times[i] <= to; ++i) {
            const bool was = before.hasRow(row) && before.hasTime(keyframes.times[i]);
            const bool is = area.hasRow(row) && area.hasTime(keyframes.times[i]);
            if (was == is) { continue; }
            const TimelineKeyframe keyframe = timeline->existingKeyframeAtKeyframeIndex(i);
            is ? m_scene.keyframes.selectKeyframe(keyframe)
               : m_scene.keyframes.deselectKeyframe(keyframe);
        }
    }
}

std::optional<QRectF> TimelineMarqueeGesture::marquee() const {
    return QRectF(m_start - m_scene.viewport.scrollOrigin(), m_end).normalized();
}

bool TimelineMarqueeGesture::release() {
    snapPlayhead(m_scene.time);
    return true;
}

}  // namespace tweenery
