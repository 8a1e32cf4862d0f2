#pragma once

#include <QColor>

#include "model/properties/easing.h"
#include "model/properties/repeat_behavior.h"

class QPainter;

namespace tweenery {

class PCKeyedPropertyTimeline;
class PCKeyframeManager;
class PCProjectTimeManager;

/// A part of the tracks from left to right, in points.
struct TrackSpan {
    double left = 0;
    double right = 0;
};

/// What tells one tween of a track from another by its looks.
struct TweenLook {
    QColor color;  // of its property
    PCEasingMode easing = PCEasingModeLinear;
    bool isSelected = false;
};

// The upper left corner of the track is the painter's origin; a track is 28 points high.

/// The curve between two keyframes over its dashed base line. Draws only what `visible` shows,
/// however long the tween is, and nothing for an easing that is none.
void paintTween(QPainter& painter, const TweenLook& look, double start, double end,
                TrackSpan visible);

/// 90 by 15 points, with its left edge at `x`; nothing for a timeline that plays once.
void paintLoopMarker(QPainter& painter, double x, PCRepeatBehavior behavior);

/// Whether there is a curve from the keyframe before, or from the setup state, to the one at
/// `endIndex`: neither jumps, and they differ in time and value.
bool tweenShows(const PCKeyedPropertyTimeline& timeline, size_t endIndex);

/// The keyframes of one timeline, their tweens and the loop marker: those that `visible` shows.
/// `scrollOffset` is the point of the timeline at the track's left edge.
void paintTrack(QPainter& painter, const PCKeyedPropertyTimeline& timeline,
                const PCKeyframeManager& selection, const PCProjectTimeManager& time,
                double scrollOffset, TrackSpan visible);

}  // namespace tweenery
