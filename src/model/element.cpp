#include "model/element.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/errors.h"
#include "model/edit_context.h"
#include "model/element_sampler.h"
#include "scene/affine.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

ElementViewLayer& layerThatDoesNothing() {
    static ElementViewLayer layer;
    return layer;
}

// QTransform's own gives up on elements that are very small on the canvas.
QTransform inverse(const QTransform& t) {
    const double determinant = t.m11() * t.m22() - t.m12() * t.m21();
    if (determinant == 0) { return {}; }
    const double m11 = t.m22() / determinant;
    const double m12 = -t.m12() / determinant;
    const double m21 = -t.m21() / determinant;
    const double m22 = t.m11() / determinant;
    return {m11, m12, m21, m22, -(t.dx() * m11 + t.dy() * m21), -(t.dx() * m12 + t.dy() * m22)};
}

}  // namespace

// Creation.

PCElement::PCElement(Passkey) : m_identifier(Identifier::generate()) {}

PCElement::~PCElement() {
    for (const Ptr& child : m_subelements) {
        if (child->m_parent == this) { child->m_parent = nullptr; }
    }
}

PCElement::Ptr PCElement::make() {
    return std::make_shared<PCElement>(Passkey());
}

PCElement::Ptr PCElement::init() {
    Ptr element = make();
    element->m_name = u"Untitled"_s;
    return element;
}

PCElement::Ptr PCElement::makeGroup() {
    Ptr element = init();
    element->m_group = true;
    return element;
}

PCElement::Ptr PCElement::makeCanvas() {
    Ptr element = makeGroup();
    element->m_name = u"Canvas"_s;
    element->m_size = QSizeF(1136, 768);
    element->m_modified = true;  // not in any package yet
    return element;
}

PCElement::Ptr PCElement::elementByDuplicatingElement(const PCElement& source) {
    Ptr copy = init();
    copy->m_project = source.m_project;
    copy->m_imageName = source.m_imageName;
    copy->m_size = source.m_size;
    copy->m_group = source.m_group;
    copy->m_name = source.m_name;
    copy->m_scale = source.m_scale;
    copy->m_zRotation = source.m_zRotation;
    copy->m_opacity = source.m_opacity;
    copy->m_anchorPoint = source.m_anchorPoint;
    copy->m_hidden = source.m_hidden;
    copy->m_position = source.m_position;
    for (const Ptr& child : source.m_subelements) {
        Ptr childCopy = elementByDuplicatingElement(*child);
        childCopy->m_parent = copy.get();
        copy->m_subelements.push_back(std::move(childCopy));
    }
    return copy;
}

const QString& PCElement::name() const {
    static const QString kEmpty = u""_s;
    return m_name.isNull() ? kEmpty : m_name;
}

// Tree.

bool PCElement::isCanvas() const {
    const EditContext* owner = m_project.get();
    return owner && owner->canvas().get() == this;
}

PCElement* PCElement::parentElement() const {
    return isCanvas() ? nullptr : m_parent;
}

int32_t PCElement::index() const {
    if (!m_parent) { failContract(u"an element without a parent has no index"_s); }
    return static_cast<int32_t>(m_parent->m_subelements.indexOf(*this));
}

void PCElement::setProject(const std::shared_ptr<EditContext>& project) {
    if (m_project.get() == project.get()) { return; }
    m_project = WeakRef<EditContext>(project);
    for (const Ptr& child : m_subelements) {
        child->setProject(project);
    }
}

void PCElement::insertSubelement(const Ptr& child, size_t index) {
    assertContract(child->m_parent == nullptr, u"the element is in a tree already"_s);
    if (m_project.get() && !isPlayedBack()) { requireRoomFor(*child, depth()); }
    index = std::min(index, m_subelements.size());
    registerUndo([index](PCElement& self) { self.removeSubelementAtIndex(index); });
    m_subelements.insert(index, child);
    child->m_parent = this;
    child->setProject(m_project.lock());
    if (EditContext* owner = project()) {
        owner->treeDidInsertElement(*child);
        child->updateNameToBeUnique();
    }
    if (!child->m_viewLayer) { child->rebuildViewLayerHeirarchy(); }
    viewLayer().insertSublayer(child->viewLayer(), static_cast<uint32_t>(index));
    setModified(true);
    post(ElementNotification::subelements);
}

