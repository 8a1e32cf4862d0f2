#include "editor/canvas/canvas_viewport.h"

#include <algorithm>
#include <cmath>

#include "editor/canvas/event_anchor_point.h"
#include "editor/canvas/zoom.h"
#include "editor/layers/editor_layer.h"
#include "model/project.h"

namespace tweenery {

CanvasViewport::CanvasViewport(PCProject& project, PCEditorLayer& editor,
                               EventAnchorPoint& anchorPoint)
    : m_project(project), m_editor(editor), m_anchorPoint(anchorPoint) {
    m_sizeSubscription = project.notificationCentre().subscribe(
        ElementNotification::size, nullptr, [this](const void* element) {
            if (element == m_project.canvas().get()) { frameChanged(); }
        });
    layOut();
}

void CanvasViewport::changed() {
    if (m_changed) { m_changed(); }
}

// Size.

QSizeF CanvasViewport::documentSize() const {
    return m_editor.bounds().size();
}

void CanvasViewport::setContainerSize(QSizeF size) {
    m_containerSize = size;
    frameChanged();
}

void CanvasViewport::layOut() {
    const auto magnification = static_cast<float>(m_magnification);
    m_editor.refreshBounds(PCEditorLayer::boundsSizedForCanvasSize(m_project.canvas()->size(),
                                                                   magnification, m_containerSize),
                           magnification);
    m_anchorPoint.updateAnchorPointIcons();
    placeAt(m_origin);
}

void CanvasViewport::frameChanged() {
    layOut();
    changed();
}

// Scrolling.

QPointF CanvasViewport::scrollRange() const {
    const QSizeF range = documentSize() - m_containerSize;
    return {std::max(range.width(), 0.0), std::max(range.height(), 0.0)};
}

void CanvasViewport::placeAt(QPointF origin) {
    const QPointF range = scrollRange();
    m_origin = {std::clamp(origin.x(), 0.0, range.x()), std::clamp(origin.y(), 0.0, range.y())};
    m_project.preferences().setCanvasScrollOffset(m_origin);
}

QPointF CanvasViewport::scrollOrigin() const {
    const double scale = m_project.backingScale();
    const QPointF corner = m_editor.convertPointFromCanvasToEditor({});
    const auto onPixel = [scale](double at) { return std::round(at * scale) / scale; };
    return {corner.x() - onPixel(corner.x() - m_origin.x()),
            corner.y() - onPixel(corner.y() - m_origin.y())};
}

void CanvasViewport::scrollTo(QPointF origin) {
    placeAt(origin);
    changed();
}

void CanvasViewport::scrollBy(QPointF distance) {
    scrollTo(m_origin + distance);
}

void CanvasViewport::scrollToCenter() {
    scrollTo(QRectF(QPointF(), documentSize()).center() - centre());
}

// Points.

QPointF CanvasViewport::centre() const {
    return {m_containerSize.width() / 2, m_containerSize.height() / 2};
}

QPointF CanvasViewport::canvasPoint(QPointF viewPoint) const {
    return m_editor.convertPointFromEditorToCanvas(documentPoint(viewPoint));
}

QPointF CanvasViewport::viewPoint(QPointF canvasPoint) const {
    return m_editor.convertPointFromCanvasToEditor(canvasPoint) - scrollOrigin();
}

// Zoom.

void CanvasViewport::setMagnificationFactor(double factor) {
    m_magnification = factor;
    frameChanged();
}

// Brings the point of the canvas to the point of the view.
void CanvasViewport::magnify(double factor, QPointF canvasPoint, QPointF viewPoint) {
    m_magnification = factor;
    layOut();
    m_project.preferences().setCanvasZoomLevel(static_cast<float>(factor));
    scrollTo(m_editor.convertPointFromCanvasToEditor(canvasPoint) - viewPoint);
}

void CanvasViewport::goBackTo(double magnification, QPointF scrollOrigin) {
    if (magnification != m_magnification) {
        m_magnification = magnification;
        layOut();
        m_project.preferences().setCanvasZoomLevel(static_cast<float>(magnification));
    }
    scrollTo(scrollOrigin);
}

void CanvasViewport::zoomIn() {
    const float step = zoomStepAfter(static_cast<float>(m_magnification));
    magnify(static_cast<double>(step), canvasPoint(centre()), centre());
}

void CanvasViewport::zoomOut() {
    const float step = zoomStepBefore(static_cast<float>(m_magnification));
    magnify(static_cast<double>(step), canvasPoint(centre()), centre());
}

void CanvasViewport::zoomToActualSize() {
    magnify(1, canvasPoint(centre()), centre());
}

void CanvasViewport::zoomCanvasToFill() {
    if (m_containerSize.isEmpty()) { return; }
    const QSizeF canvas = m_project.canvas()->size();
    magnify(zoomToFill(canvas, m_containerSize), QRectF(QPointF(), canvas).center(), centre());
}

void CanvasViewport::zoomToBox(const QRectF& box) {
    if (m_containerSize.isEmpty()) { return; }
    const bool isPoint = box.width() <= 0 && box.height() <= 0;
    // A line fills the view along itself.
    const QSizeF size = box.size().expandedTo({1, 1});
    const double filling =
        std::clamp(zoomToFill(size, m_containerSize), kLeastMagnification, kLargestMagnification);
    magnify(isPoint ? m_magnification : filling, box.center(), centre());
}

void CanvasViewport::zoomAbout(QPointF viewPoint, double factor) {
    // What fills the view may lie beyond the ends.
    const double least = std::min(kLeastMagnification, m_magnification);
    const double largest = std::max(kLargestMagnification, m_magnification);
    // Without the rounding to pixels, many small steps lead back to where they began.
    const QPointF under = m_editor.convertPointFromEditorToCanvas(m_origin + viewPoint);
    magnify(std::clamp(m_magnification * factor, least, largest), under, viewPoint);
}

void CanvasViewport::showAsStored() {
    const auto stored = static_cast<double>(m_project.preferences().canvasZoomLevel());
    if (stored <= 0 || stored == 1) {
        zoomCanvasToFill();
    } else {
        magnify(stored, QRectF(QPointF(), m_project.canvas()->size()).center(), centre());
    }
}

}  // namespace tweenery
