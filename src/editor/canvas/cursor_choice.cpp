#include "editor/canvas/cursor_choice.h"

#include <QtMath>
#include <cmath>

#include "editor/canvas/timed_element.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr QPoint kArrowHotSpot(5, 5);
constexpr QPoint kHandHotSpot(0, 0);

QString additiveName(const QString& name, bool isAdditive) {
    return isAdditive ? name + u"_additive"_s : name;
}

// The selected element whose rotation band is under the pointer.
PCElement::Ptr elementWithBandAt(QPointF pointer, const PCElementSelectionManager& selection) {
    for (const PCElement::Ptr& element : selection.selectedElements()) {
        const PCLayer* layer = PCLayer::of(*element);
        if (layer) { layer->updateIfNeeded(); }
        PCBorderLayer* border = layer ? layer->borderLayer() : nullptr;
        if (border && border->hitTest(pointer)) { return element; }
    }
    return nullptr;
}

}  // namespace

CanvasCursor handCursor() {
    return {u"cursor_hand"_s, 0, kHandHotSpot};
}

CanvasCursor handClosedCursor() {
    return {u"cursor_hand_closed"_s, 0, kHandHotSpot};
}

CanvasCursor transformCursorRotatedBy(double degrees, bool isAdditive) {
    return {additiveName(u"cursor_transform"_s, isAdditive), degrees};
}

CanvasCursor rotateCursorRotatedBy(double degrees, bool isAdditive) {
    constexpr double kAngleOfImage = 45;  // at which its arrow is drawn
    return {additiveName(u"cursor_rotate"_s, isAdditive), degrees - kAngleOfImage};
}

CanvasCursor selectionCursorForState(PCSelectionState state, bool isAdditive) {
    switch (state) {
        case PCSelectionStateHand:
            return handCursor();
        case PCSelectionStateDirect:
            return {additiveName(u"cursor_direct"_s, isAdditive), 0, kArrowHotSpot};
        case PCSelectionStateSelect:
            break;
    }
    return {additiveName(u"cursor_select"_s, isAdditive), 0, kArrowHotSpot};
}

std::optional<CanvasCursor> cursorForEventLocation(PCEditorLocation location,
                                                   double netRotationOfLayer, bool isAdditive,
                                                   bool isScaleInverted,
                                                   float rotationFromAnchorPoint,
                                                   PCSelectionState state) {
    const auto transform = [&](double degrees) {
        return transformCursorRotatedBy(netRotationOfLayer + degrees, isAdditive);
    };
    // A mirrored element has its corners the other way round.
    const double side = isScaleInverted ? 1 : -1;
    switch (location) {
        case PCEditorLocationNone:
        case PCEditorLocationDrag:
            return selectionCursorForState(state, isAdditive);
        case PCEditorLocationCanvasLeft:
        case PCEditorLocationCanvasRight:
            return CanvasCursor{u"HorizontalCursor"_s};
        case PCEditorLocationCanvasTop:
        case PCEditorLocationCanvasBottom:
            return CanvasCursor{u"VerticalCursor"_s};
        case PCEditorLocationCanvasTopRight:
        case PCEditorLocationCanvasBottomLeft:
            return CanvasCursor{u"UpwardDiagonalCursor"_s};
        case PCEditorLocationCanvasTopLeft:
        case PCEditorLocationCanvasBottomRight:
            return CanvasCursor{u"DownwardDiagonalCursor"_s};
        case PCEditorLocationHandleTopLeft:
        case PCEditorLocationHandleBottomRight:
            return transform(side * 45);
        case PCEditorLocationHandleTopCenter:
        case PCEditorLocationHandleBottomCenter:
            return transform(90);
        case PCEditorLocationHandleTopRight:
        case PCEditorLocationHandleBottomLeft:
            return transform(side * 135);
        case PCEditorLocationHandleCenterLeft:
        case PCEditorLocationHandleCenterRight:
            return transform(0);
        case PCEditorLocationRotate:
            return rotateCursorRotatedBy(static_cast<double>(rotationFromAnchorPoint), isAdditive);
        case PCEditorLocationAnchorPoint:
            return CanvasCursor{u"AnchorPointCursor"_s};
    }
    return std::nullopt;
}

float rotationFromAnchorPoint(QPointF anchorPoint, QPointF pointer) {
    const double radians =
        -std::atan2(anchorPoint.x() - pointer.x(), pointer.y() - anchorPoint.y());
    return static_cast<float>(qRadiansToDegrees(radians));
}

std::optional<CanvasCursor> cursorWhileHovering(const PCEditorLayer& editor,
                                                const PCProject& project,
                                                const PCElementSelectionManager& selection,
                                                PCSelectionState state, QPointF pointer,
                                                EditTime when) {
    if (state == PCSelectionStateHand) { return std::nullopt; }
    const PCElement::Ptr element = elementWithBandAt(pointer, selection);
    double rotation = 0;
    bool isScaleInverted = false;
    if (element) {
        rotation = TimedElement(*element, when).zRotation();
        isScaleInverted = element->scale().x() * element->scale().y() < 0;
    }
    const PCEditorLocation location = editor.locationAtPosition(
        pointer, element ? PCLayer::of(*element) : nullptr, selection.selectedElementsCount());
    return cursorForEventLocation(
        location, 360 - qRadiansToDegrees(rotation), project.inAdditiveMode(), isScaleInverted,
        rotationFromAnchorPoint(project.eventAnchorPoint(), pointer), state);
}

}  // namespace tweenery
