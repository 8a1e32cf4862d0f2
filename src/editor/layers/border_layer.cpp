#include "editor/layers/border_layer.h"

#include <cmath>

#include "base/errors.h"
#include "editor/layers/element_layer.h"
#include "editor/layers/inverse_scale.h"
#include "editor/layers/tweenery_style.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// All in points of the screen.
constexpr double kHandleSide = 13;
constexpr double kAnchorMarkSide = 19;
constexpr double kOutlineWidth = 2;
constexpr float kRotationBandWidth = 20;

// Where the handle of each location stands on the bordered layer, in unit coordinates of its
// bounds, from the top left on.
constexpr std::array<QPointF, 8> kHandlePlaces = {QPointF(0, 0),   QPointF(0.5, 0), QPointF(1, 0),
                                                  QPointF(0, 0.5), QPointF(1, 0.5), QPointF(0, 1),
                                                  QPointF(0.5, 1), QPointF(1, 1)};

size_t indexOf(PCBorderLocation location) {
    return static_cast<size_t>(location - PCBorderLocationTopLeft);
}

PCBorderLocation locationOf(size_t index) {
    return static_cast<PCBorderLocation>(PCBorderLocationTopLeft + static_cast<int64_t>(index));
}

bool layerContains(const Layer& part, QPointF pointInBorder) {
    const auto own = part.fromSuperlayer(pointInBorder);
    return own && part.containsPoint(*own);
}

}  // namespace

std::unique_ptr<PCBorderLayer> PCBorderLayer::layerWithLayerToBorder(PCLayer& layer) {
    return std::unique_ptr<PCBorderLayer>(new PCBorderLayer(layer));
}

std::unique_ptr<Layer> PCBorderLayer::handleLayer() {
    // Ten thousand selected elements share one brush.
    static const LayerStyle style{.background = QBrush(Qt::white),
                                  .borderColor = Qt::black,
                                  .borderWidth = 1,
                                  .cornerRadius = 2};
    auto handle = std::make_unique<Layer>();
    handle->setBounds({0, 0, kHandleSide, kHandleSide});
    handle->setZPosition(2);
    handle->setStyle(style);
    return handle;
}

PCBorderLayer::PCBorderLayer(PCLayer& layer) : m_borderedLayer(layer) {
    for (auto& handle : m_handles) {
        handle = handleLayer();
        addSublayer(*handle);
    }
    m_anchorPointLayer.setBounds({0, 0, kAnchorMarkSide, kAnchorMarkSide});
    m_anchorPointLayer.setZPosition(3);
    m_anchorPointLayer.setContents(TweeneryStyle::anchorPointAxisImage());
    m_outline.setZPosition(1);
    m_rotationBand.setZPosition(1);
    addSublayer(m_anchorPointLayer);
    addSublayer(m_outline);
    addSublayer(m_rotationBand);
    syncWithBorderedLayer();
}

const Layer& PCBorderLayer::handle(PCBorderLocation location) const {
    assertContract(location >= PCBorderLocationTopLeft && location <= PCBorderLocationBottomRight,
                   u"no handle of a border"_s);
    return *m_handles[indexOf(location)];
}

// The magnification that the project's preferences remember.
double PCBorderLayer::zoom() const {
    PCElement* element = m_borderedLayer.element();
    PCProject* project = element ? element->project() : nullptr;
    const double zoom = project ? static_cast<double>(project->preferences().canvasZoomLevel()) : 1;
    return zoom == 0 ? 1 : zoom;
}

void PCBorderLayer::syncWithBorderedLayer() {
    keepPartsAtScreenSize();
    setAnchorPoint(m_borderedLayer.anchorPoint());
    setBounds(m_borderedLayer.bounds());
    const LayerValues& presented = m_borderedLayer.presented();
    const QPointF place = presented.position + presented.transform.translation;
    const Layer* above = m_borderedLayer.superlayer();
    setPosition(above && superlayer() ? above->convertPointTo(place, superlayer()) : place);
    placeParts();
    shapeOutline();
    shapeRotationBand();
}

