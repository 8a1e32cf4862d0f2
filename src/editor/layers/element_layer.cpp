#include "editor/layers/element_layer.h"

#include <algorithm>
#include <cmath>

#include "base/errors.h"
#include "editor/layers/quadrilateral.h"
#include "editor/layers/screen_image.h"
#include "editor/layers/timeline_animations.h"
#include "editor/layers/tweenery_style.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kBorderZPosition = 10'000;
constexpr int kLeastVisibleAlpha = 51;  // of 255

QPointF placeOrZero(QPointF place) {
    return std::isnan(place.x()) || std::isnan(place.y()) ? QPointF() : place;
}

// The operators of these types compare with some room.
bool same(QPointF a, QPointF b) {
    return a.x() == b.x() && a.y() == b.y();
}

bool same(const QRectF& a, const QRectF& b) {
    return a.x() == b.x() && a.y() == b.y() && a.width() == b.width() && a.height() == b.height();
}

bool same(const LayerTransform& a, const LayerTransform& b) {
    return same(a.scale, b.scale) && a.rotation == b.rotation && same(a.translation, b.translation);
}

// Copies a value into a layer that has another one; says whether it did.
template <typename Value>
bool copy(const Value& value, const Value& shown, Layer& layer,
          void (Layer::*set)(const Value& value)) {
    if (same(value, shown)) { return false; }
    (layer.*set)(value);
    return true;
}

bool copyPlace(Layer& layer, QPointF position, QPointF anchorPoint) {
    if (same(position, layer.position()) && same(anchorPoint, layer.anchorPoint())) {
        return false;
    }
    layer.setPosition(position);
    layer.setAnchorPoint(anchorPoint);
    return true;
}

bool copyOpacity(Layer& layer, double opacity) {
    if (opacity == layer.opacity()) { return false; }
    layer.setOpacity(opacity);
    return true;
}

// The artwork of one pixel a point; null when there is none that can be read.
QImage artworkOf(const PCElement& element) {
    EditContext* project = element.project();
    if (!project) { return {}; }
    try {
        const auto set = project->imageSetManager().imageSetWithName(element.imageName());
        return set ? set->originalImageWithAppropriateScaling() : QImage();
    } catch (const InputError&) { return {}; }
}

// Calls `visit` for the layer and all element layers below it.
template <typename Visit>
void forEachFrom(PCLayer& layer, const Visit& visit) {
    visit(layer);
    for (Layer* sublayer : layer.sublayers()) {
        if (auto* below = dynamic_cast<PCLayer*>(sublayer)) { forEachFrom(*below, visit); }
    }
}

}  // namespace

PCLayer::~PCLayer() {
    if (m_holder) { m_holder->canvasLayerGoes(); }
    if (ElementLayerKeeper* keeper = m_keeper.get()) { keeper->layerGoes(*this); }
}

PCLayer* PCLayer::of(const PCElement& element) {
    return dynamic_cast<PCLayer*>(&element.viewLayer());
}

bool PCLayer::isCanvasLayer() const {
    return m_element && m_element->isCanvas();
}

PCLayer* PCLayer::canvasLayer() const {
    EditContext* project = m_element ? m_element->project() : nullptr;
    return project && project->canvas() ? of(*project->canvas()) : nullptr;
}

void PCLayer::updateIfNeeded() const {
    if (ElementLayerKeeper* keeper = m_keeper.get()) { keeper->update(); }
}

void PCLayer::setElement(PCElement* element) {
    m_element = element;
    if (element) { elementDidChange(); }
}

void PCLayer::elementDidChange() {
    if (m_isStale) { return; }
    if (ElementLayerKeeper* keeper = m_keeper.get()) { keeper->layerIsStale(*this); }
}

void PCLayer::repaintEverything() {
    if (ElementLayerKeeper* keeper = m_keeper.get()) { keeper->repaintEverything(); }
}

void PCLayer::childrenDidChange() {
    m_stackingIsStale = true;
    elementDidChange();
}

