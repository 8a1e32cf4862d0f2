#pragma once

#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// Scrolls the document along with the pointer. Leaves no undo step.
class HandGesture : public CanvasGesture {
 public:
    HandGesture(const CanvasScene& scene, const PointerEvent& press)
        : m_scene(scene), m_held(scene.viewport.documentPoint(press.viewPoint)) {}

    void drag(const PointerEvent& event) override {
        m_scene.viewport.scrollTo(m_held - event.viewPoint);
    }
    std::optional<CanvasCursor> cursor() const override { return handClosedCursor(); }

 private:
    CanvasScene m_scene;
    QPointF m_held;  // the point of the document that was taken hold of
};

}  // namespace tweenery
