#pragma once

#include <vector>

#include "editor/canvas/canvas_gesture.h"

namespace tweenery {

/// Selects these and nothing else, unless it is so already.
void selectOnly(PCElementSelectionManager& selection, const PCElement::Elements& elements);

/// What may change during a press and undo does not bring back: the selection, the part of the
/// document that shows, and the event anchor point.
class ViewBeforePress {
 public:
    explicit ViewBeforePress(const CanvasScene& scene);
    void restore(const CanvasScene& scene) const;

 private:
    PCElement::Elements m_selection;
    double m_magnification;
    QPointF m_scrollOrigin;
    QPointF m_anchorPoint;
};

/// How the selected elements and the canvas stood when a drag began, to tell one that led back to
/// its start, which is no edit.
class SetupBeforeDrag {
 public:
    explicit SetupBeforeDrag(const CanvasScene& scene);
    /// By the setup state alone, to the bit.
    bool isWhatThereIs(const CanvasScene& scene) const;

 private:
    struct Item {
        PCElement::Ptr element;
        QPointF position, scale, anchorPoint;
        double rotation = 0;

        explicit Item(const PCElement::Ptr& element);
        bool operator==(const Item& other) const;
    };

    QSizeF m_canvasSize;
    std::vector<Item> m_items;
};

}  // namespace tweenery
