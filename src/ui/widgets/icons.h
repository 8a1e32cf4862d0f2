#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace tweenery {

// The program's pictures, by the names of icon_names.h. Each is drawn from its file once for each
// size, scale and colour, and kept. A name without a file is an AssertionFailure.

/// The picture alone, without a plate, at `size` points with `devicePixelRatio` pixels each; where
/// it takes a tint, in `color`. `detail` takes the place of what is #F3F3F3 in the file; invalid:
/// it stays.
QPixmap iconPixmap(const QString& name, QSizeF size, double devicePixelRatio, const QColor& color,
                   const QColor& detail = {});

/// Paints the picture into `rect`, sharp on the painter's device. What the name says of colours
/// holds; else `color`. A plate is drawn about the middle of `rect`, in the frame's plate colour.
void paintIcon(QPainter& painter, const QRectF& rect, const QString& name, const QColor& color,
               const QColor& detail = {});

/// The application's icon in all sizes.
QIcon applicationIcon();

/// The width of lines of a picture drawn `size` points large, in the units of its grid of 24.
double iconStrokeWidth(double size);

}  // namespace tweenery