void PCBorderLayer::keepPartsAtScreenSize() {
    const LayerTransform inverse =
        inverseScale(superlayer() ? superlayer()->transform().scale : QPointF(1, 1));
    for (const auto& handle : m_handles) {
        handle->setTransform(inverse);
    }
    m_anchorPointLayer.setTransform(inverse);
}

void PCBorderLayer::placeParts() {
    const Layer& bordered = m_borderedLayer;
    const double width = bordered.bounds().width();
    const double height = bordered.bounds().height();
    const auto place = [&](QPointF unitPoint) {
        return bordered.convertPointTo({unitPoint.x() * width, unitPoint.y() * height}, this);
    };
    for (size_t i = 0; i < kHandleCount; ++i) {
        m_handles[i]->setPosition(place(kHandlePlaces[i]));
    }
    m_anchorPointLayer.setPosition(place(bordered.anchorPoint()));
}

QPainterPath PCBorderLayer::quadrilateralOfHandles() const {
    QPainterPath path(handle(PCBorderLocationTopLeft).position());
    path.lineTo(handle(PCBorderLocationTopRight).position());
    path.lineTo(handle(PCBorderLocationBottomRight).position());
    path.lineTo(handle(PCBorderLocationBottomLeft).position());
    path.lineTo(handle(PCBorderLocationTopLeft).position());
    return path;
}

void PCBorderLayer::shapeOutline() {
    LayerShape& shape = m_outline.editShape();
    shape.path = quadrilateralOfHandles();
    shape.lineWidth = kOutlineWidth / zoom();
}

QPointF PCBorderLayer::netScaleOfBorderedLayer() const {
    QPointF scale(1, 1);
    const Layer* end = superlayer();
    for (const Layer* layer = &m_borderedLayer; layer && layer != end;
         layer = layer->superlayer()) {
        const QPointF own = layer->presented().transform.scale;
        scale = {scale.x() * own.x(), scale.y() * own.y()};
    }
    return scale;
}

void PCBorderLayer::shapeRotationBand() {
    const float width = kRotationBandWidth / static_cast<float>(zoom());
    const auto marginAt = [width](double netScale) {
        const float scale = std::abs(static_cast<float>(netScale));
        return scale == 0 ? 0.0 : static_cast<double>(width / scale);
    };
    const double dx = marginAt(netXScaleOfBoundedLayer());
    const double dy = marginAt(netYScaleOfBoundedLayer());
    const QRectF outer =
        QRectF(QPointF(), m_borderedLayer.bounds().size()).adjusted(-dx, -dy, dx, dy);
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    const Layer& bordered = m_borderedLayer;
    path.moveTo(bordered.convertPointTo(outer.topLeft(), this));
    path.lineTo(bordered.convertPointTo(outer.topRight(), this));
    path.lineTo(bordered.convertPointTo(outer.bottomRight(), this));
    path.lineTo(bordered.convertPointTo(outer.bottomLeft(), this));
    path.closeSubpath();
    path.addPath(quadrilateralOfHandles());
    m_rotationBand.editShape().path = path;
}

PCBorderLocation PCBorderLayer::borderLocationForPoint(QPointF point) const {
    if (!m_borderedLayer.isSelected()) { return PCBorderLocationNone; }
    for (size_t i = 0; i < kHandleCount; ++i) {
        if (layerContains(*m_handles[i], point)) { return locationOf(i); }
    }
    // What a press on the mark means is settled without the border.
    if (layerContains(m_anchorPointLayer, point)) { return PCBorderLocationNone; }
    if (m_rotationBand.shape()->path.contains(point)) { return PCBorderLocationRotate; }
    return containsPoint(point) ? PCBorderLocationDrag : PCBorderLocationNone;
}

Layer* PCBorderLayer::hitTest(QPointF point) {
    if (!m_borderedLayer.isSelected()) { return nullptr; }
    const auto own = fromSuperlayer(point);
    return own && m_rotationBand.shape()->path.contains(*own) ? &m_borderedLayer : nullptr;
}

}  // namespace tweenery