void PCElement::removeSubelementAtIndex(size_t index) {
    assertContract(index < m_subelements.size(), u"no subelement at this index"_s);
    const Ptr child = m_subelements[index];
    registerUndo([child, index](PCElement& self) { self.insertSubelement(child, index); });
    if (EditContext* owner = project()) { owner->treeWillRemoveElement(*child); }
    child->m_parent = nullptr;
    child->viewLayer().removeFromSuperlayer();
    m_subelements.removeAt(index);
    setModified(true);
    post(ElementNotification::subelements);
}

void PCElement::removeFromParentElement() {
    assertContract(m_parent != nullptr, u"the element has no parent to be removed from"_s);
    m_parent->removeSubelementAtIndex(static_cast<size_t>(index()));
}

void PCElement::moveToParentElement(const Ptr& parent, size_t index) {
    assertContract(m_parent && project() == parent->project(),
                   u"an element moves within its project only"_s);
    const Ptr self = shared_from_this();
    const Ptr oldParent = m_parent->shared_from_this();
    if (oldParent != parent && !isPlayedBack()) { requireRoomFor(*this, parent->depth()); }
    const auto oldIndex = static_cast<size_t>(this->index());
    registerUndo([oldParent, oldIndex](PCElement& moved) {
        moved.moveToParentElement(oldParent, oldIndex);
    });
    viewLayer().removeFromSuperlayer();
    oldParent->m_subelements.removeAt(oldIndex);
    index = std::min(index, parent->m_subelements.size());
    parent->m_subelements.insert(index, self);
    m_parent = parent.get();
    if (EditContext* owner = project()) {
        owner->treeDidMoveElement();
        updateNameToBeUnique();
    }
    parent->viewLayer().insertSublayer(viewLayer(), static_cast<uint32_t>(index));
    oldParent->setModified(true);
    parent->setModified(true);
    if (oldParent != parent) { oldParent->post(ElementNotification::subelements); }
    parent->post(ElementNotification::subelements);
}

// Stored without a notification.
void PCElement::updateNameToBeUnique() {
    EditContext* owner = project();
    if (!owner || isPlayedBack()) { return; }
    if (!m_name.isNull()) {
        const QString unique = owner->uniqueElementNameWithBase(m_name, this);
        if (unique != m_name) {
            registerUndoOf(Field::Name, [old = m_name](PCElement& self) { self.setName(old); });
            storeName(unique);
        }
    }
    for (const Ptr& child : m_subelements) {
        child->updateNameToBeUnique();
    }
}

void PCElement::collect(Elements& into) {
    into.push_back(shared_from_this());
    for (const Ptr& child : m_subelements) {
        child->collect(into);
    }
}

void PCElement::collectReversed(Elements& into) {
    into.push_back(shared_from_this());
    for (auto child = m_subelements.rbegin(); child != m_subelements.rend(); ++child) {
        (*child)->collectReversed(into);
    }
}

PCElement::Elements PCElement::elementAndAllDescendants() {
    Elements all;
    collect(all);
    return all;
}

PCElement::Elements PCElement::reversedElementAndAllDescendants() {
    Elements all;
    collectReversed(all);
    return all;
}

std::unordered_map<Identifier, PCElement::Ptr>
PCElement::EXPORT_elementAndDescendantsByIdentifier() {
    std::unordered_map<Identifier, Ptr> byIdentifier;
    for (const Ptr& element : elementAndAllDescendants()) {
        byIdentifier.emplace(element->identifier(), element);
    }
    return byIdentifier;
}

bool PCElement::isAncestorOf(const PCElement& other) const {
    for (const PCElement* above = other.parentElement(); above; above = above->parentElement()) {
        if (above == this) { return true; }
    }
    return false;
}

