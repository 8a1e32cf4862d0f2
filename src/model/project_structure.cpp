// Edits that change the shape of the element tree. An element that moves keeps its place on the
// canvas.

#include <algorithm>
#include <unordered_set>

#include "model/element_placement.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Elements = PCElement::Elements;

PCElement::Ptr parentOf(const PCElement& element) {
    PCElement* parent = element.parentElement();
    return parent ? parent->shared_from_this() : nullptr;
}

// By their place in `rows`; what is not there comes last.
Elements sortedByRow(const Elements& elements, const Elements& rows) {
    std::unordered_set<const PCElement*> left;
    left.reserve(elements.size());
    for (const PCElement::Ptr& element : elements) {
        left.insert(element.get());
    }
    const auto take = [&left](const PCElement::Ptr& element) {
        return left.erase(element.get()) > 0;
    };
    Elements sorted;
    sorted.reserve(elements.size());
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(sorted), take);
    std::copy_if(elements.begin(), elements.end(), std::back_inserter(sorted), take);
    return sorted;
}

// By their layers' frames, which are upright in the parent: under a turned parent they reach beyond
// the elements.
QRectF boundsOnCanvas(const Elements& elements) {
    QRectF bounds;
    bool isFirst = true;
    for (const PCElement::Ptr& element : elements) {
        const QRectF frame =
            parentOf(*element)->elementToCanvasTransform().mapRect(element->frame());
        const QPointF topLeft(std::min(bounds.left(), frame.left()),
                              std::min(bounds.top(), frame.top()));
        const QPointF bottomRight(std::max(bounds.right(), frame.right()),
                                  std::max(bounds.bottom(), frame.bottom()));
        bounds = isFirst ? frame : QRectF(topLeft, bottomRight);
        isFirst = false;
    }
    return bounds;
}

// "Box 3" without its number.
QString nameWithoutNumber(const QString& name) {
    QStringList words = name.split(u' ');
    const QString& last = words.last();
    const bool isNumber = !last.isEmpty() && std::all_of(last.begin(), last.end(), [](QChar c) {
        return c >= u'0' && c <= u'9';
    });
    if (isNumber) { words.removeLast(); }
    return words.join(u' ');
}

void requireRoomFor(const Elements& items, int parentDepth) {
    for (const PCElement::Ptr& item : items) {
        PCElement::requireRoomFor(*item, parentDepth);
    }
}

bool holds(const PCElement::Ptr& element, const PCElement::Ptr& other) {
    return element == other || element->isAncestorOf(*other);
}

// Rows of the navigator: the elements whose ancestors are all expanded, front first.

bool isRow(const PCElement& element, const PCElement& canvas) {
    const PCElement* above = element.parentElement();
    while (above && above != &canvas && above->expanded()) {
        above = above->parentElement();
    }
    return above == &canvas;
}

// Null for the first row, and for what is no row.
PCElement::Ptr rowAbove(const PCElement& element, const PCElement& canvas) {
    if (!isRow(element, canvas)) { return nullptr; }
    const PCElement::Ptr parent = parentOf(element);
    const auto index = static_cast<size_t>(element.index());
    if (index + 1 == parent->children().size()) {
        return parent.get() == &canvas ? nullptr : parent;
    }
    PCElement::Ptr above = parent->children()[index + 1];
    while (above->expanded() && !above->children().empty()) {
        above = above->children().front();
    }
    return above;
}

// The row below the element's own descendants. Null for the last row, and for what is no row.
PCElement::Ptr rowBelow(const PCElement& element, const PCElement& canvas) {
    if (!isRow(element, canvas)) { return nullptr; }
    for (const PCElement* above = &element; above != &canvas; above = above->parentElement()) {
        const auto index = static_cast<size_t>(above->index());
        if (index > 0) { return above->parentElement()->children()[index - 1]; }
    }
    return nullptr;
}

}  // namespace

void PCProject::moveItem(const PCElement::Ptr& item, const PCElement::Ptr& parent, size_t index) {
    const bool changesParent = item->parentElement() != parent.get();
    const ElementPlacement placement =
        changesParent ? placementUnder(*item, *parent) : ElementPlacement{};
    item->moveToParentElement(parent, index);
    if (!changesParent) {
        return;  // nothing has moved
    }
    item->setPlacement(placement);
}

