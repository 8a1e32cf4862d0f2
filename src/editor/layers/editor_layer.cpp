#include "editor/layers/editor_layer.h"

#include <algorithm>
#include <array>
#include <optional>

#include "editor/layers/inverse_scale.h"
#include "editor/layers/quadrilateral.h"
#include "editor/layers/tweenery_style.h"
#include "model/project.h"
#include "scene/layer_renderer.h"

namespace tweenery {
namespace {

constexpr double kCornerRadius = 5;
// A canvas that is no larger than this has no frame.
constexpr double kLeastFramedSide = 5;
// Scene points beside the canvas, both sides together.
constexpr float kMargin = 1200;
// The document of a canvas without size, scene points.
constexpr float kUnboundedSide = 5000;

LayerStyle frameStyle(const QColor& color, double width) {
    return {.background = Qt::NoBrush,
            .borderColor = color,
            .borderWidth = width,
            .cornerRadius = kCornerRadius};
}

PCEditorLocation editorLocationOf(PCBorderLocation location) {
    switch (location) {
        case PCBorderLocationRotate:
            return PCEditorLocationRotate;
        case PCBorderLocationTopLeft:
            return PCEditorLocationHandleTopLeft;
        case PCBorderLocationTopCenter:
            return PCEditorLocationHandleTopCenter;
        case PCBorderLocationTopRight:
            return PCEditorLocationHandleTopRight;
        case PCBorderLocationCenterLeft:
            return PCEditorLocationHandleCenterLeft;
        case PCBorderLocationCenterRight:
            return PCEditorLocationHandleCenterRight;
        case PCBorderLocationBottomLeft:
            return PCEditorLocationHandleBottomLeft;
        case PCBorderLocationBottomCenter:
            return PCEditorLocationHandleBottomCenter;
        case PCBorderLocationBottomRight:
            return PCEditorLocationHandleBottomRight;
        default:
            return PCEditorLocationNone;
    }
}

// The zones in which a press takes an edge or a corner of the canvas, the first that is hit
// counting.
PCEditorLocation canvasEdgeAt(QPointF point, QSizeF canvas) {
    const double w = canvas.width();
    const double h = canvas.height();
    const std::array zones = {
        std::pair{QRectF(-5, -5, 10, 10), PCEditorLocationCanvasTopLeft},
        std::pair{QRectF(w - 5, -5, 10, 10), PCEditorLocationCanvasTopRight},
        std::pair{QRectF(-5, h - 5, 10, 10), PCEditorLocationCanvasBottomLeft},
        std::pair{QRectF(w - 5, h - 5, 10, 10), PCEditorLocationCanvasBottomRight},
        std::pair{QRectF(-2, 0, 4, h), PCEditorLocationCanvasLeft},
        std::pair{QRectF(0, h - 4, w, 4), PCEditorLocationCanvasTop},
        std::pair{QRectF(w - 2, 0, 4, h), PCEditorLocationCanvasRight},
        std::pair{QRectF(0, -2, w, 4), PCEditorLocationCanvasBottom},
    };
    const auto zone = std::find_if(zones.begin(), zones.end(), [point](const auto& entry) {
        return rectHolds(entry.first, point);
    });
    return zone == zones.end() ? PCEditorLocationNone : zone->second;
}

// The line of the canvas that the box's near edge, middle or far edge stands on, all in whole
// points; the canvas's near edge goes before its middle, that before the far one.
std::optional<int32_t> alignedLine(double boxStart, double boxLength, double canvasStart,
                                   double canvasLength) {
    const auto lines = [](double start, double length) {
        return std::array{static_cast<int32_t>(start), static_cast<int32_t>(start + length / 2),
                          static_cast<int32_t>(start + length)};
    };
    const auto boxLines = lines(boxStart, boxLength);
    for (const int32_t line : lines(canvasStart, canvasLength)) {
        if (std::find(boxLines.begin(), boxLines.end(), line) != boxLines.end()) { return line; }
    }
    return std::nullopt;
}

}  // namespace

PCEditorLayer::PCEditorLayer()
    : m_xAxis(PCGuideLayer::horizontalGuideAtPoint(0)),
      m_yAxis(PCGuideLayer::verticalGuideAtPoint(0)),
      m_verticalSnapGuideline(PCGuideLayer::verticalGuideAtPoint(0)),
      m_horizontalSnapGuideline(PCGuideLayer::horizontalGuideAtPoint(0)) {
    setStyle({.background = QBrush(TweeneryStyle::editorColor())});
    addSublayer(*m_yAxis);
    addSublayer(*m_xAxis);
    m_innerBorder.setStyle(frameStyle(TweeneryStyle::canvasInnerBorderColor(), 2));
    m_innerBorder.setOpacity(0.5);
    m_innerBorder.setZPosition(10'000);
    m_outerBorder.setStyle(frameStyle(TweeneryStyle::canvasOuterBorderColor(), 1));
    m_outerBorder.setOpacity(0.5);
    m_outerBorder.setZPosition(10'001);
    addSublayer(m_innerBorder);
    addSublayer(m_outerBorder);
    m_selectionLayer.setAnchorPoint({0, 0});
    m_selectionLayer.setOpacity(0.7);
    m_selectionLayer.setZPosition(1'000'000);
    m_selectionLayer.setStyle({.background = QBrush(TweeneryStyle::selectionLayerColor()),
                               .borderColor = TweeneryStyle::selectionLayerBorderColor(),
                               .borderWidth = 2,
                               .cornerRadius = 0});
    m_anchorPointLayer.setBounds({0, 0, 19, 19});
    m_anchorPointLayer.setZPosition(39'999);
    m_anchorPointLayer.setContentsGravity(ContentsGravity::Center);
    hideGuides();
}

PCEditorLayer::~PCEditorLayer() {
    if (m_canvasLayer) { m_canvasLayer->setHolder(nullptr); }
}

void PCEditorLayer::canvasLayerGoes() {
    m_canvasLayer = nullptr;
}

void PCEditorLayer::setCanvasLayer(PCLayer& canvas) {
    if (m_canvasLayer) {
        m_canvasLayer->removeFromSuperlayer();
        m_canvasLayer->setHolder(nullptr);
    }
    m_canvasLayer = &canvas;
    canvas.setHolder(this);
    setCanvasStyle(canvas.style().background, kCornerRadius);
    canvas.setSpeed(0);
    canvas.Layer::addSublayer(*m_verticalSnapGuideline);
    canvas.Layer::addSublayer(*m_horizontalSnapGuideline);
    canvas.Layer::addSublayer(m_selectionLayer);
    if (m_showsAnchorPoint) { canvas.Layer::addSublayer(m_anchorPointLayer); }
    addSublayer(static_cast<Layer&>(canvas));
}

// Which element is under a point.

PCLayer* PCEditorLayer::layerAtLocationOnEditor(QPointF point, bool isDirect) {
    layoutIfNeeded();
    auto* hit = dynamic_cast<PCLayer*>(hitTest(toSuperlayer().map(point)));
    if (!hit || hit == m_canvasLayer) { return nullptr; }
    if (isDirect) { return hit; }
    const PCElement* element = hit->element();
    while (element->parentElement() && !element->parentElement()->isCanvas()) {
        element = element->parentElement();
    }
    return PCLayer::of(*element);
}

PCLayer* PCEditorLayer::layerAtLocationInEditor(QPointF point,
                                                const PCElement::Elements& currentSelection,
                                                bool isDirect) {
    layoutIfNeeded();
    PCLayer* selected = nullptr;
    bool isOnHandle = false;
    for (const PCElement::Ptr& element : currentSelection) {
        PCLayer* layer = PCLayer::of(*element);
        if (!layer) { continue; }
        const bool ownsPoint = layer->borderLayer() && isOnHandleOf(*layer->borderLayer(), point);
        // An element that is flattened to a line has handles, but no inside.
        const auto own = pointIn(layer, point);
        if (!ownsPoint && !(own && layer->containsPoint(*own))) { continue; }
        selected = layer;
        isOnHandle = isOnHandle || ownsPoint;
    }
    if (selected && (isOnHandle || !isDirect)) { return selected; }
    return layerAtLocationOnEditor(point, isDirect);
}

bool PCEditorLayer::isOnHandleOf(const PCBorderLayer& border, QPointF point) const {
    const auto own = pointIn(&border, point);
    return own && border.borderLocationForPoint(*own) > PCBorderLocationDrag;
}

PCEditorLocation PCEditorLayer::locationAtPosition(QPointF point, const PCLayer* layer,
                                                   size_t numberOfSelectedElements) const {
    if (!m_canvasLayer) { return PCEditorLocationNone; }
    m_canvasLayer->updateIfNeeded();
    const auto onMark = m_anchorPointLayer.fromSuperlayer(point);
    if (m_showsAnchorPoint && onMark && m_anchorPointLayer.containsPoint(*onMark)) {
        return PCEditorLocationAnchorPoint;
    }
    const PCBorderLayer* border = layer ? layer->borderLayer() : nullptr;
    const PCBorderLocation location =
        border ? border->borderLocationForPoint(m_canvasLayer->convertPointTo(point, border))
               : PCBorderLocationNone;
    if (location == PCBorderLocationDrag) { return PCEditorLocationDrag; }
    if (location > PCBorderLocationDrag) { return editorLocationOf(location); }
    if (numberOfSelectedElements == 0) {
        const auto edge = canvasEdgeAt(point, m_canvasLayer->bounds().size());
        if (edge != PCEditorLocationNone) { return edge; }
    }
    return layer ? PCEditorLocationDrag : PCEditorLocationNone;
}

QPointF PCEditorLayer::convertPointFromEditorToCanvas(QPointF point) const {
    return m_canvasLayer ? convertPointTo(point, m_canvasLayer) : point;
}

QPointF PCEditorLayer::convertPointFromCanvasToEditor(QPointF point) const {
    return m_canvasLayer ? convertPointFrom(point, m_canvasLayer) : point;
}

// Marquee.

void PCEditorLayer::updateSelectionRect(const QRectF& rect) {
    const QRectF area = rect.normalized();
    m_selectionLayer.setPosition(area.topLeft());
    m_selectionLayer.setBounds({QPointF(), area.size()});
}

PCElement::Elements PCEditorLayer::elementsHitInSelectionRect(const QRectF& rect) const {
    PCElement::Elements hit;
    if (!m_canvasLayer || !m_canvasLayer->element()) { return hit; }
    m_canvasLayer->updateIfNeeded();
    const Quadrilateral marquee = cornersOf(rect.normalized());
    for (const PCElement::Ptr& element : m_canvasLayer->element()->children()) {
        const PCLayer* layer = PCLayer::of(*element);
        if (!layer) { continue; }
        const Affine toCanvas = layer->toSuperlayer();
        Quadrilateral outline = cornersOf(layer->presented().bounds);
        for (QPointF& corner : outline) {
            corner = toCanvas.map(corner);
        }
        if (touch(outline, marquee)) { hit.push_back(element); }
    }
    return hit;
}

// Guides.

void PCEditorLayer::hideGuides() {
    m_verticalSnapGuideline->hide();
    m_horizontalSnapGuideline->hide();
}

void PCEditorLayer::layoutGuidesForBoundingBox(const QRectF& box) {
    hideGuides();
    if (!m_canvasLayer) { return; }
    const QRectF& canvas = m_canvasLayer->bounds();
    if (const auto x = alignedLine(box.x(), box.width(), canvas.x(), canvas.width())) {
        m_verticalSnapGuideline->setXPosition(*x);
        m_verticalSnapGuideline->show();
    }
    if (const auto y = alignedLine(box.y(), box.height(), canvas.y(), canvas.height())) {
        m_horizontalSnapGuideline->setYPosition(*y);
        m_horizontalSnapGuideline->show();
    }
}

void PCEditorLayer::setShowsAnchorPoint(bool shows) {
    m_showsAnchorPoint = shows;
    if (shows && m_canvasLayer) {
        m_canvasLayer->Layer::addSublayer(m_anchorPointLayer);
    } else {
        m_anchorPointLayer.removeFromSuperlayer();
    }
}

// Size.

QRectF PCEditorLayer::boundsSizedForCanvasSize(QSizeF canvasSize, float magnificationFactor,
                                               QSizeF containerSize) {
    const auto magnification = static_cast<double>(magnificationFactor);
    QSizeF size;
    if (canvasSize.width() != 0 && canvasSize.height() != 0) {
        const auto margin = static_cast<double>(kMargin * magnificationFactor);
        size = canvasSize * magnification + QSizeF(margin, margin);
    } else {
        const auto side = static_cast<double>(kUnboundedSide * magnificationFactor);
        size = {side, side};
    }
    return {QPointF(), size.expandedTo(containerSize)};
}

void PCEditorLayer::setCanvasStyle(const QBrush& background, double cornerRadius) {
    LayerStyle style = m_canvasLayer->style();
    style.background = background;
    style.cornerRadius = cornerRadius;
    m_canvasLayer->setStyle(style);
}

void PCEditorLayer::showCanvasFrame(bool shows, QSizeF sizeOnScreen) {
    for (Layer* border :
         {static_cast<Layer*>(&m_innerBorder), static_cast<Layer*>(&m_outerBorder)}) {
        border->setBounds({QPointF(), sizeOnScreen});
        border->setPosition(bounds().center());
        border->setHidden(!shows);
    }
}

void PCEditorLayer::showAxes(bool shows) {
    m_xAxis->setHidden(!shows);
    m_yAxis->setHidden(!shows);
    m_xAxis->setYPosition(bounds().height() / 2);
    m_yAxis->setXPosition(bounds().width() / 2);
}

void PCEditorLayer::showAnchorPointPicture() {
    const EditContext* project = m_canvasLayer->element()->project();
    const double scale = project ? project->backingScale() : 1;
    m_anchorPointLayer.setContents(TweeneryStyle::anchorPointImage(scale));
    m_anchorPointLayer.setContentsScale(scale);
}

void PCEditorLayer::refreshBounds(const QRectF& bounds, float magnificationFactor) {
    setBounds(bounds);
    setPosition(superlayer() ? superlayer()->bounds().center() : bounds.center());
    if (!m_canvasLayer || !m_canvasLayer->element()) { return; }
    showAnchorPointPicture();
    const QSizeF canvasSize = m_canvasLayer->element()->size();
    const auto magnification = static_cast<double>(magnificationFactor);
    const QPointF centre(bounds.width() / 2, bounds.height() / 2);
    m_canvasLayer->setBounds({QPointF(), canvasSize});
    m_canvasLayer->setPosition(centre);
    m_canvasLayer->setTransform({{magnification, magnification}, 0, {}});
    const LayerTransform inverse = inverseScale({magnification, magnification});
    m_verticalSnapGuideline->setTransform(inverse);
    m_horizontalSnapGuideline->setTransform(inverse);
    m_canvasLayer->repaintEverything();
    m_canvasLayer->setNeedsLayout();

    const bool isFramed =
        canvasSize.width() > kLeastFramedSide && canvasSize.height() > kLeastFramedSide;
    const bool isUnbounded = canvasSize.width() == 0 || canvasSize.height() == 0;
    const QBrush pattern(TweeneryStyle::canvasPattern());
    showCanvasFrame(isFramed, canvasSize * magnification);
    setCanvasStyle(isUnbounded ? QBrush(TweeneryStyle::clearColor()) : pattern,
                   isFramed ? kCornerRadius : 0);
    setStyle({.background = isUnbounded ? pattern : QBrush(TweeneryStyle::editorColor())});
    showAxes(isUnbounded);
}

QImage PCEditorLayer::imageRepresentation() {
    const QRectF shown = presented().bounds;
    DisplayList list;
    list.build(*this, {{}, -shown.topLeft()},
               {static_cast<int>(shown.width()), static_cast<int>(shown.height())});
    QImage picture;
    LayerRenderer().paint(list, picture);
    return picture;
}

}  // namespace tweenery
