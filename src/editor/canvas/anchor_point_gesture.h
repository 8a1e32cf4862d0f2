#pragma once

#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// Moves the event anchor point, and in setup mode that of the one selected element with it, which
/// stays where it is on the canvas.
class AnchorPointGesture : public CanvasGesture {
 public:
    AnchorPointGesture(const CanvasScene& scene, EditTarget target)
        : m_scene(scene), m_target(target) {}

    void drag(const PointerEvent& event) override;
    QString actionName() const override;
    QString feedback() const override;

 private:
    CanvasScene m_scene;
    EditTarget m_target;

    PCElement::Ptr edited() const;
};

/// The unit point of the element's bounds at a point of the canvas. An axis along which the element
/// has no size keeps its coordinate; not finite where the element is flattened.
QPointF anchorPointAt(QPointF canvasPoint, const PCElement& element);
/// The name of the undo step.
QString anchorPointActionName();

}  // namespace tweenery
