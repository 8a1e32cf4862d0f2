#include "editor/canvas/canvas_resize_gesture.h"

#include "editor/canvas/feedback_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

// In the canvas's coordinates, whose y runs down, "top" is the far edge.
CanvasResizeGesture::CanvasResizeGesture(const CanvasScene& scene, PCEditorLocation location,
                                         const PointerEvent& press)
    : m_scene(scene),
      m_pressedAt(press.viewPoint),
      m_grabbed(scene.canvasPoint(press)),
      m_size(scene.project.canvas()->size()),
      m_scrollOrigin(scene.viewport.scrollOrigin()) {
    switch (location) {
        case PCEditorLocationCanvasLeft:
            m_horizontal = Side::Origin;
            break;
        case PCEditorLocationCanvasRight:
            m_horizontal = Side::Far;
            break;
        case PCEditorLocationCanvasTop:
            m_vertical = Side::Far;
            break;
        case PCEditorLocationCanvasBottom:
            m_vertical = Side::Origin;
            break;
        case PCEditorLocationCanvasTopLeft:
            m_horizontal = m_vertical = Side::Origin;
            break;
        case PCEditorLocationCanvasTopRight:
            m_horizontal = Side::Far;
            m_vertical = Side::Origin;
            break;
        case PCEditorLocationCanvasBottomLeft:
            m_horizontal = Side::Origin;
            m_vertical = Side::Far;
            break;
        case PCEditorLocationCanvasBottomRight:
            m_horizontal = m_vertical = Side::Far;
            break;
        default:
            break;
    }
}

double CanvasResizeGesture::growth(Side side, double pointer, double length) {
    switch (side) {
        case Side::Origin:
            return -pointer;
        case Side::Far:
            return pointer - length;
        case Side::None:
            break;
    }
    return 0;
}

// By the way of the pointer since the press, and not by where it is on the canvas now: at an end of
// the document the canvas cannot follow the pointer, and every event would add to the size.
void CanvasResizeGesture::drag(const PointerEvent& event) {
    const double magnification = m_scene.viewport.magnificationFactor();
    const QPointF pointer = m_grabbed + (event.viewPoint - m_pressedAt) / magnification;
    const QPointF grown(growth(m_horizontal, pointer.x(), m_size.width()),
                        growth(m_vertical, pointer.y(), m_size.height()));
    const QSizeF size = m_size + QSizeF(grown.x(), grown.y());
    m_scene.project.canvas()->setSize(size.expandedTo({1, 1}));
    const QPointF scrolled(m_horizontal == Side::Origin ? grown.x() : 0,
                           m_vertical == Side::Origin ? grown.y() : 0);
    m_scene.viewport.scrollTo(m_scrollOrigin + scrolled * magnification);
}

QString CanvasResizeGesture::actionName() const {
    return u"Canvas Size"_s;
}

QString CanvasResizeGesture::feedback() const {
    return sizeText(m_scene.project.canvas()->size());
}

}  // namespace tweenery
