#include "editor/layers/project_layers.h"

#include <cmath>
#include <unordered_map>
#include <utility>

#include "model/project.h"

namespace tweenery {
namespace {

// More rectangles than these are not worth telling apart.
constexpr size_t kMostAreas = 1000;

// Nothing for what is not placed by finite numbers: it does not show.
QRectF finiteOrNull(const QRectF& rect) {
    const bool isFinite = std::isfinite(rect.x() + rect.y() + rect.width() + rect.height());
    return isFinite ? rect : QRectF();
}

// All that the layer itself draws, in its own coordinates.
QRectF drawnPartOf(const PCLayer& layer) {
    if (layer.contents().isNull()) { return {}; }
    const QSizeF size = QSizeF(layer.contents().size()) / layer.contentsScale();
    const QPointF corner = layer.bounds().center() - QPointF(size.width() / 2, size.height() / 2);
    return {corner, size};
}

std::unordered_map<Identifier, double> placesIn(const QStringList& order) {
    std::unordered_map<Identifier, double> places;
    for (qsizetype place = 0; place < order.size(); ++place) {
        places.emplace(Identifier(order[place]), static_cast<double>(place));
    }
    return places;
}

}  // namespace

bool ProjectLayers::Magnification::operator==(const Magnification& other) const {
    return scale.x() == other.scale.x() && scale.y() == other.scale.y() &&
           zoomLevel == other.zoomLevel && backingScale == other.backingScale;
}

ProjectLayers::Ptr ProjectLayers::forProject(const std::shared_ptr<PCProject>& project,
                                             Schedule schedule) {
    auto layers = std::make_shared<ProjectLayers>(Passkey(), project, std::move(schedule));
    layers->m_imagesRevision = project->imageSetManager().revision();
    project->setViewLayerFactory(layers.get());
    return layers;
}

ProjectLayers::~ProjectLayers() {
    const auto project = m_project.lock();
    if (project && project->viewLayerFactory() == this) { project->setViewLayerFactory(nullptr); }
}

std::unique_ptr<ElementViewLayer> ProjectLayers::layer() {
    return std::make_unique<PCLayer>(shared_from_this());
}

void ProjectLayers::show(EditTime time) {
    if (time == m_shown) { return; }
    m_shown = time;
    m_allAreStale = true;
    awaitUpdate();
}

void ProjectLayers::awaitUpdate() {
    if (!std::exchange(m_isUpdateAwaited, true)) {
        const auto project = m_project.lock();
        PCLayer* canvas = project ? PCLayer::of(*project->canvas()) : nullptr;
        if (canvas) { canvas->setNeedsLayout(); }
    }
    if (!std::exchange(m_isScheduled, true) && m_schedule) { m_schedule(); }
}

// What layers tell.

void ProjectLayers::layerIsStale(PCLayer& layer) {
    layer.m_isStale = true;
    layer.m_placeAmongStale = m_stale.size();
    m_stale.push_back(&layer);
    awaitUpdate();
}

void ProjectLayers::layerGoes(PCLayer& layer) {
    if (layer.m_isStale) { m_stale[layer.m_placeAmongStale] = nullptr; }
    layer.m_isStale = false;
    layerLeavesTree(layer);
}

void ProjectLayers::layerLeavesTree(PCLayer& layer) {
    repaint(layer.m_painted, {});
    repaint(layer.m_paintedBorder, {});
}

void ProjectLayers::borderDidChange(PCLayer& layer) {
    if (!layer.borderLayer()) { repaint(layer.m_paintedBorder, {}); }
    layer.m_needsPlacing = true;
    layer.elementDidChange();
}

void ProjectLayers::repaintEverything() {
    m_repaintsEverything = true;
    awaitUpdate();
}

void ProjectLayers::repaint(QRectF& painted, const QRectF& now) {
    const QRectF before = std::exchange(painted, now);
    if (before.isNull() && now.isNull()) { return; }
    if (m_toRepaint.size() > kMostAreas) { m_repaintsEverything = true; }
    if (m_repaintsEverything) { m_toRepaint.clear(); }
    if (!before.isNull()) { m_toRepaint.push_back(before); }
    const bool moved = before.topLeft() != now.topLeft() || before.size() != now.size();
    if (moved && !now.isNull()) { m_toRepaint.push_back(now); }
    awaitUpdate();
}

PCElement::Elements ProjectLayers::changedElements() const {
    PCElement::Elements elements;
    for (const PCLayer* layer : m_stale) {
        if (!layer || (layer->m_stackingIsStale && !layer->m_needsPlacing)) { continue; }
        PCElement* element = layer->element();
        if (element && element->project()) { elements.push_back(element->shared_from_this()); }
    }
    return elements;
}

// Updates.

std::vector<QRectF> ProjectLayers::flush() {
    update();
    m_isScheduled = false;
    std::vector<QRectF> areas = std::exchange(m_toRepaint, {});
    if (std::exchange(m_repaintsEverything, false)) { areas = {kEverywhere}; }
    return areas;
}

void ProjectLayers::update() {
    const auto project = m_project.lock();
    PCLayer* canvas = project ? PCLayer::of(*project->canvas()) : nullptr;
    if (!canvas) { return; }
    noticeSurroundings(*project);
    if (!m_isUpdateAwaited) { return; }
    copyStale(*project);
    placeChanged(*project);
    m_isUpdateAwaited = false;
}

// What no element tells of: images that were replaced, and how large the screen shows the canvas.
void ProjectLayers::noticeSurroundings(PCProject& project) {
    const uint64_t revision = project.imageSetManager().revision();
    if (std::exchange(m_imagesRevision, revision) != revision) {
        m_allAreStale = true;
        awaitUpdate();
    }
    const PCLayer& canvas = *PCLayer::of(*project.canvas());
    const Magnification magnification{
        canvas.transform().scale, project.preferences().canvasZoomLevel(), project.backingScale()};
    if (std::exchange(m_magnification, magnification) == magnification) { return; }
    repaintEverything();
    for (Layer* sublayer : canvas.sublayers()) {
        auto* border = dynamic_cast<PCBorderLayer*>(sublayer);
        auto* bordered = border ? dynamic_cast<PCLayer*>(&border->borderedLayer()) : nullptr;
        if (bordered) { borderDidChange(*bordered); }
    }
}

EditTime ProjectLayers::effectiveTime(PCProject& project) const {
    return project.isSetupMode() ? EditTime::setup() : m_shown;
}

void ProjectLayers::copyStale(PCProject& project) {
    const EditTime time = effectiveTime(project);
    for (PCLayer* layer : std::exchange(m_stale, {})) {
        if (!layer) { continue; }
        layer->m_isStale = false;
        copy(*layer, time);
    }
    if (std::exchange(m_allAreStale, false)) { copyBelow(*PCLayer::of(*project.canvas()), time); }
}

void ProjectLayers::copyBelow(PCLayer& layer, EditTime time) {
    copy(layer, time);
    for (const PCElement::Ptr& child : layer.element()->children()) {
        if (PCLayer* below = PCLayer::of(*child)) { copyBelow(*below, time); }
    }
}

void ProjectLayers::copy(PCLayer& layer, EditTime time) {
    if (!layer.element() || !layer.element()->project()) { return; }
    if (layer.isCanvasLayer()) {
        if (layer.copyCanvas()) { m_repaintsEverything = true; }
    } else if (layer.copyElement(time)) {
        setHasChanged(layer);
    }
    if (layer.m_needsPlacing) { setHasChanged(layer); }
    stackChildren(layer, time);
}

void ProjectLayers::stackChildren(PCLayer& layer, EditTime time) {
    const bool isStale = std::exchange(layer.m_stackingIsStale, false);
    const ElementList& children = layer.element()->children();
    if (children.empty()) { return; }
    auto order = layer.stackingAt(time);
    if (!isStale && order == layer.m_stackedBy) { return; }
    const auto places = placesIn(order.value_or(QStringList()));
    double index = 0;
    for (const PCElement::Ptr& child : children) {
        const double own = index++;
        PCLayer* below = PCLayer::of(*child);
        if (!below) { continue; }
        const auto found = places.find(child->identifier());
        // Who is not named keeps its own place.
        const double place = !order ? 0 : found == places.end() ? own : found->second;
        if (below->zPosition() == place) { continue; }
        below->setZPosition(place);
        setHasChanged(*below);
    }
    layer.m_stackedBy = std::move(order);
}

void ProjectLayers::setHasChanged(PCLayer& layer) {
    if (std::exchange(layer.m_hasChanged, true)) { return; }
    m_changed.push_back(&layer);
}

// Those in a group that has changed come with the group.
void ProjectLayers::placeChanged(PCProject& project) {
    const Layer* canvas = PCLayer::of(*project.canvas());
    for (PCLayer* layer : m_changed) {
        Affine toCanvas;
        const Layer* above = layer->superlayer();
        bool comesWithGroup = false;
        for (; above && above != canvas; above = above->superlayer()) {
            const auto* group = dynamic_cast<const PCLayer*>(above);
            comesWithGroup = comesWithGroup || (group && group->m_hasChanged);
            toCanvas = toCanvas.then(above->toSuperlayer());
        }
        if (above == canvas && !comesWithGroup) { place(*layer, toCanvas); }
    }
    for (PCLayer* layer : std::exchange(m_changed, {})) {
        layer->m_hasChanged = false;
    }
}

void ProjectLayers::place(PCLayer& layer, const Affine& parentToCanvas) {
    const Affine toCanvas = layer.toSuperlayer().then(parentToCanvas);
    const QRectF drawn = drawnPartOf(layer);
    repaint(layer.m_painted, drawn.isEmpty() ? QRectF() : finiteOrNull(toCanvas.mapRect(drawn)));
    placeBorder(layer);
    for (const PCElement::Ptr& child : layer.element()->children()) {
        if (PCLayer* below = PCLayer::of(*child)) { place(*below, toCanvas); }
    }
}

void ProjectLayers::placeBorder(PCLayer& layer) {
    layer.m_needsPlacing = false;
    PCBorderLayer* border = layer.borderLayer();
    if (!border) { return; }
    border->syncWithBorderedLayer();
    repaint(layer.m_paintedBorder, finiteOrNull(border->drawnRect()));
}

}  // namespace tweenery
