#pragma once

#include <array>
#include <optional>

#include "editor/inspector/inspector_panes.h"
#include "model/edit_time.h"
#include "model/project.h"

namespace tweenery {

/// What a key button tells of the selected elements.
enum class KeyState {
    NotAnimated,
    Animated,     // somewhere in the selected animation
    KeyframeHere  // at the playhead
};

/// What the fields show of the selected elements, at setup or at a time.
struct InspectorValues {
    /// In the units of the fields, by InspectorField; none where the elements differ. Those of the
    /// canvas are always there.
    std::array<std::optional<double>, kInspectorFieldCount> fields;
    std::array<KeyState, kInspectorPaneCount> keys{};  // by InspectorPaneKind
    double dialRadians = 0;                            // 0 where they differ
    double sliderOpacity = 1;                          // 0 to 1; 1 where they differ
    bool areScalesLocked = false;                      // all of them

    std::optional<double> operator[](InspectorField field) const {
        return fields[static_cast<size_t>(field)];
    }
    KeyState key(InspectorPaneKind pane) const { return keys[static_cast<size_t>(pane)]; }
    bool operator==(const InspectorValues&) const = default;
};

/// One pass over the selection. Values that differ by less than whole points, whole percents of
/// scale, or a whole radian count as equal, and so do opacities unless one of them is 1 and another
/// less; then the first element's value is shown.
InspectorValues inspectorValues(const PCProject& project,
                                const PCElementSelectionManager& selection, EditTime when);

/// The text of a field at rest: whole points and percents of scale, cut toward zero, up to two
/// decimals of degrees and of opacity. Empty without a value.
QString textAtRest(InspectorField field, std::optional<double> value);
/// The text of a field that is being edited: up to two decimals.
QString textInUse(std::optional<double> value);

}  // namespace tweenery
