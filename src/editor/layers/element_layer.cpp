#include "editor/layers/element_layer.h"

#include <cmath>
#include <unordered_map>

#include "base/errors.h"
#include "editor/layers/editor_layer.h"
#include "editor/layers/quadrilateral.h"
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

// The artwork of one pixel a point; null when there is none that can be read.
QImage artworkOf(const PCElement& element) {
    PCProject* project = element.project();
    if (!project) { return {}; }
    try {
        const auto set = project->imageSetManager().imageSetWithName(element.imageName());
        return set ? set->originalImageWithAppropriateScaling() : QImage();
    } catch (const InputError&) { return {}; }
}

}  // namespace

PCLayer::PCLayer() {
    setContentsGravity(ContentsGravity::Center);
}

PCLayer::~PCLayer() {
    if (m_editor) { m_editor->canvasLayerGoes(); }
}

PCLayer* PCLayer::of(const PCElement& element) {
    return dynamic_cast<PCLayer*>(&element.viewLayer());
}

bool PCLayer::isCanvasLayer() const {
    return m_element && m_element->isCanvas();
}

PCLayer* PCLayer::canvasLayer() const {
    PCProject* project = m_element ? m_element->project() : nullptr;
    return project && project->canvas() ? of(*project->canvas()) : nullptr;
}

void PCLayer::setElement(PCElement* element) {
    m_element = element;
    if (!element) { return; }
    if (element->isCanvas()) {
        syncBoundsWithModel();
    } else {
        syncWithModel();
    }
}

// Setup state.

void PCLayer::syncWithModel() {
    if (!m_element || isCanvasLayer()) { return; }
    setZPosition(0);
    setBounds({QPointF(), m_element->size()});
    setPosition(m_element->position());
    setAnchorPoint(m_element->anchorPoint());
    setTransform({m_element->scale(), m_element->zRotation(), {}});
    syncHiddenWithModel();
    syncContentsWithModel();
}

void PCLayer::syncBoundsWithModel() {
    setBounds({QPointF(), m_element->size()});
    syncBorder();
}

void PCLayer::syncPositionWithModel() {
    setPosition(m_element->position());
    syncBorder();
}

void PCLayer::syncTransformsWithModel() {
    setTransform({m_element->scale(), m_element->zRotation(), {}});
    setAnchorPoint(m_element->anchorPoint());
    syncBorder();
}

void PCLayer::syncAnchorPointWithModel() {
    setAnchorPoint(m_element->anchorPoint());
    setPosition(m_element->position());
    syncBorder();
}

void PCLayer::syncOpacityWithModel() {
    setOpacity(m_element->opacity());
}

void PCLayer::syncHiddenWithModel() {
    setOpacity(m_element->hidden() ? 0 : m_element->opacity());
}

void PCLayer::syncContentsWithModel() {
    PCProject* project = m_element->project();
    const auto set =
        project ? project->imageSetManager().imageSetWithName(m_element->imageName()) : nullptr;
    if (set) {
        const double scale = set->has2XArtwork() ? project->backingScale() : 1;
        showImage(m_element->imageName(), scale);
        setContentsScale(scale);
    } else {
        showImage({}, 1);
    }
    syncBorder();
}

void PCLayer::showImage(const QString& name, double backingScale) {
    PCProject* project = m_element->project();
    const uint64_t revision = project ? project->imageSetManager().revision() : 0;
    ShownImage& shown = m_shownImage;
    if (shown.isKnown && shown.revision == revision && shown.backingScale == backingScale &&
        shown.name == name) {
        return;
    }
    shown = {name, backingScale, revision, true};
    try {
        setContents(project && !name.isEmpty()
                        ? project->imageSetManager().imageWithName(name, backingScale)
                        : QImage());
    } catch (const InputError&) { setContents({}); }
}

// State at a time.

void PCLayer::syncWithModelAtTimeInMS(int32_t timeInMS) {
    if (!m_element || isCanvasLayer()) { return; }
    PCProject* project = m_element->project();
    if (!project || project->isSetupMode()) { return; }
    const ElementValues values = m_element->valuesAtTimeInMS(std::max(timeInMS, 0));
    setTransform({values.scale, static_cast<double>(values.rotation), {}});
    setPosition(placeOrZero(m_element->position() + values.translation));
    if (!m_element->isGroup()) { showImage(*values.image, project->backingScale()); }
    setOpacity(m_element->hidden() ? 0 : static_cast<double>(values.opacity));
    syncBorder();
}

void PCLayer::syncHiddenWithModelAtTimeInMS(int32_t timeInMS) {
    setOpacity(m_element->hidden()
                   ? 0
                   : static_cast<double>(m_element->opacityAtTimeInMS(std::max(timeInMS, 0))));
}