void PCProject::moveItems(const Elements& items, const PCElement::Ptr& parent, int32_t index) {
    const UndoGroup group(m_undoManager);
    const auto count = static_cast<int32_t>(parent ? parent->children().size() : 0);
    const int32_t target = std::clamp(index, 0, count);
    const bool isFromBelow =
        std::any_of(items.begin(), items.end(),
                    [target](const PCElement::Ptr& item) { return item->index() < target; });
    const PCElement::Ptr newParent = parent ? parent : m_canvas;
    Elements ordered = items;
    std::erase_if(ordered, [&](const PCElement::Ptr& item) { return holds(item, newParent); });
    requireRoomFor(ordered, newParent->depth());
    if (isFromBelow) { std::reverse(ordered.begin(), ordered.end()); }
    for (const PCElement::Ptr& item : ordered) {
        moveItem(item, newParent, static_cast<size_t>(target));
    }
    recursivelyRemoveGroup(m_canvas);
    m_undoManager.setActionName(u"Move"_s);
}

void PCProject::recursivelyRemoveGroup(const PCElement::Ptr& root) {
    Elements branches;
    std::copy_if(root->children().begin(), root->children().end(), std::back_inserter(branches),
                 [](const auto& child) { return child->isGroup() || !child->children().empty(); });
    for (const PCElement::Ptr& child : branches) {
        recursivelyRemoveGroup(child);
        if (child->isGroup() && child->children().empty()) { child->removeFromParentElement(); }
    }
}

// The same where only `group` can have become empty, and what holds it.
void PCProject::removeGroupsEmptiedFrom(PCElement::Ptr group) {
    while (group->isGroup() && group->children().empty()) {
        const PCElement::Ptr parent = parentOf(*group);
        if (!parent) { return; }
        group->removeFromParentElement();
        group = parent;
    }
}

void PCProject::moveElementsToBack(const Elements& elements) {
    moveItems(elements, m_canvas, 0);
}

void PCProject::moveElementsToFront(const Elements& elements) {
    moveItems(elements, m_canvas, static_cast<int32_t>(m_canvas->children().size()));
}

// Each to where it belongs once the ones before it have moved.
void PCProject::moveEach(const Elements& elements,
                         Destination (PCProject::*destination)(const PCElement::Ptr& element)
                             const) {
    bool isFirst = true;
    for (const PCElement::Ptr& element : elements) {
        const PCElement::Ptr parent = parentOf(*element);
        if (!parent) {
            continue;  // the canvas, or a group that a move before has emptied
        }
        if (parent != m_canvas) { parent->setExpanded(true); }
        const Destination target = (this->*destination)(element);
        moveItem(element, target.parent, target.index);
        if (std::exchange(isFirst, false)) {
            recursivelyRemoveGroup(m_canvas);
        } else {
            removeGroupsEmptiedFrom(element);
            removeGroupsEmptiedFrom(parent);
        }
    }
    m_undoManager.setActionName(u"Move"_s);
}

// One row up in the navigator: in front of the next sibling, out of the group, or into the one
// above.
PCProject::Destination PCProject::destinationForward(const PCElement::Ptr& element) const {
    const PCElement::Ptr parent = parentOf(*element);
    const PCElement::Ptr above = rowAbove(*element, *m_canvas);
    if (!above) { return {parent, static_cast<size_t>(element->index())}; }
    const PCElement::Ptr newParent = parentOf(*above);
    const auto index = static_cast<size_t>(above->index());
    if (newParent == parent) { return {parent, index}; }
    return {newParent, above == parent ? index + 1 : 0};
}

void PCProject::moveElementsForward(const Elements& elements) {
    const UndoGesture edit(m_undoManager);  // an element for which there is no room ends it
    moveEach(sortedByRow(elements, visibleHeirarchyWithRoot(*m_canvas)),
             &PCProject::destinationForward);
}

// One row down: behind the next sibling, out of the group at its back, or into an expanded group.
PCProject::Destination PCProject::destinationBackward(const PCElement::Ptr& element) const {
    const PCElement::Ptr below = rowBelow(*element, *m_canvas);
    if (!below) { return {m_canvas, 0}; }
    const PCElement::Ptr newParent = parentOf(*below);
    const auto index = static_cast<size_t>(below->index());
    if (element->index() == 0 && newParent != parentOf(*element)) { return {newParent, index + 1}; }
    if (below->isGroup() && below->expanded()) { return {below, below->children().size()}; }
    return {newParent, index};
}

void PCProject::moveElementsBackward(const Elements& elements) {
    const UndoGesture edit(m_undoManager);  // as above
    Elements ordered = sortedByRow(elements, visibleHeirarchyWithRoot(*m_canvas));
    std::reverse(ordered.begin(), ordered.end());
    // An expanded element's own children must not count as the next row.
    Elements collapsed;
    for (const PCElement::Ptr& element : ordered) {
        const PCElement::Ptr parent = parentOf(*element);
        if (parent && parent != m_canvas) { parent->setExpanded(true); }
        if (!element->expanded()) { continue; }
        collapsed.push_back(element);
        element->setExpanded(false);
    }
    moveEach(ordered, &PCProject::destinationBackward);
    for (const PCElement::Ptr& element : collapsed) {
        element->setExpanded(true);
    }
}

