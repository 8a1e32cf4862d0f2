#include "scene/layer.h"

#include <algorithm>
#include <cmath>

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// The anchor point in the layer's own coordinates.
QPointF anchorInPoints(const LayerValues& values) {
    return {values.bounds.x() + values.anchorPoint.x() * values.bounds.width(),
            values.bounds.y() + values.anchorPoint.y() * values.bounds.height()};
}

// The place of the anchor point in the superlayer.
QPointF anchorPlace(const LayerValues& values) {
    return values.position + values.transform.translation;
}

Affine affineOf(const LayerValues& values, const Linear& linear) {
    return {linear, anchorPlace(values) - linear.map(anchorInPoints(values))};
}

// Not a number would break the order of all siblings.
double orderable(double zPosition) {
    return std::isnan(zPosition) ? 0 : zPosition;
}

void apply(const KeyframeAnimation& animation, double time, LayerValues& values) {
    switch (animation.property) {
        case LayerProperty::Contents:
            values.contents = animation.imageAt(time);
            values.contentsScale = animation.imageScaleAt(time).value_or(values.contentsScale);
            return;
        case LayerProperty::Opacity:
            values.opacity = animation.valueAt(time);
            return;
        case LayerProperty::ZPosition:
            values.zPosition = orderable(animation.valueAt(time));
            return;
        case LayerProperty::ScaleX:
            values.transform.scale.setX(animation.valueAt(time));
            return;
        case LayerProperty::ScaleY:
            values.transform.scale.setY(animation.valueAt(time));
            return;
        case LayerProperty::RotationZ:
            values.transform.rotation = animation.valueAt(time);
            return;
        case LayerProperty::TranslationX:
            values.transform.translation.setX(animation.valueAt(time));
            return;
        case LayerProperty::TranslationY:
            values.transform.translation.setY(animation.valueAt(time));
            return;
    }
}

}  // namespace

Linear LayerTransform::linear() const {
    if (rotation == 0) { return {scale.x(), 0, 0, scale.y()}; }
    const double cosine = std::cos(rotation);
    const double sine = std::sin(rotation);
    return {scale.x() * cosine, scale.x() * sine, -scale.y() * sine, scale.y() * cosine};
}

Layer::~Layer() {
    unlink();
    for (Layer* sublayer : m_sublayers) {
        sublayer->m_superlayer = nullptr;
    }
}

// Tree.

void Layer::insertSublayer(Layer& sublayer, size_t index) {
    for (const Layer* layer = this; layer; layer = layer->m_superlayer) {
        assertContract(layer != &sublayer, u"a layer cannot lie in itself"_s);
    }
    sublayer.unlink();
    m_sublayers.insert(std::min(index, m_sublayers.size()), &sublayer);
    sublayer.m_superlayer = this;
    m_sublayersThatAnimateOrder += sublayer.animatesOrder() ? 1 : 0;
    m_orderIsCurrent = false;
    if (sublayer.m_needsLayout || sublayer.m_belowNeedsLayout) { sublayer.setNeedsLayout(); }
}

void Layer::removeFromSuperlayer() {
    unlink();
}

void Layer::unlink() {
    if (!m_superlayer) { return; }
    Layer& super = *m_superlayer;
    super.m_sublayers.remove(*this);
    super.m_sublayersThatAnimateOrder -= animatesOrder() ? 1 : 0;
    super.m_orderIsCurrent = false;
    m_superlayer = nullptr;
}

const std::vector<Layer*>& Layer::sublayersInDrawingOrderAt(double time) const {
    const bool isAnimated = m_sublayersThatAnimateOrder > 0;
    if (m_orderIsCurrent && !isAnimated) { return m_drawingOrder; }
    const auto zPosition = [&](const Layer* layer) {
        return isAnimated ? layer->presentedAt(layer->localTimeAt(time)).zPosition
                          : layer->m_values.zPosition;
    };
    m_drawingOrder.assign(m_sublayers.begin(), m_sublayers.end());
    std::stable_sort(m_drawingOrder.begin(), m_drawingOrder.end(),
                     [&](const Layer* a, const Layer* b) { return zPosition(a) < zPosition(b); });
    m_orderIsCurrent = !isAnimated;
    return m_drawingOrder;
}

// Values.

const LayerStyle& Layer::style() const {
    static const LayerStyle plain;
    return m_style ? *m_style : plain;
}

void Layer::setStyle(const LayerStyle& style) {
    m_style = std::make_unique<LayerStyle>(style);
}

void Layer::setPosition(QPointF position) {
    m_values.position = position;
    valuesDidChange();
}

