#include "editor/layers/border_layer.h"

#include <cmath>

#include "base/errors.h"
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
constexpr double kLongestMiter = 5 * kOutlineWidth;

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

std::unique_ptr<PCBorderLayer> PCBorderLayer::layerWithLayerToBorder(BorderedLayer& layer) {
    return std::unique_ptr<PCBorderLayer>(new PCBorderLayer(layer));
}

PCBorderLayer::PCBorderLayer(BorderedLayer& layer) : m_borderedLayer(layer) {
    for (Layer& handle : m_handles) {
        handle.setBounds({0, 0, kHandleSide, kHandleSide});
        handle.setZPosition(2);
        handle.setContentsGravity(ContentsGravity::Center);
        addSublayer(handle);
    }
    m_anchorPointLayer.setBounds({0, 0, kAnchorMarkSide, kAnchorMarkSide});
    m_anchorPointLayer.setZPosition(3);
    m_anchorPointLayer.setContentsGravity(ContentsGravity::Center);
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
    return m_handles[indexOf(location)];
}

// The magnification that the project's preferences remember.
double PCBorderLayer::zoom() const {
    PCElement* element = m_borderedLayer.element();
    EditContext* project = element ? element->project() : nullptr;
    const double zoom = project ? static_cast<double>(project->preferences().canvasZoomLevel()) : 1;
    return zoom == 0 ? 1 : zoom;
}

void PCBorderLayer::syncWithBorderedLayer() {
    showPictures();
    keepPartsAtScreenSize();
    setAnchorPoint(m_borderedLayer.anchorPoint());
    setBounds(m_borderedLayer.bounds());
    const LayerValues& presented = m_borderedLayer.presented();
    const QPointF place = presented.position + presented.transform.translation;
    const Layer* above = m_borderedLayer.superlayer();
    setPosition(above && superlayer() ? above->convertPointTo(place, superlayer()) : place);
    const Affine fromBordered = fromBorderedLayer();
    placeParts(fromBordered);
    shapeOutline();
    shapeRotationBand(fromBordered);
}

// Thousands of handles share one image, in as many pixels as the screen has for it.
void PCBorderLayer::showPictures() {
    const PCElement* element = m_borderedLayer.element();
    const EditContext* project = element ? element->project() : nullptr;
    const double scale = project ? project->backingScale() : 1;
    if (scale == m_pictureScale) { return; }
    m_pictureScale = scale;
    const auto show = [scale](Layer& part, const QImage& picture) {
        part.setContents(picture);
        part.setContentsScale(scale);
    };
    for (Layer& handle : m_handles) {
        show(handle, TweeneryStyle::handleImage(scale));
    }
    show(m_anchorPointLayer, TweeneryStyle::anchorPointAxisImage(scale));
}

void PCBorderLayer::keepPartsAtScreenSize() {
    const LayerTransform inverse =
        inverseScale(superlayer() ? superlayer()->transform().scale : QPointF(1, 1));
    for (Layer& handle : m_handles) {
        handle.setTransform(inverse);
    }
    m_anchorPointLayer.setTransform(inverse);
}

// One map for all parts: of hundreds of borders in a drag each converts a dozen points. The border
// itself is neither turned nor scaled.
Affine PCBorderLayer::fromBorderedLayer() const {
    Affine toSuper;
    for (const Layer* layer = &m_borderedLayer; layer && layer != superlayer();
         layer = layer->superlayer()) {
        toSuper = toSuper.then(layer->toSuperlayer());
    }
    return {toSuper.linear, toSuper.offset - toSuperlayer().offset};
}

void PCBorderLayer::placeParts(const Affine& fromBordered) {
    const Layer& bordered = m_borderedLayer;
    const double width = bordered.bounds().width();
    const double height = bordered.bounds().height();
    const auto place = [&](QPointF unitPoint) {
        return fromBordered.map({unitPoint.x() * width, unitPoint.y() * height});
    };
    for (size_t i = 0; i < kHandleCount; ++i) {
        m_handles[i].setPosition(place(kHandlePlaces[i]));
    }
    m_anchorPointLayer.setPosition(place(bordered.anchorPoint()));
}

QRectF PCBorderLayer::drawnRect() const {
    QRectF rect = m_anchorPointLayer.frame();
    for (const Layer& handle : m_handles) {
        rect |= handle.frame();
    }
    // The outline's sharp corners reach beyond the handles.
    const double reach = kLongestMiter / zoom();
    return toSuperlayer().mapRect(rect.adjusted(-reach, -reach, reach, reach));
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

void PCBorderLayer::shapeRotationBand(const Affine& fromBordered) {
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
    path.moveTo(fromBordered.map(outer.topLeft()));
    path.lineTo(fromBordered.map(outer.topRight()));
    path.lineTo(fromBordered.map(outer.bottomRight()));
    path.lineTo(fromBordered.map(outer.bottomLeft()));
    path.closeSubpath();
    path.addPath(quadrilateralOfHandles());
    m_rotationBand.editShape().path = path;
}

PCBorderLocation PCBorderLayer::borderLocationForPoint(QPointF point) const {
    if (!m_borderedLayer.isSelected()) { return PCBorderLocationNone; }
    for (size_t i = 0; i < kHandleCount; ++i) {
        if (layerContains(m_handles[i], point)) { return locationOf(i); }
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
