#include "editor/canvas/press_record.h"

namespace tweenery {
namespace {

// The point types' own operators compare with some room.
bool isSame(QPointF a, QPointF b) {
    return a.x() == b.x() && a.y() == b.y();
}

}  // namespace

void selectOnly(PCElementSelectionManager& selection, const PCElement::Elements& elements) {
    if (selection.selectedElements() != elements) { selection.selectElements(elements); }
}

ViewBeforePress::ViewBeforePress(const CanvasScene& scene)
    : m_selection(scene.selection.selectedElements()),
      m_magnification(scene.viewport.magnificationFactor()),
      m_scrollOrigin(scene.viewport.scrollOrigin()),
      m_anchorPoint(scene.anchorPoint.movedEventAnchorPoint()) {}

void ViewBeforePress::restore(const CanvasScene& scene) const {
    selectOnly(scene.selection, m_selection);
    scene.viewport.goBackTo(m_magnification, m_scrollOrigin);
    scene.anchorPoint.setMovedEventAnchorPoint(m_anchorPoint);
}

SetupBeforeDrag::Item::Item(const PCElement::Ptr& edited)
    : element(edited),
      position(edited->position()),
      scale(edited->scale()),
      anchorPoint(edited->anchorPoint()),
      rotation(edited->zRotation()) {}

bool SetupBeforeDrag::Item::operator==(const Item& other) const {
    return element == other.element && isSame(position, other.position) &&
           isSame(scale, other.scale) && isSame(anchorPoint, other.anchorPoint) &&
           rotation == other.rotation;
}

SetupBeforeDrag::SetupBeforeDrag(const CanvasScene& scene)
    : m_canvasSize(scene.project.canvas()->size()) {
    for (const PCElement::Ptr& element : scene.selection.selectedElements()) {
        m_items.emplace_back(element);
    }
}

bool SetupBeforeDrag::isWhatThereIs(const CanvasScene& scene) const {
    const SetupBeforeDrag now(scene);
    return m_canvasSize.width() == now.m_canvasSize.width() &&
           m_canvasSize.height() == now.m_canvasSize.height() && m_items == now.m_items;
}

}  // namespace tweenery
