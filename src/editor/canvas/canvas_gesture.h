#pragma once

#include <optional>

#include "editor/canvas/canvas_viewport.h"
#include "editor/canvas/cursor_choice.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/canvas/event_anchor_point.h"
#include "editor/canvas/pointer_gesture.h"
#include "editor/layers/editor_layer.h"
#include "model/edit_time.h"
#include "model/project.h"

namespace tweenery {

/// What an interaction with the canvas works on. Nothing is owned.
struct CanvasScene {
    PCProject& project;
    PCElementSelectionManager& selection;
    PCEditorLayer& editor;
    CanvasViewport& viewport;
    EventAnchorPoint& anchorPoint;

    QPointF canvasPoint(const PointerEvent& event) const {
        return viewport.canvasPoint(event.viewPoint);
    }
};

/// What the edits of one press are written to.
struct EditTarget {
    EditTime when = EditTime::setup();
    bool additive = false;
    bool operator==(const EditTarget&) const = default;
};

/// One drag on the canvas.
class CanvasGesture : public PointerGesture {
 public:
    /// Nothing where the cursor stays that of the press.
    virtual std::optional<CanvasCursor> cursor() const { return std::nullopt; }
};

}  // namespace tweenery
