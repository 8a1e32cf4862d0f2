#include "editor/timeline/timeline_mark.h"

#include <algorithm>

namespace tweenery {
namespace {

constexpr double kRevealMargin = 20;  // points to either side of a keyframe

}  // namespace

int TimelineMark::row() const {
    return m_row < m_scene.outline.rowCount() - 1 ? m_row : -1;
}

TimelineKeyframe TimelineMark::keyframe() const {
    if (!m_keyframe || !m_keyframe->isInTimeline()) { return nullptr; }
    return m_scene.outline.rowOf(*m_keyframe->timeline()) == row() ? m_keyframe : nullptr;
}

// The blank row at the end has nothing to offer.
void TimelineMark::moveTo(int row) {
    m_row = std::clamp(row, 0, m_scene.outline.rowCount() - 2);
    m_keyframe = nullptr;
    reveal();
}

void TimelineMark::moveByRows(int step) {
    const int before = row();
    moveTo(before < 0 ? 0 : before + step);
}

void TimelineMark::moveByKeyframes(int step) {
    if (row() < 0) { return moveByRows(0); }
    const auto timeline = m_scene.outline.row(row()).timeline;
    if (!timeline) { return; }
    const auto before = keyframe();
    const int64_t index = (before ? static_cast<int64_t>(before->index()) : -1) + step;
    const auto last = static_cast<int64_t>(timeline->keyframesCount()) - 1;
    m_keyframe =
        index < 0
            ? nullptr
            : timeline->existingKeyframeAtKeyframeIndex(static_cast<size_t>(std::min(index, last)));
    reveal();
}

void TimelineMark::select() {
    if (row() < 0) { return; }
    if (const auto marked = keyframe()) {
        m_scene.keyframes.deselectAllKeyframes();
        m_scene.keyframes.setSelectionToSingleKeyframe(marked);
    } else {
        m_scene.outline.pressRow(row(), {});
    }
}

void TimelineMark::reveal() {
    TimelineViewport& viewport = m_scene.viewport;
    const QRectF tracks = viewport.tracksRect();
    QPointF by;
    const double top = viewport.rowTop(m_row);
    const double bottom = top + TimelineViewport::kRowHeight;
    if (bottom > tracks.bottom()) { by.setY(bottom - tracks.bottom()); }
    if (top - by.y() < tracks.top()) { by.setY(top - tracks.top()); }
    if (m_keyframe) {
        const double x = viewport.pointForTime(m_keyframe->timeInMS());
        if (x + kRevealMargin > tracks.right()) { by.setX(x + kRevealMargin - tracks.right()); }
        if (x - kRevealMargin < tracks.left()) { by.setX(x - kRevealMargin - tracks.left()); }
    }
    if (!by.isNull()) { viewport.scrollBy(by); }
}

}  // namespace tweenery