// Copying the model.

bool PCLayer::copyElement(EditTime time) {
    const PCElement& element = *m_element;
    QPointF position = element.position();
    LayerTransform transform{element.scale(), element.zRotation(), {}};
    double opacity = element.opacity();
    const QString* image = &element.imageName();
    if (!time.isSetup()) {
        const ElementValues values = element.valuesAtTimeInMS(time.timeInMS());
        position = placeOrZero(position + values.translation);
        transform = {values.scale, static_cast<double>(values.rotation), {}};
        opacity = static_cast<double>(values.opacity);
        image = values.image;
    }
    bool changed = copyPlace(*this, position, element.anchorPoint());
    changed |= copy({QPointF(), element.size()}, bounds(), *this, &Layer::setBounds);
    changed |= copy(transform, this->transform(), *this, &Layer::setTransform);
    changed |= copyOpacity(*this, element.hidden() ? 0 : opacity);
    changed |= copyImage(*image);
    return changed;
}

// Its place on the screen is the editor's business; the element's own does not take part.
bool PCLayer::copyCanvas() {
    return copy({QPointF(), m_element->size()}, bounds(), *this, &Layer::setBounds);
}

bool PCLayer::copyImage(const QString& name) {
    EditContext& project = *m_element->project();
    const ShownImage image{name, project.backingScale(), project.imageSetManager().revision(),
                           true};
    ShownImage& shown = m_shownImage;
    if (shown.isKnown && shown.revision == image.revision &&
        shown.backingScale == image.backingScale && shown.name == image.name) {
        return false;
    }
    shown = image;
    const ScreenImage onScreen = screenImageWithName(project, name);
    if (onScreen.image.cacheKey() == contents().cacheKey() && onScreen.scale == contentsScale()) {
        return false;
    }
    setContents(onScreen.image);
    setContentsScale(onScreen.scale);
    return true;
}

std::optional<QStringList> PCLayer::stackingAt(EditTime time) const {
    if (time.isSetup()) { return std::nullopt; }
    const auto timeline = m_element->childrenZPositionsTimeline();
    const bool isKeyed = timeline && !timeline->isEmpty();
    return isKeyed ? timeline->arrayValueAtTimeInMS(time.timeInMS()) : QStringList();
}

// Border.

void PCLayer::layoutSublayers() {
    updateIfNeeded();
}

void PCLayer::setSelected(bool selected) {
    const bool hadBorder = m_borderLayer != nullptr;
    m_selected = selected;
    m_borderLayer.reset();
    if (selected && m_element) { showBorder(); }
    if (hadBorder == selected) { return; }
    if (ElementLayerKeeper* keeper = m_keeper.get()) { keeper->borderDidChange(*this); }
}

void PCLayer::showBorder() {
    m_borderLayer = PCBorderLayer::layerWithLayerToBorder(*this);
    m_borderLayer->setZPosition(kBorderZPosition);
    EditContext* project = m_element->project();
    const bool isSetupMode = !project || project->isSetupMode();
    m_borderLayer->setColorOfBorder(isSetupMode ? TweeneryStyle::setupBorderColor()
                                                : TweeneryStyle::keyedBorderColor());
    if (PCLayer* canvas = canvasLayer()) {
        canvas->addSublayer(static_cast<Layer&>(*m_borderLayer));
    }
}

// Tree.

void PCLayer::addSublayer(ElementViewLayer& sublayer) {
    insertSublayer(sublayer, UINT32_MAX);
}

void PCLayer::insertSublayer(ElementViewLayer& sublayer, uint32_t index) {
    auto* layer = dynamic_cast<PCLayer*>(&sublayer);
    if (!layer) { return; }
    Layer::insertSublayer(*layer, index);
    layer->adopt(m_keeper);
    childrenDidChange();
}

