#pragma once

#include <QPoint>
#include <QPointF>
#include <QString>
#include <cstdint>
#include <optional>

#include "editor/canvas/element_selection_manager.h"
#include "editor/layers/editor_layer.h"
#include "model/edit_time.h"

namespace tweenery {

/// The tool of the canvas.
enum PCSelectionState : int64_t {
    PCSelectionStateSelect = 0,  // acts on top-level elements
    PCSelectionStateDirect = 1,  // acts on the deepest element, inside groups
    PCSelectionStateHand = 2,    // scrolls
};

/// A cursor by the name of its image, which is turned by `degrees`, clockwise on the screen.
struct CanvasCursor {
    QString image;
    double degrees = 0;
    std::optional<QPoint> hotSpot = {};  // in points from the top left; the centre without one
    bool operator==(const CanvasCursor&) const = default;
};

CanvasCursor handCursor();
CanvasCursor handClosedCursor();
/// The cursor of a drag that scales; at 0 degrees it points left and right.
CanvasCursor transformCursorRotatedBy(double degrees, bool isAdditive);
/// The cursor of a drag that turns, at that angle around the event anchor point.
CanvasCursor rotateCursorRotatedBy(double degrees, bool isAdditive);

/// The tool's own cursor.
CanvasCursor selectionCursorForState(PCSelectionState state, bool isAdditive);
/// The cursor that tells what a press at a location would do; nothing for a number that is no
/// location. Angles in degrees; `isScaleInverted` when the element under the pointer is mirrored on
/// one axis.
std::optional<CanvasCursor> cursorForEventLocation(PCEditorLocation location,
                                                   double netRotationOfLayer, bool isAdditive,
                                                   bool isScaleInverted,
                                                   float rotationFromAnchorPoint,
                                                   PCSelectionState state);
/// The angle of the pointer around the event anchor point, from the vertical, in degrees. Both
/// points in canvas coordinates.
float rotationFromAnchorPoint(QPointF anchorPoint, QPointF pointer);

/// The cursor for a pointer that moves over the canvas, at a point of it; nothing for the hand
/// tool, whose cursor stays. `when` is what is shown.
std::optional<CanvasCursor> cursorWhileHovering(const PCEditorLayer& editor,
                                                const PCProject& project,
                                                const PCElementSelectionManager& selection,
                                                PCSelectionState state, QPointF pointer,
                                                EditTime when);

}  // namespace tweenery
