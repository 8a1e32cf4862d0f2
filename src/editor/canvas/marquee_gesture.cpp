#include "editor/canvas/marquee_gesture.h"

namespace tweenery {

void MarqueeGesture::drag(const PointerEvent& event) {
    const QRectF rect = QRectF(m_start, m_scene.canvasPoint(event)).normalized();
    m_scene.editor.updateSelectionRect(rect);
    PCElement::Elements hit = m_scene.editor.elementsHitInSelectionRect(rect);
    std::erase_if(hit, [](const PCElement::Ptr& element) { return element->locked(); });
    if (hit != m_scene.selection.selectedElements()) { m_scene.selection.selectElements(hit); }
}

}  // namespace tweenery
