#pragma once

#include <memory>

#include "editor/layers/no_hit_layer.h"

namespace tweenery {

/// A thin line across the whole canvas that shows an alignment. It keeps its width of one screen
/// point at any magnification, and is never hit.
class PCGuideLayer : public PCNoHitLayer {
 public:
    /// At a place in the superlayer's coordinates.
    static std::unique_ptr<PCGuideLayer> verticalGuideAtPoint(double x);
    static std::unique_ptr<PCGuideLayer> horizontalGuideAtPoint(double y);

    double xPosition() const { return position().x(); }
    double yPosition() const { return position().y(); }
    /// Each makes the other coordinate 0.
    void setXPosition(double x) { setPosition({x, 0}); }
    void setYPosition(double y) { setPosition({0, y}); }
    void show() { setOpacity(1); }
    void hide() { setOpacity(0); }
    bool isShown() const { return opacity() > 0; }

 protected:
    void layoutSublayers() override;

 private:
    PCGuideLayer();
    static std::unique_ptr<PCGuideLayer> layer(QSizeF size, QPointF position);
};

}  // namespace tweenery
