// How ruler and tracks look, part by part of what has to be painted.

#include <QPaintEvent>
#include <QPainter>

#include "model/animations_manager.h"
#include "ui/timeline/keyframe_painting.h"
#include "ui/timeline/ruler_painting.h"
#include "ui/timeline/track_painting.h"
#include "ui/timeline/tracks_view.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kMasterReach = 11;
constexpr int kEmptyTitleLine = 22;
constexpr int kEmptyAdviceLine = 20;

}  // namespace

QColor TracksView::rulerFill() const {
    const WorkbenchColors& colors = Appearance::current().workbench();
    return m_controller.timeManager().isPlayingBack() ? colors.timelinePlaying : m_fill;
}

void TracksView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    for (const QRect& part : event->region()) {
        painter.setClipRect(part);
        paintPart(painter, part);
    }
    m_shown = overlay();
}

void TracksView::paintPart(QPainter& painter, const QRect& part) {
    const QRectF tracks = viewport().tracksRect();
    if (part.top() < sizes::timelineHeader) {
        const PCProjectTimeManager& time = m_controller.timeManager();
        paintRuler(painter, time, part.right() + 1, viewport().scrollOrigin().x(),
                   time.msFromPointValue(viewport().columnWidth()), rulerFill());
        if (const auto range = m_controller.playback().loopRange()) {
            const double from = std::max(viewport().pointForTime(range->startInMS), -1.0);
            const double to = std::min(viewport().pointForTime(range->endInMS), width() + 1.0);
            if (from < to) { paintLoopRange(painter, from, to, range->isOn); }
        }
    }
    painter.fillRect(QRectF(0, tracks.bottom(), width(), height() - tracks.bottom()), m_fill);
    painter.setClipRect(QRectF(part).intersected(tracks));
    paintRows(painter, part);
    painter.setClipRect(QRectF(part).intersected(
        QRectF(0, 0, width(), std::max<double>(tracks.bottom(), sizes::timelineHeader))));
    paintOverlay(painter, part);
}

void TracksView::paintRows(QPainter& painter, const QRect& part) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const TimelineOutline& outline = m_controller.timelineOutline();
    const auto rows = viewport().visibleRows();
    const TrackSpan span{static_cast<double>(part.left()), part.right() + 1.0};
    for (int number = rows.first; number < rows.end; ++number) {
        const QRectF rect(part.left(), viewport().rowTop(number), part.width(), sizes::timelineRow);
        if (rect.bottom() <= part.top() || rect.top() > part.bottom()) { continue; }
        painter.fillRect(alignedToDevice(painter, rect), colors.track);
        paintLowerLine(painter, rect, colors.trackLine);
        const TimelineRow row = outline.row(number);
        if (!row.isTimeline()) { continue; }
        painter.save();
        painter.setClipRect(rect, Qt::IntersectClip);
        painter.translate(0, rect.top());
        paintTrack(painter, *row.timeline, m_controller.keyframeManager(),
                   m_controller.timeManager(), viewport().scrollOrigin().x(), span);
        painter.restore();
    }
    const double end = viewport().rowTop(outline.rowCount());
    if (end > part.bottom()) { return; }
    const double top = std::max<double>(end, sizes::timelineHeader);
    painter.fillRect(
        alignedToDevice(painter, QRectF(part.left(), top, part.width(), height() - top)), m_fill);
    if (outline.lastKeyframeTimeInMS() == 0 && outline.rowCount() <= 2) {
        paintEmptyPlace(painter, top);
    }
}

void TracksView::paintEmptyPlace(QPainter& painter, double top) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const double bottom = viewport().tracksRect().bottom();
    QRectF line(0, (top + bottom - kEmptyTitleLine - kEmptyAdviceLine) / 2, width(),
                kEmptyTitleLine);
    if (line.top() < top) { return; }
    const auto paintLine = [&](const QFont& font, const QColor& ink, const QString& text) {
        painter.setFont(font);
        painter.setPen(ink);
        painter.drawText(line, Qt::AlignCenter,
                         painter.fontMetrics().elidedText(text, Qt::ElideRight, width()));
    };
    paintLine(regularFont(sizes::emptyPlaceTitleSize), colors.timelineInk,
              u"Nothing is keyed yet"_s);
    line = {0, line.bottom(), line.width(), kEmptyAdviceLine};
    paintLine(
        frameFont(), colors.timelineSecondInk,
        u"Move an element, or press a round button in the inspector, to set a keyframe at the playhead."_s);
}

void TracksView::paintOverlay(QPainter& painter, const QRect& part) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const Overlay shown = overlay();
    if (shown.skim) { paintTimeBar(painter, *shown.skim, height(), colors.blue); }
    paintTimeBar(painter, shown.playhead, height(), colors.red);
    paintPlayheadLabel(painter, shown.playhead, shown.label);
    paintMasterKeyframes(painter, part);
    if (m_showsMark) { paintMark(painter); }
    if (shown.marquee) { paintMarquee(painter, *shown.marquee); }
}

void TracksView::paintMark(QPainter& painter) {
    const auto keyframe = m_mark.keyframe();
    if (!keyframe) { return; }
    const QRectF rect = keyframeRect(m_mark.row(), keyframe->timeInMS());
    paintRounded(painter, rect, sizes::focusRing, {}, Appearance::current().workbench().accent,
                 sizes::focusRing);
}

void TracksView::paintMasterKeyframes(QPainter& painter, const QRect& part) {
    const auto animation = m_controller.project()->animationsManager().selectedAnimation();
    if (!animation) { return; }
    const PCKeyedPropertyTimeline& timeline = *animation->masterKeyframesTimeline();
    const int32_t from = viewport().timeAt(part.left() - kMasterReach);
    const double right = part.right() + kMasterReach;
    for (size_t i = timeline.firstKeyframeIndexAtOrAfterTimeInMS(std::max(0, from));
         i < timeline.keyframesCount(); ++i) {
        const double x = viewport().pointForTime(timeline.timeOfKeyframe(i));
        if (x > right) { return; }
        paintMasterLine(painter, x, height());
        paintMasterKeyframe(painter, x,
                            m_controller.keyframeManager().keyframeIsSelected(timeline, i));
    }
}

}  // namespace tweenery
