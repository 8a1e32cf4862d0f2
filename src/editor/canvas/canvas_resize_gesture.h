#pragma once

#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// Drags an edge or a corner of the canvas. No element moves: the scene's origin is the canvas's
/// top left corner, and where that is dragged the document scrolls, so that the opposite edge keeps
/// its place on the screen.
class CanvasResizeGesture : public CanvasGesture {
 public:
    /// `location` is one of the canvas's edges or corners.
    CanvasResizeGesture(const CanvasScene& scene, PCEditorLocation location,
                        const PointerEvent& press);

    void drag(const PointerEvent& event) override;
    QString actionName() const override;
    QString feedback() const override;

 private:
    enum class Side { Origin, None, Far };  // which edge of an axis is dragged

    CanvasScene m_scene;
    Side m_horizontal = Side::None;
    Side m_vertical = Side::None;
    QPointF m_pressedAt;  // of the view
    QPointF m_grabbed;    // of the canvas
    QSizeF m_size;        // at the press, as is the origin
    QPointF m_scrollOrigin;

    static double growth(Side side, double pointer, double length);
};

}  // namespace tweenery
