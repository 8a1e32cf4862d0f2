#pragma once

#include <QPointF>

namespace tweenery {

class PCElement;

/// `point` in the coordinates of `from`, given in those of `to`, through the places at which the
/// elements of one tree are shown at this moment; those of elements made without a screen are taken
/// at the setup state. Both coordinates are NaN where `to` has no such
/// point, because it or a group around it is scaled to nothing.
QPointF convertPoint(QPointF point, const PCElement& from, const PCElement& to);

}  // namespace tweenery
