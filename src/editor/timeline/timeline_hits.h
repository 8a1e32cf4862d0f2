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
/// A master keyframe, in the ruler.
TimelineKeyframe masterKeyframeAt(const TimelineScene& scene, double x);
/// Those whose rows the rectangle touches, and whose shapes reach into it sideways.
PCKeyframeManager::KeyframeSet keyframesIn(const TimelineScene& scene, const QRectF& rect);

}  // namespace tweenery
