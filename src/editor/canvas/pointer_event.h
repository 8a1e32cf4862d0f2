#pragma once

#include <QPointF>
#include <Qt>

namespace tweenery {

/// What the canvas's widget tells of the pointer: where it is, in points from the view's top left
/// and on the screen, and what is held.
struct PointerEvent {
    QPointF viewPoint;
    QPointF screenPoint;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    Qt::MouseButton button = Qt::LeftButton;

    bool isHeld(Qt::KeyboardModifier modifier) const { return modifiers.testFlag(modifier); }
};

}  // namespace tweenery
