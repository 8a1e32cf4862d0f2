#pragma once

#include <utility>
#include <vector>

#include "editor/canvas/canvas_interaction.h"
#include "editor/editor_scene.h"

namespace tweenery::test {

inline constexpr Qt::KeyboardModifiers kNone = Qt::NoModifier;
inline constexpr Qt::KeyboardModifiers kShift = Qt::ShiftModifier;
inline constexpr Qt::KeyboardModifiers kAlt = Qt::AltModifier;
inline constexpr Qt::KeyboardModifiers kControl = Qt::ControlModifier;

/// A canvas under a pointer, at a view of 800 by 600 points, with what a window would do by hand.
/// Points are of the canvas.
class InteractionScene : public EditorScene, public CanvasInteractionHost {
 public:
    explicit InteractionScene(QSizeF size = {400, 300}) : EditorScene(size) {
        viewport.setContainerSize({800, 600});
        viewport.scrollToCenter();
    }

    EventAnchorPoint anchorPoint{project, selection, editor};
    CanvasViewport viewport{*project, editor, anchorPoint};
    CanvasScene scene{*project, selection, editor, viewport, anchorPoint};
    bool additive = false;
    PCElement::Elements selectedBeforePlayback;  // not empty: it plays
    int toolChanges = 0;
    std::vector<std::function<void()>> waiting;  // what was to be called later
    CanvasInteraction interaction{scene, *this};

    EditTime editTime() const override {
        return project->isSetupMode() ? EditTime::setup() : layers->shown();
    }
    bool additiveModeIsOn() const override { return additive; }
    void endPlaybackAtTimeShown() override {
        if (selectedBeforePlayback.empty()) { return; }
        selection.selectElements(std::exchange(selectedBeforePlayback, {}));
    }
    void canvasToolDidChange() override { ++toolChanges; }
    void canvasNeedsDisplay() override {}
    void callLater(std::chrono::milliseconds, std::function<void()> call) override {
        waiting.push_back(std::move(call));
    }
    /// So that only what follows can be undone.
    void forgetSteps() { project->undoManager().removeAllActions(); }
    void letTimePass() {
        for (const auto& call : std::exchange(waiting, {})) {
            call();
        }
    }

    /// On the screen the view stands at (50, 20).
    PointerEvent at(QPointF point, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                    Qt::MouseButton button = Qt::LeftButton) const {
        const QPointF viewPoint = viewport.viewPoint(point);
        return {viewPoint, viewPoint + QPointF(50, 20), modifiers, button};
    }
    void press(QPointF point, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        interaction.press(at(point, modifiers));
    }
    void drag(QPointF point, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        interaction.drag(at(point, modifiers));
    }
    void release() { interaction.release({}); }
    /// A whole press, through these points.
    void dragThrough(const std::vector<QPointF>& points,
                     Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        press(points.front(), modifiers);
        for (size_t i = 1; i < points.size(); ++i) {
            drag(points[i], modifiers);
        }
        release();
    }
    /// In a new animation, at a time.
    void animateAt(int32_t timeInMS) {
        selectNewAnimation(*project, QStringLiteral("Move"));
        layers->show(EditTime::at(timeInMS));
    }
    /// Names with commas between, oldest first.
    void choose(const char* names) {
        select(QString::fromLatin1(names).split(u',', Qt::SkipEmptyParts));
    }
    std::string selected() const {
        QStringList names;
        for (const PCElement::Ptr& element : selection.selectedElements()) {
            names += element->name();
        }
        return names.join(u',').toStdString();
    }
    /// The name of the one step that there is to undo; "-" for none, "several" for more.
    std::string onlyStep() {
        UndoManager& manager = project->undoManager();
        if (!manager.canUndo()) { return "-"; }
        const std::string name = manager.undoActionName().toStdString();
        manager.undo();
        const bool isOnly = !manager.canUndo();
        manager.redo();
        return isOnly ? name : "several";
    }
};

}  // namespace tweenery::test