void Layer::setAnchorPoint(QPointF anchorPoint) {
    m_values.anchorPoint = anchorPoint;
    valuesDidChange();
}

void Layer::setBounds(const QRectF& bounds) {
    m_values.bounds = bounds;
    valuesDidChange();
}

void Layer::setTransform(const LayerTransform& transform) {
    m_values.transform = transform;
    m_linearIsCurrent = false;
    valuesDidChange();
}

void Layer::setOpacity(double opacity) {
    m_values.opacity = opacity;
    valuesDidChange();
}

void Layer::setContents(const QImage& contents) {
    m_values.contents = contents;
    valuesDidChange();
}

void Layer::setContentsScale(double scale) {
    m_values.contentsScale = scale;
    valuesDidChange();
}

void Layer::setZPosition(double zPosition) {
    if (m_values.zPosition == zPosition) { return; }
    m_values.zPosition = orderable(zPosition);
    if (m_superlayer) { m_superlayer->m_orderIsCurrent = false; }
    valuesDidChange();
}

void Layer::valuesDidChange() {
    if (m_running) { m_running->isCurrent = false; }
}

// Time.

double Layer::localTime() const {
    return localTimeAt(m_superlayer ? m_superlayer->localTime() : m_rootTime);
}

bool Layer::animatesOrder() const {
    if (!m_running) { return false; }
    const auto& animations = m_running->animations;
    return std::any_of(animations.begin(), animations.end(), [](const auto& entry) {
        return entry.second.property == LayerProperty::ZPosition;
    });
}

void Layer::animationsDidChange(bool animatedOrder) {
    valuesDidChange();
    if (!m_superlayer) { return; }
    m_superlayer->m_sublayersThatAnimateOrder +=
        (animatesOrder() ? 1 : 0) - (animatedOrder ? 1 : 0);
    m_superlayer->m_orderIsCurrent = false;
}

void Layer::addAnimation(KeyframeAnimation animation, const QString& key) {
    animation.check();
    const bool animatedOrder = animatesOrder();
    if (!m_running) { m_running = std::make_unique<Running>(); }
    auto& animations = m_running->animations;
    std::erase_if(animations, [&key](const auto& entry) { return entry.first == key; });
    animations.emplace_back(key, std::move(animation));
    animationsDidChange(animatedOrder);
}

void Layer::removeAnimationForKey(const QString& key) {
    if (!m_running) { return; }
    const bool animatedOrder = animatesOrder();
    std::erase_if(m_running->animations, [&key](const auto& entry) { return entry.first == key; });
    if (m_running->animations.empty()) { m_running.reset(); }
    animationsDidChange(animatedOrder);
}

void Layer::removeAllAnimations() {
    const bool animatedOrder = animatesOrder();
    m_running.reset();
    animationsDidChange(animatedOrder);
}

std::vector<QString> Layer::animationKeys() const {
    std::vector<QString> keys;
    if (!m_running) { return keys; }
    for (const auto& [key, animation] : m_running->animations) {
        keys.push_back(key);
    }
    return keys;
}

const KeyframeAnimation* Layer::animationForKey(const QString& key) const {
    if (!m_running) { return nullptr; }
    for (const auto& [otherKey, animation] : m_running->animations) {
        if (otherKey == key) { return &animation; }
    }
    return nullptr;
}

const LayerValues& Layer::presentedAt(double time) const {
    if (!m_running) { return m_values; }
    Running& running = *m_running;
    if (!running.isCurrent || running.time != time) {
        running.presented = m_values;
        for (const auto& [key, animation] : running.animations) {
            apply(animation, time, running.presented);
        }
        running.time = time;
        running.isCurrent = true;
    }
    return running.presented;
}

// Geometry.

Linear Layer::presentedLinear(const LayerValues& values) const {
    if (m_running) { return values.transform.linear(); }
    if (!m_linearIsCurrent) {
        m_linear = m_values.transform.linear();
        m_linearIsCurrent = true;
    }
    return m_linear;
}

Affine Layer::toSuperlayer() const {
    const LayerValues& values = presented();
    return affineOf(values, presentedLinear(values));
}

Affine Layer::toSuperlayerAt(double time) const {
    const LayerValues& values = presentedAt(time);
    return affineOf(values, presentedLinear(values));
}

std::optional<QPointF> Layer::fromSuperlayer(QPointF point) const {
    const LayerValues& values = presented();
    const auto fromAnchor = presentedLinear(values).unmap(point - anchorPlace(values));
    if (!fromAnchor) { return std::nullopt; }
    return *fromAnchor + anchorInPoints(values);
}