// What was changed while it was in no tree, or shown by others, is copied now.
void PCLayer::adopt(const WeakRef<ElementLayerKeeper>& keeper) {
    forEachFrom(*this, [this, &keeper](PCLayer& layer) {
        if (ElementLayerKeeper* others = layer.m_keeper.get(); others != keeper.get()) {
            if (others) { others->layerGoes(layer); }
            layer.m_keeper = keeper;
            layer.m_isStale = false;
        }
        layer.m_stackingIsStale = true;
        layer.m_needsPlacing = true;
        layer.elementDidChange();
        PCLayer* canvas = layer.m_borderLayer ? canvasLayer() : nullptr;
        if (canvas) { canvas->addSublayer(static_cast<Layer&>(*layer.m_borderLayer)); }
    });
}

void PCLayer::removeFromSuperlayer() {
    ElementLayerKeeper* keeper = m_keeper.get();
    forEachFrom(*this, [keeper](PCLayer& layer) {
        if (layer.m_borderLayer) { layer.m_borderLayer->removeFromSuperlayer(); }
        if (keeper) { keeper->layerLeavesTree(layer); }
    });
    if (auto* parent = dynamic_cast<PCLayer*>(superlayer())) { parent->childrenDidChange(); }
    Layer::removeFromSuperlayer();
}

// Animations.

void PCLayer::removeAllAnimations() {
    if (!isAnimated()) { return; }
    Layer::removeAllAnimations();
    repaintEverything();
}

void PCLayer::addAnimationForProperty(PCPropertyType type) {
    assertContract(elementTimelineSlot(type) >= 0,
                   u"* propertytype not supported for generating animations"_s);
    const QString key = keyPathForPropertyType(type);
    removeAnimationForKey(key);
    EditContext* project = m_element->project();
    const auto timeline = m_element->timeline(type);
    if (!project || !timeline) { return; }
    if (auto animation = TimelineAnimations(*project).animation(*timeline)) {
        addAnimation(std::move(*animation), key);
    }
}

void PCLayer::addAllPropertyAnimations() {
    addAllPropertyAnimationsExceptZIndex();
    addAnimationForProperty(PCPropertyTypeChildrenZPositions);
}

void PCLayer::addAllPropertyAnimationsExceptZIndex() {
    for (const PCPropertyType type : elementTimelineTypes()) {
        if (type != PCPropertyTypeChildrenZPositions) { addAnimationForProperty(type); }
    }
}

// Hits.

bool PCLayer::isOwnedByBorder(QPointF point) const {
    if (!m_selected || !m_borderLayer) { return false; }
    const PCBorderLocation location =
        m_borderLayer->borderLocationForPoint(convertPointTo(point, m_borderLayer.get()));
    return location > PCBorderLocationDrag;
}

bool PCLayer::imageCovers(QPointF point) const {
    const QImage artwork = artworkOf(*m_element);
    if (!rectHolds(artwork.rect(), point)) { return false; }
    const QPoint pixel(static_cast<int>(point.x()), static_cast<int>(point.y()));
    return qAlpha(artwork.pixel(pixel)) >= kLeastVisibleAlpha;
}

bool PCLayer::coversPoint(QPointF point) const {
    if (!m_element) { return false; }
    if (isOwnedByBorder(point)) { return true; }
    if (m_element->locked() || !Layer::containsPoint(point)) { return false; }
    return !m_element->isGroup() && !isCanvasLayer() && imageCovers(point);
}

bool PCLayer::containsPoint(QPointF point) const {
    if (coversPoint(point)) { return true; }
    if (!m_element || m_element->locked() || isCanvasLayer() || !Layer::containsPoint(point)) {
        return false;
    }
    return std::any_of(m_element->children().begin(), m_element->children().end(),
                       [point](const PCElement::Ptr& child) {
                           const PCLayer* layer = of(*child);
                           const auto own = layer ? layer->fromSuperlayer(point) : std::nullopt;
                           return own && layer->containsPoint(*own);
                       });
}

}  // namespace tweenery
