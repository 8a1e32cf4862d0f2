#pragma once

#include <vector>

#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// Scales the selected elements by a handle of one of them. That one alone keeps the point opposite
/// of the handle in place; several, or with Option, keep their anchor points. Shift keeps the ratio
/// of the setup scale, as a locked scale does. An axis along which an element has no size keeps its
/// scale.
class ScaleGesture : public CanvasGesture {
 public:
    /// `element` is the one whose handle is pressed, and selected.
    ScaleGesture(const CanvasScene& scene, EditTarget target, PCElement::Ptr element,
                 PCEditorLocation handle);

    void drag(const PointerEvent& event) override;
    QString actionName() const override;
    QString feedback() const override;

 private:
    // As it was at the press.
    struct Item {
        PCElement::Ptr element;
        QPointF scale;
        QPointF place;
        double rotation = 0;
        double ratio = 1;  // of the setup scale
    };

    CanvasScene m_scene;
    EditTarget m_target;
    PCElement::Ptr m_element;
    QPointF m_fixedUnitPoint;
    QPointF m_fixedPoint;  // on the canvas
    double m_rotationOnCanvas = 0;
    QPointF m_scale;  // of the element
    std::vector<Item> m_items;

    QPointF scaleOfHandleAt(QPointF pointer) const;
    QPointF scaled(const Item& item, QPointF difference, bool keepsRatio) const;
    QPointF shiftThatHolds(const Item& item, QPointF scale) const;
};

/// The unit point of an element's bounds opposite of a handle.
QPointF resizeAnchorForEventLocation(PCEditorLocation handle);

}  // namespace tweenery
