#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>

class QPainter;

namespace tweenery {

/// What tells one keyframe of a track from another by its looks.
struct KeyframeLook {
    QColor color;  // of its property
    bool isInstant = false;
    bool isSelected = false;

    bool operator==(const KeyframeLook&) const = default;
};

/// The diamond of a keyframe about `middle`: 19 by 27 points from line to line, cut at the edges of
/// its row of 28. Placed on whole pixels, so that equal ones look alike.
void paintKeyframe(QPainter& painter, QPointF middle, const KeyframeLook& look);

/// The diamond of a master keyframe: 20 by 28 points, its upper tip at (x, 0).
void paintMasterKeyframe(QPainter& painter, double x, bool isSelected);

/// The line that a master keyframe draws through all tracks, from the top to `height`.
void paintMasterLine(QPainter& painter, double x, double height);

/// The round button that creates a keyframe: a white diamond on a disc of `fill`, 25 points across.
void paintKeyframeButton(QPainter& painter, const QRectF& rect, const QColor& fill);

}  // namespace tweenery