QPointF Layer::mapToAncestor(QPointF point, const Layer* ancestor) const {
    for (const Layer* layer = this; layer && layer != ancestor; layer = layer->m_superlayer) {
        point = layer->toSuperlayer().map(point);
    }
    return point;
}

std::optional<QPointF> Layer::mapFromAncestor(QPointF point, const Layer* ancestor) const {
    std::vector<const Layer*> way;
    for (const Layer* layer = this; layer && layer != ancestor; layer = layer->m_superlayer) {
        way.push_back(layer);
    }
    std::optional<QPointF> mapped = point;
    for (auto layer = way.rbegin(); layer != way.rend() && mapped; ++layer) {
        mapped = (*layer)->fromSuperlayer(*mapped);
    }
    return mapped;
}

namespace {

int depthOf(const Layer* layer) {
    int depth = 0;
    for (; layer; layer = layer->superlayer()) {
        ++depth;
    }
    return depth;
}

const Layer* commonAncestor(const Layer* a, const Layer* b) {
    int depthOfA = depthOf(a);
    int depthOfB = depthOf(b);
    for (; depthOfA > depthOfB; --depthOfA) {
        a = a->superlayer();
    }
    for (; depthOfB > depthOfA; --depthOfB) {
        b = b->superlayer();
    }
    while (a != b) {
        a = a->superlayer();
        b = b->superlayer();
    }
    return a;
}

}  // namespace

std::optional<QPointF> Layer::pointIn(const Layer* other, QPointF point) const {
    const Layer* common = commonAncestor(this, other);
    point = mapToAncestor(point, common);
    return other ? other->mapFromAncestor(point, common) : point;
}

QPointF Layer::convertPointTo(QPointF point, const Layer* other) const {
    const auto converted = pointIn(other, point);
    return converted ? *converted : anchorInPoints(other->presented());
}

QPointF Layer::convertPointFrom(QPointF point, const Layer* other) const {
    if (other) { return other->convertPointTo(point, this); }
    const auto converted = mapFromAncestor(point, nullptr);
    return converted ? *converted : anchorInPoints(presented());
}

QRectF Layer::convertRectTo(const QRectF& rect, const Layer* other) const {
    QPointF least = convertPointTo(rect.topLeft(), other);
    QPointF greatest = least;
    for (const QPointF corner : {rect.topRight(), rect.bottomRight(), rect.bottomLeft()}) {
        const QPointF point = convertPointTo(corner, other);
        least = {std::min(least.x(), point.x()), std::min(least.y(), point.y())};
        greatest = {std::max(greatest.x(), point.x()), std::max(greatest.y(), point.y())};
    }
    return {least, greatest};
}

QRectF Layer::frame() const {
    return toSuperlayer().mapRect(presented().bounds);
}

// Without a branch for each side: among thousands of layers they are wrongly guessed half of the
// time.
bool Layer::containsPoint(QPointF point) const {
    const auto isFrom = [](double value, double least, double end) {
        return static_cast<int>(value >= least) & static_cast<int>(value < end);
    };
    const QRectF& bounds = presented().bounds;
    return (isFrom(point.x(), bounds.x(), bounds.x() + bounds.width()) &
            isFrom(point.y(), bounds.y(), bounds.y() + bounds.height())) != 0;
}

// Thousands of layers are asked for one press: without calls between them their arithmetic
// overlaps.
[[gnu::flatten]] Layer* Layer::hitTest(QPointF point) {
    if (m_hidden) { return nullptr; }
    const auto own = fromSuperlayer(point);
    if (!own || (m_masksToBounds && !Layer::containsPoint(*own))) { return nullptr; }
    if (Layer* hit = hitBelow(*own)) { return hit; }
    return coversPoint(*own) ? this : nullptr;
}

Layer* Layer::hitBelow(QPointF point) const {
    if (m_sublayers.empty()) { return nullptr; }
    const std::vector<Layer*>& order = sublayersInDrawingOrder();
    for (auto layer = order.rbegin(); layer != order.rend(); ++layer) {
        if (Layer* hit = (*layer)->hitTest(point)) { return hit; }
    }
    return nullptr;
}

// Layout.

void Layer::setNeedsLayout() {
    m_needsLayout = true;
    for (Layer* layer = m_superlayer; layer && !layer->m_belowNeedsLayout;
         layer = layer->m_superlayer) {
        layer->m_belowNeedsLayout = true;
    }
}

void Layer::layoutIfNeeded() {
    if (std::exchange(m_needsLayout, false)) { layoutSublayers(); }
    if (!std::exchange(m_belowNeedsLayout, false)) { return; }
    for (Layer* sublayer : m_sublayers) {
        sublayer->layoutIfNeeded();
    }
}

}  // namespace tweenery
