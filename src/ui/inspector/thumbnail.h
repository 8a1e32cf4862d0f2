#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace tweenery {

class PCImageSet;

/// Paints a picture of the set on a checkerboard with round corners, as large as fits in, and a
/// line round it. A null set leaves the board empty. A damaged one has none either.
void paintThumbnail(QPainter& painter, const QRectF& rect, const PCImageSet* set, bool isLarge,
                    const QColor& line, double lineWidth);

}  // namespace tweenery
