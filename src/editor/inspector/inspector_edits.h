#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "base/media_clock.h"
#include "editor/canvas/canvas_gesture.h"
#include "editor/inspector/inspector_panes.h"

namespace tweenery {

/// What the inspector works on. Nothing is owned.
struct InspectorScene {
    PCProject& project;
    PCElementSelectionManager& selection;
    const MediaClock& clock;
    /// What an edit is written to now.
    std::function<EditTarget()> target;
    /// Called before each edit; ends playback.
    std::function<void()> willEdit;
};

/// The edits of the inspector, through the calculators. Each leaves one named step of undo: a typed
/// value, a drag with all its events, a run of arrow keys.
///
/// Amounts are in the units of the fields. All but drags are called outside of any undo group.
class InspectorEdits {
 public:
    explicit InspectorEdits(InspectorScene scene) : m_scene(std::move(scene)) {}

    /// Adds to what the selected elements have.
    void step(InspectorField field, double delta);
    /// Gives all of them that value.
    void set(InspectorField field, double value);
    /// Of an opacity slider, 0 to 1: in additive mode the elements keep their differences.
    void setOpacity(double opacity);

    /// A drag on a label, dial or slider: what lies between is one step. The target is that of the
    /// beginning.
    void beginDrag();
    void endDrag();
    /// Everything is as it was.
    void cancelDrag();
    bool isDragging() const { return m_drag.has_value(); }

    void setScalesLocked(bool areLocked);
    void swapCanvasSize();
    /// Keys what the selected elements, or the canvas, show at the playhead; nothing in setup mode.
    void createKeyframes(InspectorPaneKind pane);
    /// Gives the first selected element the image set of that name; nothing for a group. Throws
    /// InputError, and changes nothing, when its artwork is damaged.
    void setImage(const QString& name);
    /// The same for an image that comes into the project only now, as one step. `import` brings it
    /// in and returns its name; empty when none came.
    void setImportedImage(const std::function<QString()>& import);

    /// Changes the order of children at the playhead: `child` goes to where now the row `row` is,
    /// counted from the front, or behind all for a row that is not there. Returns whether anything
    /// has moved.
    bool moveZPosition(const PCElement::Ptr& parent, const Identifier& child, size_t row);

 private:
    struct Drag {
        EditTarget target;
        UndoGesture gesture;
        Drag(EditTarget to, UndoManager& undoManager) : target(to), gesture(undoManager) {}
    };
    // Arrow keys in one field.
    struct Series {
        InspectorField field;
        EditTarget target;
        PCElement::Elements elements;
        std::vector<double> deltas;  // those of one direction added up
        int64_t changeCount = 0;     // after the last of them
        double time = 0;             // seconds
    };

    InspectorScene m_scene;
    std::optional<Drag> m_drag;
    std::optional<Series> m_series;

    EditTarget target() const { return m_drag ? m_drag->target : m_scene.target(); }
    PCElement::Elements targets(const EditTarget& target) const {
        return m_scene.selection.elementsToUpdate(target.additive);
    }
    /// The edit alone when it is part of a drag, else a step of its own.
    void perform(const QString& name, const std::function<void()>& edit);
    void asStep(const QString& name, const std::function<void()>& edit);
    void add(InspectorField field, double delta, const EditTarget& target);
    bool goesOn(const Series& series) const;
};

/// The children of an element as they lie at `when`, foremost first.
PCElement::Elements zPositionRows(PCProject& project, const PCElement& parent, EditTime when);

}  // namespace tweenery
