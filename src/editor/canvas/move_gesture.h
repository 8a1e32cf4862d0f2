#pragma once

#include <optional>
#include <vector>

#include "editor/canvas/canvas_gesture.h"
#include "editor/canvas/delayed_action.h"

namespace tweenery {

/// Moves the selected elements with the pointer. In setup mode Option leaves them where they were
/// and moves copies, as long as it is down, and a single one catches on the canvas's edges and
/// middle. Shift keeps to one axis, decided anew each time it goes down. Guides show where the
/// elements stand aligned, and for a while afterwards. Nothing selected: nothing happens.
class MoveGesture : public CanvasGesture {
 public:
    /// `hideGuides` outlives this.
    MoveGesture(const CanvasScene& scene, EditTarget target, const PointerEvent& press,
                DelayedAction& hideGuides);
    ~MoveGesture() override { m_hideGuides.schedule(); }

    void drag(const PointerEvent& event) override;
    QString actionName() const override;
    QString feedback() const override;

 private:
    enum class Axis { X, Y };
    struct Item {
        PCElement::Ptr element;
        QPointF place;   // at the press
        QPointF alongX;  // what a point along the canvas's axes is in the parent
        QPointF alongY;
        PCElement::Ptr copy = {};  // null while there is none
    };

    CanvasScene m_scene;
    EditTarget m_target;
    DelayedAction& m_hideGuides;
    QPointF m_pressedAt;  // of the canvas
    QPointF m_pressedAtOnScreen;
    QPointF m_pointer;
    QPointF m_moved;  // of the canvas, since the press
    std::optional<Axis> m_lockedAxis;
    std::optional<QRectF> m_box;  // around what is selected, at the press
    std::vector<Item> m_items;
    bool m_isCopying = false;

    void addItem(const PCElement::Ptr& element, double share);
    void setIsCopying(bool copies);
    void beginCopying();
    void endCopying();
    QPointF snapped(QPointF pointer) const;
    QPointF locked(QPointF moved, const PointerEvent& event);
    void place(const Item& item) const;
};

}  // namespace tweenery
