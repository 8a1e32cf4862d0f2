#pragma once

#include <QColor>
#include <QRectF>
#include <QString>
#include <cstdint>

class QPainter;

namespace tweenery {

class PCProjectTimeManager;

// Everything that tells the time in the timeline: the ruler above the tracks, and what lies over
// both. The upper left corner of the ruler is the painter's origin.

/// The ruler, 42 points high, from x = 0 to `width`. `scrollOffset` is the point of the timeline at
/// its left edge; nothing is marked after `maxTimeInMS`.
void paintRuler(QPainter& painter, const PCProjectTimeManager& time, double width,
                double scrollOffset, int32_t maxTimeInMS, const QColor& fill);

/// Marks what is played over and over, along the ruler's lower edge; paler while it is off.
void paintLoopRange(QPainter& painter, double from, double to, bool isOn);

/// The line of the playhead or of the skim bar, from the top to `height`.
void paintTimeBar(QPainter& painter, double x, double height, const QColor& color);

/// The playhead's time, "1.23s".
QString playheadLabel(int32_t timeInMS);
/// The plate that holds the label, beside the bar at `x`.
QRectF playheadPlate(double x, const QString& label);
void paintPlayheadLabel(QPainter& painter, double x, const QString& label);

/// What a marquee covers; keeps off the ruler.
void paintMarquee(QPainter& painter, QRectF rect);

}  // namespace tweenery
