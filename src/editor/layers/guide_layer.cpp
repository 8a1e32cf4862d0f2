#include "editor/layers/guide_layer.h"

#include "editor/layers/inverse_scale.h"
#include "editor/layers/tweenery_style.h"

namespace tweenery {
namespace {

constexpr double kGuideLength = 1'000'000;  // across any canvas

}  // namespace

PCGuideLayer::PCGuideLayer() {
    setStyle({.background = QBrush(TweeneryStyle::guideColor())});
    setZPosition(1'000'000);
}

std::unique_ptr<PCGuideLayer> PCGuideLayer::layer(QSizeF size, QPointF position) {
    std::unique_ptr<PCGuideLayer> guide(new PCGuideLayer);
    guide->setBounds({QPointF(), size});
    guide->setPosition(position);
    return guide;
}

std::unique_ptr<PCGuideLayer> PCGuideLayer::verticalGuideAtPoint(double x) {
    return layer({1, kGuideLength}, {x, 0});
}

std::unique_ptr<PCGuideLayer> PCGuideLayer::horizontalGuideAtPoint(double y) {
    return layer({kGuideLength, 1}, {0, y});
}

void PCGuideLayer::layoutSublayers() {
    if (superlayer()) { setTransform(inverseScale(superlayer()->transform().scale)); }
}

}  // namespace tweenery
