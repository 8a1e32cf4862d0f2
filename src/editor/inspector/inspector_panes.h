#pragma once

#include <QString>
#include <span>
#include <vector>

#include "base/typed_number.h"
#include "editor/canvas/element_selection_manager.h"
#include "model/properties/property_type.h"

namespace tweenery {

enum class InspectorPaneKind { CanvasSize, Position, Scale, Rotation, Opacity, Image, ZPosition };
inline constexpr size_t kInspectorPaneCount = 7;

/// The panes for what is selected, from the top down.
std::vector<InspectorPaneKind> inspectorPanes(const PCElementSelectionManager& selection,
                                              bool isSetupMode);

/// What the strip above the panes says.
struct InspectorHeader {
    QString title;
    QString picture;  // by its name
    bool operator==(const InspectorHeader&) const = default;
};
InspectorHeader inspectorHeader(const PCElementSelectionManager& selection);

/// The timelines that a pane's key button keys; none for the size of the canvas.
std::span<const PCPropertyType> keyedTypes(InspectorPaneKind pane);

/// The fields, in the order of Tab.
enum class InspectorField {
    CanvasWidth,
    CanvasHeight,
    PositionX,
    PositionY,
    ScaleX,
    ScaleY,
    Rotation,
    Opacity
};
inline constexpr size_t kInspectorFieldCount = 8;

NumberUnit unitOf(InspectorField field);
/// What stands before the field, without a colon: "Position X", in an animation "Translate X".
QString labelOf(InspectorField field, bool isSetupMode);

}  // namespace tweenery
