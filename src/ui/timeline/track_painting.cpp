#include "ui/timeline/track_painting.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "editor/timeline/keyframe_manager.h"
#include "editor/timeline/project_time_manager.h"
#include "editor/timeline/timeline_hits.h"
#include "ui/timeline/keyframe_painting.h"
#include "ui/widgets/colors.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kTrackHeight = sizes::timelineRow;
constexpr double kTrackMiddle = kTrackHeight / 2;
constexpr double kKeyframeReach = 12;  // of a keyframe to either side of its time
constexpr double kDash = 10;
constexpr double kDashGap = 3;
constexpr double kDashWidth = 2;
constexpr double kPaleness = 0.8;  // of the base line
constexpr QSizeF kLoopMarker(90, 15);
constexpr double kLoopMarkerTop = 6.5;
constexpr double kLoopMarkerGap = 15;  // after the last keyframe

// The curve of an easing: how far its ends stand off the keyframes, and where; its control points
// in units of the tween's length and the track's height. Heights count from the lower edge.
struct TweenCurve {
    double startInset, startHeight;
    double endInset, endHeight;
    QPointF first, second;
};

const TweenCurve* curveOf(PCEasingMode mode) {
    static const TweenCurve curves[] = {
        {0, 14, 0, 14, {0.5, 0.5}, {0.5, 0.5}},
        {0, 1, 0, 27, {0.75, 0}, {1, 1}},
        {0, 1, 0, 27, {0, 0}, {0.25, 1}},
        {0, 1, 0, 27, {0.25, 0}, {0.75, 1}},
        {10, 14, 0, 28, {0.25, -0.75}, {1, 1}},
        {0, 0, 10, 14, {0, 0}, {0.75, 1.75}},
        {10, 14, 10, 14, {0.25, -0.75}, {0.75, 1.75}},
    };
    const bool isKnown = mode >= PCEasingModeLinear && mode <= PCEasingModeAnticOver;
    return isKnown ? &curves[mode] : nullptr;
}

struct Cubic {
    QPointF p0, p1, p2, p3;

    QPointF at(double t) const { return upTo(t).p3; }
    Cubic upTo(double t) const {
        const auto mix = [t](QPointF a, QPointF b) { return a + (b - a) * t; };
        const QPointF a = mix(p0, p1);
        const QPointF b = mix(p1, p2);
        const QPointF c = mix(p2, p3);
        const QPointF ab = mix(a, b);
        const QPointF bc = mix(b, c);
        return {p0, a, ab, mix(ab, bc)};
    }
    Cubic reversed() const { return {p3, p2, p1, p0}; }
    // x grows with t, as control points lie between the ends.
    double parameterAt(double x) const {
        constexpr int kSteps = 50;
        double low = 0;
        double high = 1;
        for (int i = 0; i < kSteps; ++i) {
            const double middle = (low + high) / 2;
            (at(middle).x() < x ? low : high) = middle;
        }
        return low;
    }
};

// The rasterizer cannot take coordinates of any size.
Cubic cut(Cubic curve, TrackSpan visible) {
    const double right = visible.right + kKeyframeReach;
    const double left = visible.left - kKeyframeReach;
    if (curve.p3.x() > right) { curve = curve.upTo(curve.parameterAt(right)); }
    if (curve.p0.x() < left) {
        const double start = curve.parameterAt(left);
        curve = curve.reversed().upTo(1 - start).reversed();
    }
    return curve;
}

void paintBaseLine(QPainter& painter, const QColor& color, double from, double to,
                   TrackSpan visible) {
    constexpr double kPeriod = kDash + kDashGap;
    const double skipped = std::max(0.0, std::floor((visible.left - from) / kPeriod));
    const double end = std::min(to, visible.right);
    for (double x = from + skipped * kPeriod; x < end; x += kPeriod) {
        const QRectF dash(x, kTrackMiddle - kDashWidth / 2, std::min(kDash, to - x), kDashWidth);
        painter.fillRect(alignedToDevice(painter, dash), color);
    }
}

}  // namespace

bool tweenShows(const PCKeyedPropertyTimeline& timeline, size_t endIndex) {
    const int32_t start = endIndex == 0 ? 0 : timeline.timeOfKeyframe(endIndex - 1);
    if (timeline.timeOfKeyframe(endIndex) <= start) { return false; }
    const bool jumps = timeline.keyframeIsInstant(endIndex) ||
                       (endIndex > 0 && timeline.keyframeIsInstant(endIndex - 1));
    return !jumps && changesValue(timeline, endIndex);
}

void paintTween(QPainter& painter, const TweenLook& look, double start, double end,
                TrackSpan visible) {
    const TweenCurve* curve = curveOf(look.easing);
    if (!curve || start >= end) { return; }
    const QPointF from(start + curve->startInset, kTrackHeight - curve->startHeight);
    const QPointF to(end - curve->endInset, kTrackHeight - curve->endHeight);
    const auto control = [&](QPointF unit) {
        return QPointF(from.x() + (to.x() - from.x()) * unit.x(), kTrackHeight * (1 - unit.y()));
    };
    if (curve->first != curve->second) {
        paintBaseLine(painter, lightened(look.color, kPaleness), from.x(), to.x(), visible);
    }
    const Cubic shown = cut({from, control(curve->first), control(curve->second), to}, visible);
    QPainterPath path(shown.p0);
    path.cubicTo(shown.p1, shown.p2, shown.p3);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(look.color, look.isSelected ? 2 : 1, Qt::SolidLine, Qt::FlatCap));
    painter.drawPath(path);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void paintLoopMarker(QPainter& painter, double x, PCRepeatBehavior behavior) {
    if (behavior == PCRepeatBehaviorNever) { return; }
    const QString name =
        behavior == PCRepeatBehaviorForever ? u"loop_icon"_s : u"loop_icon_reverse"_s;
    paintIcon(painter, QRectF(QPointF(x, kLoopMarkerTop), kLoopMarker), name, {});
}

void paintTrack(QPainter& painter, const PCKeyedPropertyTimeline& timeline,
                const PCKeyframeManager& selection, const PCProjectTimeManager& time,
                double scrollOffset, TrackSpan visible) {
    const size_t count = timeline.keyframesCount();
    if (count == 0) { return; }
    const auto place = [&](size_t index) {
        return time.pointValueFromMS(timeline.timeOfKeyframe(index)) - scrollOffset;
    };
    const auto timeAt = [&](double x) {
        return time.msFromPointValue(std::max(0.0, x + scrollOffset));
    };
    const size_t first =
        timeline.firstKeyframeIndexAtOrAfterTimeInMS(timeAt(visible.left - kKeyframeReach));
    const QColor color = propertyColor(timeline.propertyType());
    size_t last = std::min(first, count);  // the one that the last tween in sight ends in
    double start = 0;
    if (first < count) {
        start = first == 0 ? -scrollOffset : place(first - 1);
        for (last = first; last < count && start <= visible.right + kKeyframeReach; ++last) {
            const double end = place(last);
            if (tweenShows(timeline, last)) {
                paintTween(painter,
                           {color, timeline.easingModeOfKeyframe(last),
                            selection.tweenIsSelected(timeline, last)},
                           start, end, visible);
            }
            start = end;
        }
    }
    for (size_t index = first; index < last; ++index) {
        paintKeyframe(painter, {place(index), kTrackMiddle},
                      {color, timeline.keyframeIsInstant(index),
                       selection.keyframeIsSelected(timeline, index)});
    }
    paintLoopMarker(painter, place(count - 1) + kLoopMarkerGap, timeline.repeatBehavior());
}

}  // namespace tweenery
