#pragma once

#include <memory>

#include "scene/layer.h"

namespace tweenery {

/// A layer that is seen but is no target of its own: a hit on it counts for another layer, or for
/// what lies behind.
class PCNoHitLayer : public Layer {
 public:
    PCNoHitLayer() = default;
    static std::unique_ptr<PCNoHitLayer> layerWithHitLayer(Layer* layerToHit) {
        auto layer = std::make_unique<PCNoHitLayer>();
        layer->setLayerToHit(layerToHit);
        return layer;
    }

    /// Not owned. Null: nothing here is ever hit.
    Layer* layerToHit() const { return m_layerToHit; }
    void setLayerToHit(Layer* layer) { m_layerToHit = layer; }
    Layer* hitTest(QPointF point) override {
        return Layer::hitTest(point) ? m_layerToHit : nullptr;
    }

 private:
    Layer* m_layerToHit = nullptr;
};

}  // namespace tweenery
