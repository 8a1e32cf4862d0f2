#include "editor/canvas/move_gesture.h"

#include <cmath>
#include <cstdlib>

#include "editor/canvas/additive_mode.h"
#include "editor/canvas/element_boxes.h"
#include "editor/canvas/element_space.h"
#include "editor/canvas/feedback_text.h"
#include "editor/canvas/snapping.h"
#include "editor/canvas/timed_element.h"

using namespace Qt::StringLiterals;

namespace tweenery {

MoveGesture::MoveGesture(const CanvasScene& scene, EditTarget target, const PointerEvent& press,
                         DelayedAction& hideGuides)
    : m_scene(scene),
      m_target(target),
      m_hideGuides(hideGuides),
      m_pressedAt(scene.canvasPoint(press)),
      m_pressedAtOnScreen(press.screenPoint),
      m_pointer(m_pressedAt),
      m_box(boxOfElementsOnScreen(scene.selection.selectedElements())) {
    // Those of the drag before, which would still be hidden in the middle of this one.
    m_hideGuides.cancel();
    scene.editor.hideGuides();
    const PCElement::Elements elements = scene.selection.elementsToUpdate(target.additive);
    AdditiveShare shares(elements, target.additive);
    for (const PCElement::Ptr& element : elements) {
        addItem(element, shares.next());
    }
}

// Nothing that a move does changes how a parent turns and scales, so it is asked once.
void MoveGesture::addItem(const PCElement::Ptr& element, double share) {
    const PCElement* parent = element->parentElement();
    if (!parent) { return; }
    const PCElement& canvas = *m_scene.project.canvas();
    const QPointF origin = convertPoint({}, canvas, *parent);
    const QPointF alongX = share * (convertPoint({1, 0}, canvas, *parent) - origin);
    const QPointF alongY = share * (convertPoint({0, 1}, canvas, *parent) - origin);
    // Within a group that is scaled to nothing, nothing can be moved.
    if (!std::isfinite(alongX.x() + alongX.y() + alongY.x() + alongY.y())) { return; }
    m_items.push_back({element, TimedElement(*element, m_target.when).place(), alongX, alongY});
}

void MoveGesture::drag(const PointerEvent& event) {
    if (m_items.empty()) { return; }
    const QPointF pointer = m_scene.canvasPoint(event);
    const bool isInSetup = m_target.when.isSetup() && !m_target.additive;
    if (isInSetup) { setIsCopying(event.isHeld(Qt::AltModifier)); }
    const bool snaps = isInSetup && m_box && m_scene.selection.selectedElementsCount() == 1 &&
                       PCAppPreferences::showsGuidelines();
    const QPointF wanted = snaps ? snapped(pointer) : m_moved + (pointer - m_pointer);
    m_pointer = pointer;
    m_moved = locked(wanted, event);
    for (const Item& item : m_items) {
        place(item);
    }
    if (m_box) { m_scene.editor.layoutGuidesForBoundingBox(m_box->translated(m_moved)); }
}

void MoveGesture::place(const Item& item) const {
    const QPointF place = item.place + m_moved.x() * item.alongX + m_moved.y() * item.alongY;
    TimedElement(item.copy ? *item.copy : *item.element, m_target.when).setPlace(place);
}

// By where the pointer wants the box, so that it gets loose again.
QPointF MoveGesture::snapped(QPointF pointer) const {
    const QPointF delta = m_moved - (pointer - m_pressedAt);
    return m_moved - deltaSnappedToGuides(delta, m_box->translated(m_moved),
                                          m_scene.project.canvas()->size(),
                                          m_scene.viewport.magnificationFactor());
}

QPointF MoveGesture::locked(QPointF moved, const PointerEvent& event) {
    if (!event.isHeld(Qt::ShiftModifier)) {
        m_lockedAxis.reset();
        return moved;
    }
    if (!m_lockedAxis) {
        const QPointF way = event.screenPoint - m_pressedAtOnScreen;
        const int across = std::abs(static_cast<int>(way.x()));
        const int down = std::abs(static_cast<int>(way.y()));
        m_lockedAxis = down >= across ? Axis::X : Axis::Y;
    }
    return *m_lockedAxis == Axis::X ? QPointF(0, moved.y()) : QPointF(moved.x(), 0);
}

// Copies.

void MoveGesture::setIsCopying(bool copies) {
    if (copies == m_isCopying) { return; }
    m_isCopying = copies;
    if (copies) {
        beginCopying();
    } else {
        endCopying();
    }
}

void MoveGesture::beginCopying() {
    PCElement::Elements elements;
    for (const Item& item : m_items) {
        elements.push_back(item.element);
    }
    const PCElement::Elements copies = m_scene.project.duplicateItems(elements, 0);
    for (size_t i = 0; i < m_items.size(); ++i) {
        m_items[i].copy = copies[i];
        m_items[i].element->setPosition(m_items[i].place);
    }
    m_scene.selection.selectElements(copies);
}

void MoveGesture::endCopying() {
    PCElement::Elements elements;
    for (Item& item : m_items) {
        std::exchange(item.copy, nullptr)->removeFromParentElement();
        place(item);
        elements.push_back(item.element);
    }
    m_scene.selection.selectElements(elements);
}

QString MoveGesture::actionName() const {
    return u"Move"_s;
}

QString MoveGesture::feedback() const {
    return m_items.empty() ? QString() : distanceText(m_moved);
}

}  // namespace tweenery
