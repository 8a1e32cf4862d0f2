#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace tweenery {

/// `rect` with its edges on pixels of the painter's device, so that its fill has no soft edge.
QRectF alignedToDevice(const QPainter& painter, const QRectF& rect);
/// The width of a line of one point, as the whole device pixels that fit into it.
double hairlineWidth(const QPainter& painter);

/// Fills a rounded rectangle and draws a line of `lineWidth` points within its edge. Colours that
/// are invalid are left out.
void paintRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& fill,
                  const QColor& line, double lineWidth = 1);
/// A line of one point from edge to edge of `rect`, along its lower edge.
void paintLowerLine(QPainter& painter, const QRectF& rect, const QColor& color);

}  // namespace tweenery