bool PCProject::elementsAreAllGroups(const Elements& elements) const {
    return std::all_of(elements.begin(), elements.end(),
                       [](const PCElement::Ptr& element) { return element->isGroup(); });
}

PCElement::Ptr PCProject::makeGroupAround(const Elements& elements, const PCElement& parent) {
    const UndoRegistrationPause pause(m_undoManager);
    const QRectF bounds = boundsOnCanvas(elements);
    PCElement::Ptr group = PCElement::makeGroup();
    group->setProject(shared_from_this());
    group->setName(uniqueElementNameWithBase(u"Untitled"_s, nullptr));
    group->setSize(bounds.size());
    group->setPosition(parent.convertToElement(bounds.topLeft() + group->anchorPointInPts()));
    return group;
}

void PCProject::groupElements(const Elements& elements) {
    if (elements.empty()) { return; }
    const UndoGroup undoGroup(m_undoManager);
    const Elements sorted = sortedByRow(elements, visibleHeirarchyWithRoot(*m_canvas));
    const PCElement::Ptr parent = parentOf(*sorted.front());
    requireRoomFor(sorted, parent->depth() + 1);
    const PCElement::Ptr group = makeGroupAround(sorted, *parent);
    parent->insertSubelement(group, static_cast<size_t>(sorted.front()->index()));
    moveItems(sorted, group, 0);
    m_undoManager.setActionName(u"Group"_s);
}

void PCProject::ungroupElements(const Elements& elements) {
    if (!elementsAreAllGroups(elements)) { return; }
    const UndoGroup undoGroup(m_undoManager);
    for (const PCElement::Ptr& group : elements) {
        const PCElement::Ptr parent = parentOf(*group);
        if (!parent) {
            continue;  // ungrouped twice, or the canvas
        }
        auto index = static_cast<size_t>(group->index());
        for (const PCElement::Ptr& child : group->subelements()) {
            moveItem(child, parent, index++);
        }
        group->removeFromParentElement();
    }
    recursivelyRemoveGroup(m_canvas);
    m_undoManager.setActionName(u"Ungroup"_s);
}

PCProject::Elements PCProject::duplicateItems(const Elements& elements, float positionOffset) {
    const UndoGroup undoGroup(m_undoManager);
    Elements copies;
    const auto offset = static_cast<double>(positionOffset);
    for (const PCElement::Ptr& source : elements) {
        const PCElement::Ptr copy = PCElement::elementByDuplicatingElement(*source);
        {
            const UndoRegistrationPause pause(m_undoManager);
            copy->setPosition(copy->position() + QPointF(offset, offset));
        }
        parentOf(*source)->insertSubelement(copy, static_cast<size_t>(source->index()) + 1);
        copy->setName(uniqueElementNameWithBase(nameWithoutNumber(source->name()), nullptr));
        copies.push_back(copy);
    }
    return copies;
}

// Children orders in keyframes.

QStringList PCProject::sortedSubelementIdentifiers(const PCElement& element) {
    QStringList identifiers;
    identifiers.reserve(static_cast<qsizetype>(element.children().size()));
    for (const PCElement::Ptr& child : element.children()) {
        identifiers += child->identifier().toString();
    }
    return identifiers;
}

QStringList childrenOrderInLine(const QStringList& stored, const QStringList& present) {
    const QSet<QString> storedSet(stored.begin(), stored.end());
    const QSet<QString> presentSet(present.begin(), present.end());
    QStringList order;
    auto old = stored.begin();
    for (qsizetype i = 0; i < present.size(); ++i) {
        if (storedSet.contains(present[i])) { continue; }
        while (order.size() < i && old != stored.end()) {
            order += *old++;
        }
        order += present[i];
    }
    std::copy(old, stored.end(), std::back_inserter(order));
    order.removeIf([&](const QString& identifier) { return !presentSet.contains(identifier); });
    return order;
}

void PCProject::updateChildrenZPositionsForElement(PCElement& element) {
    const auto timeline = element.childrenZPositionsTimeline();
    if (!timeline) { return; }
    const QStringList present = sortedSubelementIdentifiers(element);
    for (const auto& keyframe : timeline->keyframesSortedByTime()) {
        timeline->setStoredPropertyValue(
            childrenOrderInLine(keyframe->arrayPropertyValue(), present), keyframe);
    }
}

void PCProject::updateZIndexAnimation() {
    for (const PCElement::Ptr& element : m_canvas->elementAndAllDescendants()) {
        updateChildrenZPositionsForElement(*element);
    }
}

}  // namespace tweenery