int PCElement::maxHierarchyDepth() const {
    int deepest = 0;
    for (const Ptr& child : m_subelements) {
        deepest = std::max(deepest, child->maxHierarchyDepth());
    }
    return deepest + 1;
}

int PCElement::depth() const {
    int depth = 1;
    for (const PCElement* above = parentElement(); above; above = above->parentElement()) {
        ++depth;
    }
    return depth;
}

void PCElement::requireRoomFor(const PCElement& item, int parentDepth) {
    if (parentDepth + item.maxHierarchyDepth() > kMaximumDepth) {
        throw InputError(u"canvas"_s,
                         u"would nest elements more than %1 levels deep"_s.arg(kMaximumDepth));
    }
}

ElementViewLayer& PCElement::viewLayer() const {
    return m_viewLayer ? *m_viewLayer : layerThatDoesNothing();
}

void PCElement::rebuildViewLayerHeirarchy() {
    const EditContext* owner = project();
    ElementViewLayerFactory* factory = owner ? owner->viewLayerFactory() : nullptr;
    m_viewLayer = factory ? factory->layer() : nullptr;
    viewLayer().setElement(this);
    for (const Ptr& child : m_subelements) {
        child->rebuildViewLayerHeirarchy();
        viewLayer().addSublayer(child->viewLayer());
    }
}

void PCElement::setModified(bool modified) {
    for (PCElement* element = this; element; element = element->parentElement()) {
        element->m_modified = modified;
    }
}

// Geometry. QTransform's operations are those of the row-vector convention: the last one called is
// applied to a point first.

QPointF PCElement::anchorPointInPts() const {
    return {m_size.width() * m_anchorPoint.x(), m_size.height() * m_anchorPoint.y()};
}

QPointF PCElement::origin() const {
    return m_position - anchorPointInPts();
}

QTransform PCElement::scaleThenRotate() const {
    return scaleThenTurn(m_scale, m_zRotation);
}

QRectF PCElement::frame() const {
    const QRectF bounds(-anchorPointInPts(), m_size);
    return scaleThenRotate().mapRect(bounds).translated(m_position);
}

QTransform PCElement::elementToParentTransform() const {
    if (isCanvas()) { return {}; }
    return placementTransform(anchorPointInPts(), m_scale, m_zRotation, m_position);
}

QTransform PCElement::parentToElementTransform() const {
    return inverse(elementToParentTransform());
}

QTransform PCElement::elementToCanvasTransform() const {
    QTransform transform = elementToParentTransform();
    for (const PCElement* above = parentElement(); above; above = above->parentElement()) {
        transform *= above->elementToParentTransform();
    }
    return transform;
}

QTransform PCElement::canvasToElementTransform() const {
    return inverse(elementToCanvasTransform());
}

QPointF PCElement::convertToCanvas(QPointF point) const {
    return elementToCanvasTransform().map(point);
}
QPointF PCElement::convertToElement(QPointF point) const {
    return canvasToElementTransform().map(point);
}

QPointF PCElement::canvasPosition() const {
    const PCElement* parent = parentElement();
    return parent ? parent->convertToCanvas(m_position) : m_position;
}

double PCElement::canvasRotation() const {
    if (isCanvas()) { return 0; }
    const PCElement* parent = parentElement();
    return static_cast<double>(
        static_cast<float>(m_zRotation + (parent ? parent->canvasRotation() : 0)));
}

double PCElement::unroundedCanvasRotation() const {
    double sum = 0;
    for (const PCElement* element = this; element && !element->isCanvas();
         element = element->parentElement()) {
        sum += element->m_zRotation;
    }
    return sum;
}

QPointF PCElement::scaleOnCanvas() const {
    QPointF product = m_scale;
    for (const PCElement* above = parentElement(); above; above = above->parentElement()) {
        product = {product.x() * above->m_scale.x(), product.y() * above->m_scale.y()};
    }
    return product;
}

// Timelines.

