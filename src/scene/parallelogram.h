#pragma once

#include <QPointF>
#include <QRectF>

#include "scene/affine.h"

namespace tweenery {

/// What an affine map makes of a rectangle: for the question how far a turned layer reaches in
/// some rows of a picture.
class Parallelogram {
 public:
    Parallelogram(const Affine& map, const QRectF& rect);

    /// The least and the greatest x; no point when `left` > `right`.
    struct Columns {
        double left;
        double right;
    };
    /// Of the points whose y is `top` to `bottom`, both included.
    Columns columnsBetween(double top, double bottom) const;

 private:
    QPointF m_corners[4];  // in their order along the outline
};

}  // namespace tweenery
