#include "editor/canvas/keyboard_edits.h"

#include <algorithm>

#include "editor/canvas/anchor_point_gesture.h"
#include "editor/canvas/opacity_calculator.h"
#include "editor/canvas/position_calculator.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// False where it changed nothing, and left no step.
template <typename Edit>
bool doAsOneStep(PCProject& project, const QString& name, Edit edit) {
    UndoManager& undoManager = project.undoManager();
    undoManager.endEvent();
    const int64_t before = undoManager.changeCount();
    const UndoGesture gesture(undoManager);
    edit();
    const bool isStep = undoManager.changeCount() != before;
    if (isStep) { undoManager.setActionName(name); }
    return isStep;
}

}  // namespace

std::optional<QPointF> nudgeForKey(int key, Qt::KeyboardModifiers modifiers) {
    const double points = modifiers.testFlag(Qt::ShiftModifier) ? 10 : 1;
    switch (key) {
        case Qt::Key_Left:
            return QPointF(-points, 0);
        case Qt::Key_Right:
            return QPointF(points, 0);
        case Qt::Key_Up:
            return QPointF(0, -points);
        case Qt::Key_Down:
            return QPointF(0, points);
        default:
            return std::nullopt;
    }
}

// Nudges.

bool NudgeSeries::goesOn(const PCElement::Elements& elements, EditTarget target) const {
    constexpr double kPause = 1;
    return m_changeCount == m_project.undoManager().changeCount() && target == m_target &&
           elements == m_elements && m_clock.now() - m_lastTime < kPause;
}

void NudgeSeries::nudge(QPointF distance, EditTarget target) {
    UndoManager& undoManager = m_project.undoManager();
    undoManager.endEvent();
    const PCElement::Elements elements = m_selection.elementsToUpdate(target.additive);
    if (goesOn(elements, target)) {
        undoManager.undo();
        m_distance += distance;
    } else {
        m_distance = distance;
    }
    const bool isStep = doAsOneStep(m_project, u"Move"_s, [&] {
        PCPositionCalculator::updateElements(elements, target.additive, m_distance, target.when);
    });
    m_target = target;
    m_elements = elements;
    m_changeCount = isStep ? undoManager.changeCount() : kNoStep;
    m_lastTime = m_clock.now();
}

// Opacity.

std::optional<double> opacityForDigitKey(uint32_t nativeScanCode, const QString& text) {
    constexpr uint32_t kFirstCode = 10;  // of the key of 1; that of 0 is the tenth
    uint32_t tenths = nativeScanCode - kFirstCode + 1;
    if (nativeScanCode < kFirstCode || tenths > 10) {
        if (text.size() != 1 || text[0] < u'0' || text[0] > u'9') { return std::nullopt; }
        tenths = text[0] == u'0' ? 10 : text[0].unicode() - u'0';
    }
    return tenths / 10.0;
}

void setOpacityOfSelection(const CanvasScene& scene, double opacity, EditTarget target) {
    doAsOneStep(scene.project, u"Opacity"_s, [&] {
        PCOpacityCalculator::updateElementsWithValue(
            scene.selection.elementsToUpdate(target.additive), target.additive, opacity,
            target.when, scene.project.eventAnchorPoint());
    });
}

// Anchor points.

void placeAnchorPoints(const CanvasScene& scene, QPointF unitPoint) {
    doAsOneStep(scene.project, anchorPointActionName(), [&] {
        for (const PCElement::Ptr& element : scene.selection.selectedElements()) {
            element->setAnchorPoint(unitPoint);
        }
    });
}

// Selection.

PCElement::Ptr elementAfterSelection(const CanvasScene& scene, bool isDirect, bool backward) {
    const PCElement& canvas = *scene.project.canvas();
    PCElement::Elements order = scene.project.heirarchyWithRoot(canvas);
    const PCElement::Ptr last = scene.selection.lastSelectedElement();
    const auto isInReach = [&](const PCElement::Ptr& element) {
        const bool isOnLevel = isDirect || element->parentElement() == &canvas;
        return element == last || (isOnLevel && !element->locked());
    };
    std::erase_if(order, [&](const PCElement::Ptr& element) { return !isInReach(element); });
    if (backward) { std::reverse(order.begin(), order.end()); }
    if (order.empty()) { return nullptr; }
    const auto place = std::find(order.begin(), order.end(), last);
    const bool isAtEnd = place == order.end() || place + 1 == order.end();
    const PCElement::Ptr next = isAtEnd ? order.front() : *(place + 1);
    return next->locked() ? nullptr : next;
}

DropTarget dropTarget(const CanvasScene& scene) {
    const PCElement::Ptr first = scene.selection.firstSelectedElement();
    if (!first) { return {scene.project.canvas(), scene.project.canvas()->children().size()}; }
    return {first->parentElement()->shared_from_this(), static_cast<size_t>(first->index()) + 1};
}

}  // namespace tweenery
