#include "editor/selection_picture.h"

#include <QPainter>
#include <cmath>

#include "editor/canvas/element_boxes.h"
#include "scene/layer_renderer.h"

namespace tweenery {
namespace {

constexpr double kPixelsPerPoint = 2;
constexpr double kGreatestSide = 8192;  // pixels; more would only fill the clipboard

Affine toCanvas(const Layer& layer, const Layer* canvas) {
    Affine transform;
    for (const Layer* above = &layer; above && above != canvas; above = above->superlayer()) {
        transform = transform.then(above->toSuperlayer());
    }
    return transform;
}

}  // namespace

QImage pictureOfElements(PCEditorLayer& editor, const PCElement::Elements& elements) {
    const auto box = boxOfElementsOnScreen(elements);
    if (!box || box->isEmpty()) { return {}; }
    const QSizeF exact = box->size() * kPixelsPerPoint;
    if (!(std::max(exact.width(), exact.height()) <= kGreatestSide)) { return {}; }
    const QSize size(qCeil(exact.width()), qCeil(exact.height()));
    const Affine canvasToPicture{{kPixelsPerPoint, 0, 0, kPixelsPerPoint},
                                 -box->topLeft() * kPixelsPerPoint};
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (const PCElement::Ptr& element : elements) {
        PCLayer* layer = PCLayer::of(*element);
        if (!layer) { continue; }
        DisplayList list;
        list.build(*layer, toCanvas(*layer, editor.canvasLayer()).then(canvasToPicture), size);
        QImage one;
        LayerRenderer().paint(list, one);
        painter.drawImage(0, 0, one);
    }
    return picture;
}

}  // namespace tweenery
