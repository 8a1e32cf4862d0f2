#pragma once

#include <vector>

#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// Turns the selected elements, each about its own anchor point, by the angle that the pointer goes
/// round the event anchor point. With Shift the first of them snaps to multiples of 15 degrees, and
/// the others turn by the same angle.
class RotateGesture : public CanvasGesture {
 public:
    RotateGesture(const CanvasScene& scene, EditTarget target, const PointerEvent& press);
    ~RotateGesture() override { m_scene.anchorPoint.setInEventLoop(false); }

    void drag(const PointerEvent& event) override;
    QString actionName() const override;
    std::optional<CanvasCursor> cursor() const override;
    QString feedback() const override;

 private:
    struct Item {
        PCElement::Ptr element;
        double rotation = 0;  // at the press
    };

    CanvasScene m_scene;
    EditTarget m_target;
    QPointF m_centre;
    QPointF m_pointer;
    double m_turned = 0;  // by the pointer, over any number of turns
    double m_applied = 0;
    std::vector<Item> m_items;

    double turnInSteps() const;
};

}  // namespace tweenery
