#pragma once

#include <QBrush>
#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <algorithm>
#include <cstdlib>
#include <deque>

#include "scene/layer.h"

namespace tweenery::test {

inline QImage imageFilled(int width, int height, const QColor& color) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

/// Layers for a test, all owned here. Unless told otherwise a layer's anchor point is its top left
/// corner, so that its position is where it begins.
class LayerScene {
 public:
    Layer& add(Layer& super, const QRectF& frame, const QColor& color = {}) {
        Layer& layer = m_layers.emplace_back();
        place(layer, frame);
        if (color.isValid()) { layer.setStyle({.background = color, .borderColor = {}}); }
        super.addSublayer(layer);
        return layer;
    }
    Layer& addImage(Layer& super, QPointF place, const QImage& image) {
        Layer& layer = add(super, {place, QSizeF(image.size())});
        layer.setContents(image);
        return layer;
    }
    ShapeLayer& addShape(Layer& super, const QRectF& frame) {
        ShapeLayer& layer = m_shapes.emplace_back();
        place(layer, frame);
        super.addSublayer(layer);
        return layer;
    }

    static void place(Layer& layer, const QRectF& frame) {
        layer.setAnchorPoint({0, 0});
        layer.setPosition(frame.topLeft());
        layer.setBounds({QPointF(), frame.size()});
    }

 private:
    std::deque<Layer> m_layers;
    std::deque<ShapeLayer> m_shapes;
};

inline LayerTransform turned(double radians, QPointF scale = {1, 1}) {
    return {.scale = scale, .rotation = radians, .translation = {}};
}

/// A root of 100 by 80 points and what hangs below it.
class Scene : public LayerScene {
 public:
    Scene() { LayerScene::place(root, {0, 0, 100, 80}); }
    Layer root;
};

// The largest difference in any channel of any pixel; 256 for pictures of different sizes.
inline int difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) { return 256; }
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* left = a.constScanLine(y);
        const uchar* right = b.constScanLine(y);
        for (int x = 0; x < a.width() * 4; ++x) {
            most = std::max(most, std::abs(left[x] - right[x]));
        }
    }
    return most;
}

// The raster engine steps through an image in fixed-point numbers from where a span begins, and
// weighs neighbours in sixteenths: next to a hard edge a step may show.
inline constexpr int kSpanTolerance = 20;

}  // namespace tweenery::test
