#include "editor/canvas/scale_gesture.h"

#include <cmath>

#include "editor/canvas/feedback_text.h"
#include "editor/canvas/timed_element.h"
#include "scene/affine.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

double rotationOnCanvas(const PCElement& element, EditTime when) {
    if (when.isSetup()) { return element.unroundedCanvasRotation(); }
    return static_cast<double>(element.canvasRotationAtTimeInMS(when.timeInMS()));
}

// The factor of one axis: `distance` from the fixed edge to the handle, along the element's axis.
double factorOfHandle(double fixedUnit, double distance, double length, double present) {
    if (fixedUnit == 0.5 || length == 0) { return present; }
    return (fixedUnit == 0 ? distance : -distance) / length;
}

}  // namespace

QPointF resizeAnchorForEventLocation(PCEditorLocation handle) {
    switch (handle) {
        case PCEditorLocationHandleTopLeft:
            return {1, 1};
        case PCEditorLocationHandleTopCenter:
            return {0.5, 1};
        case PCEditorLocationHandleTopRight:
            return {0, 1};
        case PCEditorLocationHandleCenterLeft:
            return {1, 0.5};
        case PCEditorLocationHandleCenterRight:
            return {0, 0.5};
        case PCEditorLocationHandleBottomLeft:
            return {1, 0};
        case PCEditorLocationHandleBottomCenter:
            return {0.5, 0};
        default:
            return {0, 0};
    }
}

ScaleGesture::ScaleGesture(const CanvasScene& scene, EditTarget target, PCElement::Ptr element,
                           PCEditorLocation handle)
    : m_scene(scene),
      m_target(target),
      m_element(std::move(element)),
      m_fixedUnitPoint(resizeAnchorForEventLocation(handle)),
      m_rotationOnCanvas(rotationOnCanvas(*m_element, target.when)),
      m_scale(TimedElement(*m_element, target.when).scale()) {
    const QSizeF size = m_element->size();
    m_fixedPoint = scene.editor.convertPointToCanvasFromLayer(
        {m_fixedUnitPoint.x() * size.width(), m_fixedUnitPoint.y() * size.height()},
        *PCLayer::of(*m_element));
    for (const PCElement::Ptr& selected : scene.selection.selectedElements()) {
        const TimedElement timed(*selected, target.when);
        m_items.push_back({selected, timed.scale(), timed.place(), timed.zRotation(),
                           selected->scale().x() / selected->scale().y()});
    }
}

// In the element's axes, but in scene points, whatever the groups around it do.
QPointF ScaleGesture::scaleOfHandleAt(QPointF pointer) const {
    const QPointF way = scaleThenTurn({1, 1}, -m_rotationOnCanvas).map(pointer - m_fixedPoint);
    const QSizeF size = m_element->size();
    return {factorOfHandle(m_fixedUnitPoint.x(), way.x(), size.width(), m_scale.x()),
            factorOfHandle(m_fixedUnitPoint.y(), way.y(), size.height(), m_scale.y())};
}

QPointF ScaleGesture::scaled(const Item& item, QPointF difference, bool keepsRatio) const {
    QPointF scale = item.scale + difference;
    if (keepsRatio) {
        const bool followsY = m_fixedUnitPoint.x() == 0.5 || scale.x() == item.scale.x();
        scale = followsY ? QPointF(item.ratio * scale.y(), scale.y())
                         : QPointF(scale.x(), scale.x() / item.ratio);
    }
    if (item.element->size().width() == 0) { scale.setX(item.scale.x()); }
    if (item.element->size().height() == 0) { scale.setY(item.scale.y()); }
    const bool isNumber = std::isfinite(scale.x()) && std::isfinite(scale.y());
    return isNumber ? scale : item.scale;
}

// How far the element has to move, so that its fixed point stays.
QPointF ScaleGesture::shiftThatHolds(const Item& item, QPointF scale) const {
    const QSizeF size = item.element->size();
    const QPointF fixed =
        QPointF(m_fixedUnitPoint.x() * size.width(), m_fixedUnitPoint.y() * size.height()) -
        item.element->anchorPointInPts();
    return scaleThenTurn(item.scale, item.rotation).map(fixed) -
           scaleThenTurn(scale, item.rotation).map(fixed);
}

void ScaleGesture::drag(const PointerEvent& event) {
    const QPointF difference = scaleOfHandleAt(m_scene.canvasPoint(event)) - m_scale;
    const bool staysAtAnchor = event.isHeld(Qt::AltModifier) || m_items.size() > 1;
    for (const Item& item : m_items) {
        const bool keepsRatio = item.element->scalesLocked() || event.isHeld(Qt::ShiftModifier);
        const QPointF scale = scaled(item, difference, keepsRatio);
        TimedElement timed(*item.element, m_target.when);
        timed.setScale(scale);
        timed.setPlace(staysAtAnchor ? item.place : item.place + shiftThatHolds(item, scale));
    }
}

QString ScaleGesture::actionName() const {
    return u"Scale"_s;
}

QString ScaleGesture::feedback() const {
    return percentText(TimedElement(*m_element, m_target.when).scale());
}

}  // namespace tweenery
