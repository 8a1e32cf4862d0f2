#pragma once

#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// Selects the children of the canvas that a rectangle touches, as it is drawn. Leaves no undo
/// step.
class MarqueeGesture : public CanvasGesture {
 public:
    MarqueeGesture(const CanvasScene& scene, const PointerEvent& press)
        : m_scene(scene), m_start(scene.canvasPoint(press)) {}
    ~MarqueeGesture() override { m_scene.editor.updateSelectionRect({}); }

    void drag(const PointerEvent& event) override;

 private:
    CanvasScene m_scene;
    QPointF m_start;  // on the canvas, as it may scroll meanwhile
};

}  // namespace tweenery
