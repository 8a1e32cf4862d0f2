#include "editor/canvas/rotate_gesture.h"

#include <cmath>
#include <numbers>

#include "editor/canvas/feedback_text.h"
#include "editor/canvas/rotation_calculator.h"
#include "editor/canvas/timed_element.h"

using namespace Qt::StringLiterals;

namespace tweenery {

RotateGesture::RotateGesture(const CanvasScene& scene, EditTarget target, const PointerEvent& press)
    : m_scene(scene),
      m_target(target),
      m_centre(scene.project.eventAnchorPoint()),
      m_pointer(scene.canvasPoint(press)) {
    m_scene.anchorPoint.setInEventLoop(true);
    for (const PCElement::Ptr& element : scene.selection.selectedElements()) {
        m_items.push_back({element, TimedElement(*element, target.when).zRotation()});
    }
}

// How far all turn, so that the first stands at the multiple nearest to where it would be.
double RotateGesture::turnInSteps() const {
    constexpr double kStep = std::numbers::pi / 12;
    const double first = m_items.front().rotation;
    return std::round((first + m_turned) / kStep) * kStep - first;
}

void RotateGesture::drag(const PointerEvent& event) {
    const QPointF pointer = m_scene.canvasPoint(event);
    if (pointer == m_centre || m_items.empty()) { return; }  // no angle, or nothing to turn
    m_turned += PCRotationCalculator::radiansBetweenStartPoint(m_pointer, pointer, m_centre);
    m_pointer = pointer;
    const double turn = event.isHeld(Qt::ShiftModifier) ? turnInSteps() : m_turned;
    if (turn == m_applied) { return; }  // to write what stands there would key it
    m_applied = turn;
    for (const Item& item : m_items) {
        TimedElement(*item.element, m_target.when).setZRotation(item.rotation + turn);
    }
}

QString RotateGesture::actionName() const {
    return u"Rotate"_s;
}

std::optional<CanvasCursor> RotateGesture::cursor() const {
    const auto angle = static_cast<double>(rotationFromAnchorPoint(m_centre, m_pointer));
    return rotateCursorRotatedBy(angle, m_target.additive);
}

QString RotateGesture::feedback() const {
    if (m_items.empty()) { return {}; }
    return angleText(TimedElement(*m_items.front().element, m_target.when).zRotation());
}

}  // namespace tweenery
