#include "editor/canvas/canvas_picture.h"

#include <vector>

#include "scene/layer_renderer.h"

namespace tweenery {
namespace {

// Keeps layers out of drawing during its life.
class HiddenLayers {
 public:
    HiddenLayers() = default;
    ~HiddenLayers() {
        for (Layer* layer : m_layers) {
            layer->setHidden(false);
        }
    }
    HiddenLayers(const HiddenLayers&) = delete;
    HiddenLayers& operator=(const HiddenLayers&) = delete;
    void hide(Layer& layer) {
        if (layer.isHidden()) { return; }
        layer.setHidden(true);
        m_layers.push_back(&layer);
    }

 private:
    std::vector<Layer*> m_layers;
};

// Shows the editor at magnification 1 during its life.
class ActualSize {
 public:
    ActualSize(PCEditorLayer& editor, QSizeF canvasSize, QSizeF containerSize)
        : m_editor(editor),
          m_bounds(editor.bounds()),
          m_magnification(static_cast<float>(editor.canvasLayer()->transform().scale.x())) {
        m_editor.refreshBounds(
            PCEditorLayer::boundsSizedForCanvasSize(canvasSize, 1, containerSize), 1);
    }
    ~ActualSize() { m_editor.refreshBounds(m_bounds, m_magnification); }
    ActualSize(const ActualSize&) = delete;
    ActualSize& operator=(const ActualSize&) = delete;

 private:
    PCEditorLayer& m_editor;
    QRectF m_bounds;
    float m_magnification;
};

}  // namespace

CanvasPicture::CanvasPicture(PCEditorLayer& editor, QSizeF containerSize) {
    PCLayer* canvas = editor.canvasLayer();
    if (!canvas || !canvas->element()) { return; }
    HiddenLayers hidden;
    hidden.hide(editor.anchorPointLayer());
    for (Layer* sublayer : canvas->sublayers()) {
        if (dynamic_cast<PCBorderLayer*>(sublayer)) { hidden.hide(*sublayer); }
    }
    const ActualSize actualSize(editor, canvas->element()->size(), containerSize);
    const QRectF& shown = editor.bounds();
    m_list.build(editor, {{}, -shown.topLeft()},
                 {static_cast<int>(shown.width()), static_cast<int>(shown.height())});
}

QImage CanvasPicture::paint() const {
    QImage picture;
    LayerRenderer().paint(m_list, picture);
    return picture;
}

}  // namespace tweenery