PCKeyedPropertyTimeline::Ptr PCElement::timeline(PCPropertyType type) const {
    PCKeyedPropertyTimeline* attached = attachedTimeline(type);
    return attached ? attached->shared_from_this() : nullptr;
}

PCKeyedPropertyTimeline* PCElement::attachedTimeline(PCPropertyType type) const {
    const int slot = elementTimelineSlot(type);
    if (slot < 0) { return nullptr; }
    if (m_timelines) {
        PCKeyedPropertyTimeline* attached = (*m_timelines)[static_cast<size_t>(slot)].get();
        if (attached || !m_timelinesAreFresh) { return attached; }
    }
    return m_timelinesAreFresh ? makeFreshTimeline(type) : nullptr;
}

// The empty timelines of a new element, made as they are asked for.
PCKeyedPropertyTimeline* PCElement::makeFreshTimeline(PCPropertyType type) const {
    if (!m_timelines) { m_timelines = std::make_unique<Timelines>(); }
    auto* self = const_cast<PCElement*>(this);
    auto& timeline = (*m_timelines)[static_cast<size_t>(elementTimelineSlot(type))];
    timeline = PCKeyedPropertyTimeline::initForElement(self->shared_from_this(), type);
    return timeline.get();
}

void PCElement::setTimeline(const PCKeyedPropertyTimeline::Ptr& timeline) {
    setTimeline(timeline, timeline->propertyType());
}

void PCElement::setTimeline(const PCKeyedPropertyTimeline::Ptr& timeline, PCPropertyType slotType) {
    const int slot = elementTimelineSlot(slotType);
    if (slot < 0) {
        failContract(u"type not supported: %1"_s.arg(stringFromPropertyType(slotType)));
    }
    forgetSamples();
    if (!m_timelines) { m_timelines = std::make_unique<Timelines>(); }
    (*m_timelines)[static_cast<size_t>(slot)] = timeline;
}

void PCElement::clearTimelines() {
    forgetSamples();
    m_timelines.reset();
    m_timelinesAreFresh = false;
}

std::array<const PCKeyedPropertyTimeline*, kElementTimelineCount> PCElement::attachedTimelines()
    const {
    std::array<const PCKeyedPropertyTimeline*, kElementTimelineCount> attached{};
    for (size_t slot = 0; slot < attached.size(); ++slot) {
        attached[slot] = attachedTimeline(elementTimelineTypes()[slot]);
    }
    return attached;
}

PCRepeatBehavior PCElement::repeatBehaviorOfSiblingsOrder() const {
    const auto order = m_parent ? m_parent->childrenZPositionsTimeline() : nullptr;
    return order ? order->repeatBehavior() : PCRepeatBehaviorNever;
}

ElementSampler& PCElement::sampler() const {
    if (!m_sampler) { m_sampler = std::make_unique<ElementSampler>(*this, attachedTimelines()); }
    return *m_sampler;
}

void PCElement::forgetSamples() const {
    m_sampler.reset();
    viewLayer().elementDidChange();
}

// Not for a copy of one of its timelines, such as an export holds, perhaps on another thread.
void PCElement::forgetSamplesOf(const PCKeyedPropertyTimeline& timeline) const {
    if (!m_timelines) { return; }
    const bool isAttached =
        std::any_of(m_timelines->begin(), m_timelines->end(),
                    [&timeline](const auto& attached) { return attached.get() == &timeline; });
    if (isAttached) { forgetSamples(); }
}

// Descriptions.

QString PCElement::debugDescription() const {
    return debugDescriptionWithIndent({}, false);
}
QString PCElement::debugDescriptionWithTimelines() const {
    return debugDescriptionWithIndent({}, true);
}

QStringList PCElement::observableKeys() {
    return {u"position"_s,     u"xScale"_s,      u"yScale"_s,    u"zRotation"_s,
            u"opacity"_s,      u"anchorPoint"_s, u"name"_s,      u"hidden"_s,
            u"scalesLocked"_s, u"locked"_s,      u"imageName"_s, u"size"_s};
}

}  // namespace tweenery