void PCLayer::syncZIndexWithModelAtTimeInMS(int32_t timeInMS) {
    if (!m_element || isCanvasLayer() || !m_element->parentElement()) { return; }
    const auto timeline = m_element->parentElement()->childrenZPositionsTimeline();
    if (!timeline) { return; }
    const auto place = timeline->arrayValueAtTimeInMS(std::max(timeInMS, 0))
                           .indexOf(m_element->identifier().toString());
    setZPosition(place < 0 ? m_element->index() : static_cast<double>(place));
}

// Border.

void PCLayer::syncBorder() {
    if (m_borderLayer) { m_borderLayer->syncWithBorderedLayer(); }
    // The borders of elements within a group follow before the next drawing.
    if (sublayers().empty()) { return; }
    if (PCLayer* canvas = canvasLayer()) { canvas->setNeedsLayout(); }
}

void PCLayer::layoutSublayers() {
    if (!isCanvasLayer()) { return; }
    for (Layer* sublayer : sublayers()) {
        if (auto* border = dynamic_cast<PCBorderLayer*>(sublayer)) {
            border->syncWithBorderedLayer();
        }
    }
}

void PCLayer::setSelected(bool selected) {
    m_selected = selected;
    if (!m_element) { return; }
    setPosition(m_element->position());
    m_borderLayer.reset();
    if (selected) { showBorder(); }
}

void PCLayer::showBorder() {
    m_borderLayer = PCBorderLayer::layerWithLayerToBorder(*this);
    m_borderLayer->setZPosition(kBorderZPosition);
    PCProject* project = m_element->project();
    const bool isSetupMode = !project || project->isSetupMode();
    m_borderLayer->setColorOfBorder(isSetupMode ? TweeneryStyle::setupBorderColor()
                                                : TweeneryStyle::keyedBorderColor());
    if (PCLayer* canvas = canvasLayer()) {
        canvas->addSublayer(static_cast<Layer&>(*m_borderLayer));
    }
    m_borderLayer->syncWithBorderedLayer();
}

// Tree.

void PCLayer::addSublayer(ElementViewLayer& sublayer) {
    if (auto* layer = dynamic_cast<PCLayer*>(&sublayer)) { Layer::addSublayer(*layer); }
}

void PCLayer::insertSublayer(ElementViewLayer& sublayer, uint32_t index) {
    if (auto* layer = dynamic_cast<PCLayer*>(&sublayer)) { Layer::insertSublayer(*layer, index); }
}

void PCLayer::removeFromSuperlayer() {
    if (m_borderLayer) { m_borderLayer->removeFromSuperlayer(); }
    Layer::removeFromSuperlayer();
}

// Animations.

void PCLayer::addAnimationForProperty(PCPropertyType type) {
    assertContract(elementTimelineSlot(type) >= 0,
                   u"* propertytype not supported for generating animations"_s);
    const QString key = keyPathForPropertyType(type);
    removeAnimationForKey(key);
    PCProject* project = m_element->project();
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

// All layers.

PCLayerFactory& PCLayerFactory::shared() {
    static PCLayerFactory factory;
    return factory;
}

namespace {

template <typename Sync>
void syncBelow(PCElement& element, const Sync& sync) {
    for (const PCElement::Ptr& child : element.children()) {
        if (PCLayer* layer = PCLayer::of(*child)) { sync(*layer); }
        syncBelow(*child, sync);
    }
}

// Gives the children their places in the stored order; those that it does not name keep their own.
void stackChildren(PCElement& parent, const QStringList& order) {
    std::unordered_map<Identifier, int> placeOf;
    for (int place = 0; place < static_cast<int>(order.size()); ++place) {
        placeOf.emplace(Identifier(order[place]), place);
    }
    int index = 0;
    for (const PCElement::Ptr& child : parent.children()) {
        const auto found = placeOf.find(child->identifier());
        PCLayer* layer = PCLayer::of(*child);
        if (layer) { layer->setZPosition(found == placeOf.end() ? index : found->second); }
        ++index;
    }
}

void stackBelow(PCElement& parent, int32_t timeInMS) {
    if (parent.children().empty()) { return; }
    const auto timeline = parent.childrenZPositionsTimeline();
    const bool isKeyed = timeline && !timeline->isEmpty();
    stackChildren(parent, isKeyed ? timeline->arrayValueAtTimeInMS(timeInMS) : QStringList());
    for (const PCElement::Ptr& child : parent.children()) {
        stackBelow(*child, timeInMS);
    }
}

}  // namespace

void syncLayersWithModel(PCProject& project) {
    syncBelow(*project.canvas(), [](PCLayer& layer) { layer.syncWithModel(); });
}

void syncLayersWithModelAtTimeInMS(PCProject& project, int32_t timeInMS) {
    if (project.isSetupMode()) { return; }
    syncBelow(*project.canvas(),
              [timeInMS](PCLayer& layer) { layer.syncWithModelAtTimeInMS(timeInMS); });
    stackBelow(*project.canvas(), std::max(timeInMS, 0));
}

}  // namespace tweenery
