#pragma once

#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

namespace tweenery::rows {

/// The whole row, with its lower edge.
void paintFill(QPainter& painter, const QRect& row, const QColor& fill, bool isHovered);
/// One line at the left, in the middle of `rect`; what is too long ends in an ellipsis.
void paintName(QPainter& painter, const QRect& rect, const QString& name, bool isSelected);
/// Whether paintName() would cut it.
bool isCut(const QString& name, int width, double devicePixelRatio);
/// A picture about a point, in the colour of the row's pictures.
void paintPicture(QPainter& painter, QPointF centre, int size, const QString& icon,
                  bool isSelected);
/// Of the row that has the keyboard.
void paintFocusRing(QPainter& painter, const QRect& row, bool isSelected);
/// Says in the middle of an empty list what is, and what to do.
void paintEmptyPlace(QPainter& painter, const QRect& place, const QString& title,
                     const QString& advice);
/// The area of a row between its edges.
QRect withoutLowerEdge(const QRect& row);

}  // namespace tweenery::rows
