#pragma once

#include <QRectF>

#include "editor/timeline/timeline_gesture.h"

namespace tweenery {

// What lies at a point of the timeline, in the points of TimelineViewport. Keyframes reach 10
// points to either side of their time, over the whole height of the row.

using TimelineKeyframe = PCKeyedPropertyTimeline::KeyframePtr;

/// Of the point's row the keyframe closest in time, if it reaches to the point; of several at that
/// time the one that shows. Null without one.
TimelineKeyframe keyframeAt(const TimelineScene& scene, QPointF point);
/// The keyframe in which the stretch at the point ends. Null where there is none after it, or it
/// jumps.
TimelineKeyframe tweenAt(const TimelineScene& scene, QPointF point);
/// Whether the value of the keyframe at `endIndex` is another than the one before it, or than that
/// of the setup state: only then the stretch to it is a tween.
bool changesValue(const PCKeyedPropertyTimeline& timeline, size_t endIndex);
/// A master keyframe, in the ruler.
TimelineKeyframe masterKeyframeAt(const TimelineScene& scene, double x);

/// Rows from `firstRow` up to and without `endRow`, and times from `from` to `to`, both included.
struct KeyframeArea {
    int firstRow = 0;
    int endRow = 0;
    int32_t from = 0;
    int32_t to = -1;

    bool hasRow(int row) const { return row >= firstRow && row < endRow; }
    bool hasTime(int32_t timeInMS) const { return timeInMS >= from && timeInMS <= to; }
};
/// The rows that the rectangle touches, and the times whose keyframes reach into it.
KeyframeArea areaTouchedBy(const TimelineScene& scene, const QRectF& rect);

}  // namespace tweenery
