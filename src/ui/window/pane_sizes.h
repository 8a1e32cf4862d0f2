#pragma once

#include <QRect>

#include "ui/widgets/sizes.h"

namespace tweenery {

/// The four panes of a document window in numbers. Coordinates grow downwards from the upper left
/// corner of the split view. No operation compares with the values before.
struct PaneSizes {
    static constexpr int dividerThickness = 3;
    static constexpr int collapsedBottomHeight = sizes::collapsedTimeline;

    int width = 0;  // of the whole split view; 0: not known yet, and no upper bound holds
    int height = 0;
    int leftWidth = sizes::paneWidth;
    int rightWidth = sizes::paneWidth;
    int bottomHeight = collapsedBottomHeight;
    bool leftVisible = true;
    bool rightVisible = true;
    bool bottomVisible = false;

    // What a divider that was dragged asks for, in points. The raw value decides about hiding, and
    // the cut one about the size.

    /// Leaves the right pane and two dividers their room, but is never less than 250. Hides below
    /// 125 and shows above.
    void setLeftWidth(double asked);
    /// The width is always 350; hides below 175 and shows above.
    void setRightWidth(double asked);
    /// Leaves 100 points above, but is never less than 44. Never hides.
    void setBottomHeight(double asked);
};

/// Where the panes stand. One that is hidden lies beyond the edge, with its size.
struct PaneFrames {
    QRect left;
    QRect main;
    QRect right;
    QRect bottom;
    // The strips that can be dragged.
    QRect leftDivider;
    QRect rightDivider;
    QRect bottomDivider;
};

PaneFrames paneFrames(const PaneSizes& sizes);

enum class Divider { None, Left, Right, Bottom };

/// The divider at a point; where strips meet, the bottom one counts before the right one before the
/// left one.
Divider dividerAt(const PaneFrames& frames, QPointF point);

/// What a drag of `divider` to `point` makes of the sizes.
PaneSizes sizesAfterDrag(PaneSizes sizes, Divider divider, QPointF point);

}  // namespace tweenery
