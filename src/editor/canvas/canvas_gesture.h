#pragma once

#include <QString>
#include <optional>

#include "editor/canvas/canvas_viewport.h"
#include "editor/canvas/cursor_choice.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/canvas/event_anchor_point.h"
#include "editor/canvas/pointer_event.h"
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

/// One drag on the canvas, from the press that began it until that is over, when it is destroyed
/// and takes with it what only a drag shows. The undo step is its owner's, and so is taking it all
/// back.
class CanvasGesture {
 public:
    CanvasGesture() = default;
    virtual ~CanvasGesture() = default;
    CanvasGesture(const CanvasGesture&) = delete;
    CanvasGesture& operator=(const CanvasGesture&) = delete;

    /// The pointer is there now, with these modifiers; either may be what has changed.
    virtual void drag(const PointerEvent& event) = 0;
    /// Of its step; null where it leaves none.
    virtual QString actionName() const { return {}; }
    /// Nothing where the cursor stays that of the press.
    virtual std::optional<CanvasCursor> cursor() const { return std::nullopt; }
    /// What the drag has changed so far, for the plate beside the pointer; null for nothing.
    virtual QString feedback() const { return {}; }
};

}  // namespace tweenery
