#include "editor/canvas/anchor_point_gesture.h"

#include "editor/canvas/element_space.h"
#include "editor/canvas/feedback_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

QString anchorPointActionName() {
    return u"Anchor Point"_s;
}

QPointF anchorPointAt(QPointF canvasPoint, const PCElement& element) {
    const QPointF own = convertPoint(canvasPoint, *element.project()->canvas(), element);
    const QSizeF size = element.size();
    return {size.width() == 0 ? element.anchorPoint().x() : own.x() / size.width(),
            size.height() == 0 ? element.anchorPoint().y() : own.y() / size.height()};
}

PCElement::Ptr AnchorPointGesture::edited() const {
    const bool isEdited = m_target.when.isSetup() && !m_target.additive &&
                          m_scene.selection.selectedElementsCount() == 1;
    return isEdited ? m_scene.selection.firstSelectedElement() : nullptr;
}

void AnchorPointGesture::drag(const PointerEvent& event) {
    const QPointF pointer = m_scene.canvasPoint(event);
    if (const PCElement::Ptr element = edited()) {
        element->setAnchorPoint(anchorPointAt(pointer, *element));
    }
    m_scene.anchorPoint.setMovedEventAnchorPoint(pointer);
}

QString AnchorPointGesture::actionName() const {
    return anchorPointActionName();
}

QString AnchorPointGesture::feedback() const {
    const PCElement::Ptr element = edited();
    return element ? percentText(element->anchorPoint()) : QString();
}

}  // namespace tweenery
