#include "editor/canvas/element_boxes.h"

#include <QTransform>
#include <algorithm>

#include "editor/layers/element_layer.h"
#include "model/project.h"
#include "scene/affine.h"

namespace tweenery {
namespace {

// From an element's own coordinates to its parent's.
QTransform placing(const PCElement& element, EditTime when) {
    if (when.isSetup()) { return element.elementToParentTransform(); }
    if (element.isCanvas()) { return {}; }
    const ElementValues values = element.valuesAtTimeInMS(when.timeInMS());
    return placementTransform(element.anchorPointInPts(), values.scale,
                              static_cast<double>(values.rotation),
                              element.position() + values.translation);
}

QRectF frameOnCanvas(const PCElement& element, EditTime when) {
    const QRectF frame = placing(element, when).mapRect(QRectF(QPointF(), element.size()));
    QTransform toCanvas;
    for (const PCElement* above = element.parentElement(); above; above = above->parentElement()) {
        toCanvas *= placing(*above, when);
    }
    return toCanvas.mapRect(frame);
}

// Counts points and lines, unlike QRectF::united().
QRectF around(const QRectF& a, const QRectF& b) {
    return {QPointF(std::min(a.left(), b.left()), std::min(a.top(), b.top())),
            QPointF(std::max(a.right(), b.right()), std::max(a.bottom(), b.bottom()))};
}

template <typename FrameOf>
std::optional<QRectF> boxOf(const PCElement::Elements& elements, FrameOf frameOf) {
    std::optional<QRectF> box;
    for (const PCElement::Ptr& element : elements) {
        const std::optional<QRectF> frame = frameOf(*element);
        if (frame) { box = box ? around(*box, *frame) : *frame; }
    }
    return box;
}

std::optional<QRectF> frameOnScreen(const PCElement& element) {
    const PCLayer* layer = PCLayer::of(element);
    const EditContext* project = element.project();
    const PCLayer* canvas = project ? PCLayer::of(*project->canvas()) : nullptr;
    if (!layer || !layer->superlayer() || !canvas) { return std::nullopt; }
    layer->updateIfNeeded();
    return layer->superlayer()->convertRectTo(layer->frame(), canvas);
}

}  // namespace

std::optional<QRectF> boxOfElements(const PCElement::Elements& elements, EditTime when) {
    return boxOf(elements, [when](const PCElement& element) {
        return std::optional(frameOnCanvas(element, when));
    });
}

std::optional<QRectF> boxOfElementsOnScreen(const PCElement::Elements& elements) {
    return boxOf(elements, frameOnScreen);
}

}  // namespace tweenery
