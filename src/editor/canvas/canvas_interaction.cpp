#include "editor/canvas/canvas_interaction.h"

#include "editor/canvas/anchor_point_gesture.h"
#include "editor/canvas/canvas_resize_gesture.h"
#include "editor/canvas/hand_gesture.h"
#include "editor/canvas/marquee_gesture.h"
#include "editor/canvas/move_gesture.h"
#include "editor/canvas/press_record.h"
#include "editor/canvas/press_step.h"
#include "editor/canvas/rotate_gesture.h"
#include "editor/canvas/scale_gesture.h"

namespace tweenery {
namespace {

constexpr std::chrono::milliseconds kGuidesStay(1000);

bool isCanvasEdge(PCEditorLocation location) {
    return location >= PCEditorLocationCanvasLeft && location <= PCEditorLocationCanvasBottomLeft;
}

// Where Shift adds to the selection. On a handle it belongs to the drag.
bool togglesWithShift(PCEditorLocation location) {
    return location == PCEditorLocationNone || location == PCEditorLocationDrag ||
           location == PCEditorLocationRotate;
}

}  // namespace

struct CanvasInteraction::Press {
    Qt::MouseButton button;
    EditTarget target;
    CanvasCursor cursor;
    PointerEvent began;
    PointerEvent last;
    ViewBeforePress before;
    PressStep step;
    MakeGesture makeGesture = {};  // what the first drag starts
    std::optional<SetupBeforeDrag> setupBefore = {};
    std::unique_ptr<CanvasGesture> gesture = {};
};

CanvasInteraction::CanvasInteraction(const CanvasScene& scene, CanvasInteractionHost& host)
    : m_scene(scene),
      m_host(host),
      m_hideGuides([&host](std::chrono::milliseconds delay,
                           std::function<void()> call) { host.callLater(delay, std::move(call)); },
                   kGuidesStay,
                   [this] {
                       m_scene.editor.hideGuides();
                       m_host.canvasNeedsDisplay();
                   }) {}

CanvasInteraction::~CanvasInteraction() = default;

// Tools.

void CanvasInteraction::setTool(PCSelectionState tool) {
    if (isPressed() || tool == m_tools.current()) { return; }
    m_tools.choose(tool);
    m_host.canvasToolDidChange();
}

void CanvasInteraction::setSpaceIsDown(bool isDown) {
    m_spaceIsDown = isDown;
    reconcileTools();
}

void CanvasInteraction::reconcileTools() {
    if (isPressed()) { return; }
    const PCSelectionState before = m_tools.current();
    m_tools.hold(m_spaceIsDown, m_controlIsDown);
    if (m_tools.current() != before) { m_host.canvasToolDidChange(); }
}

void CanvasInteraction::modifiersChanged(Qt::KeyboardModifiers modifiers) {
    m_controlIsDown = modifiers.testFlag(Qt::ControlModifier);
    reconcileTools();
    if (!m_press || !m_press->gesture || m_press->last.modifiers == modifiers) { return; }
    PointerEvent event = m_press->last;
    event.modifiers = modifiers;
    drag(event);
}

void CanvasInteraction::focusLost() {
    lost();
    m_spaceIsDown = m_controlIsDown = false;
    reconcileTools();
}

// The press.

EditTarget CanvasInteraction::editTarget() const {
    return {m_host.editTime(), m_host.additiveModeIsOn()};
}

void CanvasInteraction::press(const PointerEvent& event) {
    if (isPressed()) { return; }
    m_controlIsDown = event.isHeld(Qt::ControlModifier);
    reconcileTools();
    if (event.button == Qt::MiddleButton) {
        begin(event);
        startGesture(std::make_unique<HandGesture>(m_scene, event));
    } else if (event.button == Qt::LeftButton) {
        m_host.endPlaybackAtTimeShown();
        begin(event);
        beginLeftPress(event);
    }
    m_host.canvasNeedsDisplay();
}

void CanvasInteraction::begin(const PointerEvent& event) {
    m_press.reset(new Press{event.button, editTarget(), cursorAt(event.viewPoint), event, event,
                            ViewBeforePress(m_scene), PressStep(m_scene.project.undoManager())});
}

void CanvasInteraction::beginLeftPress(const PointerEvent& event) {
    if (tool() == PCSelectionStateHand) {
        return startGesture(std::make_unique<HandGesture>(m_scene, event));
    }
    const PCElement::Ptr element = elementAt(event.viewPoint);
    const PCEditorLocation location = m_scene.editor.locationAtPosition(
        m_scene.canvasPoint(event), element ? PCLayer::of(*element) : nullptr,
        m_scene.selection.selectedElementsCount());
    if (location == PCEditorLocationAnchorPoint) {
        m_press->makeGesture = gestureFor(location, element);
        return;
    }
    if (movesAnchorPointAtOnce(event)) {
        const PCElement::Ptr moved = m_scene.selection.firstSelectedElement();
        m_press->step.setActionName(anchorPointActionName());
        moved->setAnchorPoint(anchorPointAt(m_scene.canvasPoint(event), *moved));
        return;
    }
    if (!isCanvasEdge(location)) {
        changeSelection(element, event.isHeld(Qt::ShiftModifier) && togglesWithShift(location));
    }
    m_press->makeGesture = gestureFor(location, element);
}

bool CanvasInteraction::movesAnchorPointAtOnce(const PointerEvent& event) const {
    return event.isHeld(Qt::AltModifier) && m_press->target.when.isSetup() &&
           m_scene.selection.selectedElementsCount() == 1;
}

void CanvasInteraction::changeSelection(const PCElement::Ptr& pressed, bool toggles) {
    PCElementSelectionManager& selection = m_scene.selection;
    const bool isSelected = pressed && selection.elementIsSelected(*pressed);
    if (toggles && isSelected) {
        selection.deselectElement(pressed);
    } else if (toggles && pressed) {
        selection.selectElement(pressed);
    } else if (!toggles && !pressed) {
        selection.deselectAllElements();
    } else if (!toggles && !isSelected) {
        selection.selectElements({pressed});
    }
}

PCElement::Ptr CanvasInteraction::elementAt(QPointF viewPoint) {
    const PCLayer* layer = m_scene.editor.layerAtLocationInEditor(
        m_scene.viewport.documentPoint(viewPoint), m_scene.selection.selectedElements(),
        tool() == PCSelectionStateDirect);
    return layer ? layer->element()->shared_from_this() : nullptr;
}

CanvasInteraction::MakeGesture CanvasInteraction::gestureFor(PCEditorLocation location,
                                                             const PCElement::Ptr& element) {
    return [this, location, element]() -> std::unique_ptr<CanvasGesture> {
        const PointerEvent& began = m_press->began;
        const EditTarget& target = m_press->target;
        if (location == PCEditorLocationNone) {
            return std::make_unique<MarqueeGesture>(m_scene, began);
        }
        if (isCanvasEdge(location)) {
            return std::make_unique<CanvasResizeGesture>(m_scene, location, began);
        }
        if (location == PCEditorLocationDrag) {
            return std::make_unique<MoveGesture>(m_scene, target, began, m_hideGuides);
        }
        if (location == PCEditorLocationRotate) {
            return std::make_unique<RotateGesture>(m_scene, target, began);
        }
        if (location == PCEditorLocationAnchorPoint) {
            return std::make_unique<AnchorPointGesture>(m_scene, target);
        }
        return std::make_unique<ScaleGesture>(m_scene, target, element, location);
    };
}

void CanvasInteraction::startGesture(std::unique_ptr<CanvasGesture> gesture) {
    m_press->setupBefore.emplace(m_scene);
    m_press->step.setActionName(gesture->actionName());
    m_press->gesture = std::move(gesture);
}

void CanvasInteraction::drag(const PointerEvent& event) {
    m_controlIsDown = event.isHeld(Qt::ControlModifier);
    reconcileTools();
    if (!m_press) { return; }
    if (!m_press->gesture) {
        if (!m_press->makeGesture || event.viewPoint == m_press->began.viewPoint) { return; }
        startGesture(m_press->makeGesture());
    }
    m_press->last = event;
    m_press->gesture->drag(event);
    m_host.canvasNeedsDisplay();
}

void CanvasInteraction::release(const PointerEvent& event) {
    if (m_press && event.button == m_press->button) {
        m_controlIsDown = event.isHeld(Qt::ControlModifier);
        end();
    }
}

void CanvasInteraction::lost() {
    if (m_press) { end(); }
}

void CanvasInteraction::end() {
    const bool ledBack = m_press->step.hasEdits() && m_press->target.when.isSetup() &&
                         m_press->setupBefore && m_press->setupBefore->isWhatThereIs(m_scene);
    if (ledBack) {
        // Taking back copies that came and went empties the selection.
        const PCElement::Elements selected = m_scene.selection.selectedElements();
        m_press->step.cancel();
        selectOnly(m_scene.selection, selected);
    } else {
        m_press->step.end();
    }
    m_press.reset();
    reconcileTools();
    m_host.canvasNeedsDisplay();
}

bool CanvasInteraction::cancel() {
    if (!m_press) { return false; }
    m_press->step.cancel();
    const ViewBeforePress before = m_press->before;
    m_press.reset();
    m_hideGuides.cancel();
    m_scene.editor.hideGuides();
    before.restore(m_scene);
    reconcileTools();
    m_host.canvasNeedsDisplay();
    return true;
}

bool CanvasInteraction::pressForContextMenu(const PointerEvent& event) {
    if (isPressed()) { return false; }
    m_host.endPlaybackAtTimeShown();
    changeSelection(elementAt(event.viewPoint), false);
    m_host.canvasNeedsDisplay();
    return true;
}

// What shows.

CanvasCursor CanvasInteraction::cursorAt(QPointF viewPoint) const {
    if (m_press) {
        const auto own = m_press->gesture ? m_press->gesture->cursor() : std::nullopt;
        return own.value_or(m_press->cursor);
    }
    return cursorWhileHovering(m_scene.editor, m_scene.project, m_scene.selection, tool(),
                               m_scene.viewport.canvasPoint(viewPoint), m_host.editTime())
        .value_or(handCursor());
}

QString CanvasInteraction::feedback() const {
    return m_press && m_press->gesture ? m_press->gesture->feedback() : QString();
}

}  // namespace tweenery
