#pragma once

#include <QPointF>

namespace tweenery {

class PCElement;

/// The setup fields that say how an element stands in its parent, or in what would be its parent.
struct ElementPlacement {
    QPointF position;     // of the anchor point, in points
    double rotation = 0;  // radians, of any number of turns
    QPointF scale{1, 1};
};

/// How `item` would have to stand in `parent`, so that it stays where it is on the canvas: the
/// rotation is its own on the canvas less the parent's, the scale its own divided by the parent's.
/// Where these two do not show it as it was, because the parent mirrors it or scales it unequally,
/// but others do, it is those. Where none do, as with a turned element that an unequal scale has
/// sheared, only its anchor point stays. An axis that the parent scales to nothing is left alone.
ElementPlacement placementUnder(const PCElement& item, const PCElement& parent);

}  // namespace tweenery
