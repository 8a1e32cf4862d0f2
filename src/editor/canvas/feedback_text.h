#pragma once

#include <QPointF>
#include <QSizeF>
#include <QString>

namespace tweenery {

// What the plate beside the pointer says while something is dragged. A minus is the mathematical
// one; what would be a negative nothing is 0.

/// In points, to a tenth where it is not whole: "x 12, y −5".
QString distanceText(QPointF distance);
/// "320 × 480".
QString sizeText(QSizeF size);
/// Of factors, in whole percent: "120 % × 80 %".
QString percentText(QPointF factors);
/// In degrees, to a tenth: "24°".
QString angleText(double radians);

}  // namespace tweenery
