// Edits that change the shape of the element tree. An element that moves keeps its place on the
// canvas.

#include <algorithm>
#include <unordered_map>

#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// The edits copy their arguments, which may be the very list of children that they change.
using Elements = PCElement::Elements;

PCElement::Ptr parentOf(const PCElement& element) {
    PCElement* parent = element.parentElement();
    return parent ? parent->shared_from_this() : nullptr;
}

// The elements that are in `rows`, by their place there.
Elements sortedByRow(const Elements& elements, const Elements& rows) {
    std::unordered_map<const PCElement*, size_t> rowOf;
    for (size_t row = 0; row < rows.size(); ++row) {
        rowOf.emplace(rows[row].get(), row);
    }
    const auto place = [&rowOf, &rows](const PCElement::Ptr& element) {
        const auto found = rowOf.find(element.get());
        return found == rowOf.end() ? rows.size() : found->second;
    };
    Elements sorted = elements;
    std::stable_sort(
        sorted.begin(), sorted.end(),
        [&place](const PCElement::Ptr& a, const PCElement::Ptr& b) { return place(a) < place(b); });
    return sorted;
}

QRectF boundsOnCanvas(const Elements& elements) {
    QRectF bounds;
    bool isFirst = true;
    for (const PCElement::Ptr& element : elements) {
        const QRectF frame =
            element->elementToCanvasTransform().mapRect(QRectF(QPointF(), element->size()));
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
    if (isNumber) words.removeLast();
    return words.join(u' ');
}

// An axis scaled to nothing leaves nothing to make up for.
QPointF dividedBy(QPointF a, QPointF b) {
    return {b.x() == 0 ? a.x() : a.x() / b.x(), b.y() == 0 ? a.y() : a.y() / b.y()};
}

bool holds(const PCElement::Ptr& element, const PCElement::Ptr& other) {
    return element == other || element->isAncestorOf(*other);
}

}  // namespace

void PCProject::moveItem(const PCElement::Ptr& item, const PCElement::Ptr& parent, size_t index) {
    const bool changesParent = item->parentElement() != parent.get();
    const QPointF canvasPosition = item->canvasPosition();
    const double canvasRotation = item->canvasRotation();
    const QPointF canvasScale = item->scaleOnCanvas();
    item->removeFromParentElement();
    parent->insertSubelement(item, index);
    // While undoing, the steps of these setters restore the old values themselves; under the same
    // parent nothing has moved.
    if (m_undoManager.isUndoing() || !changesParent) return;
    item->setZRotation(canvasRotation - parent->canvasRotation());
    item->setScale(dividedBy(canvasScale, parent->scaleOnCanvas()));
    item->setPosition(parent->convertToElement(canvasPosition));
}

void PCProject::moveItems(const Elements& items, const PCElement::Ptr& parent, int32_t index) {
    const UndoGroup group(m_undoManager);
    const auto count = static_cast<int32_t>(parent ? parent->children().size() : 0);
    const int32_t target = index < 0 ? 0 : std::min(index, count);
    const bool isFromBelow =
        std::any_of(items.begin(), items.end(),
                    [target](const PCElement::Ptr& item) { return item->index() < target; });
    const PCElement::Ptr newParent = parent ? parent : m_canvas;
    Elements ordered = items;
    std::erase_if(ordered, [&](const PCElement::Ptr& item) { return holds(item, newParent); });
    if (isFromBelow) std::reverse(ordered.begin(), ordered.end());
    for (const PCElement::Ptr& item : ordered) {
        moveItem(item, newParent, static_cast<size_t>(target));
    }
    recursivelyRemoveGroup(m_canvas);
    m_undoManager.setActionName(u"Move"_s);
}

void PCProject::recursivelyRemoveGroup(const PCElement::Ptr& root) {
    for (const PCElement::Ptr& child : root->subelements()) {
        recursivelyRemoveGroup(child);
        if (child->isGroup() && child->children().empty()) child->removeFromParentElement();
    }
}

void PCProject::moveElementsToBack(const Elements& elements) {
    moveItems(elements, m_canvas, 0);
}

void PCProject::moveElementsToFront(const Elements& elements) {
    moveItems(elements, m_canvas, static_cast<int32_t>(m_canvas->children().size()));
}

// One row up in the navigator: in front of the next sibling, out of the group, or into the one
// above.
void PCProject::moveForward(const PCElement::Ptr& element) {
    const PCElement::Ptr parent = parentOf(*element);
    if (!parent) return;  // a group that the move before has emptied
    if (parent != m_canvas) parent->setExpanded(true);
    const Elements rows = visibleHeirarchyWithRoot(*m_canvas);
    const auto row = std::find(rows.begin(), rows.end(), element);
    const PCElement::Ptr above = row == rows.begin() || row == rows.end() ? element : *(row - 1);
    const PCElement::Ptr newParent = parentOf(*above);
    int32_t target = above->index();
    if (newParent != parent) {
        const bool leavesGroup = parent->children().back() == element;
        target = leavesGroup ? above->index() + 1 : 0;
    }
    moveItems({element}, newParent, target);
}

void PCProject::moveElementsForward(const Elements& elements) {
    const UndoGroup group(m_undoManager);
    for (const PCElement::Ptr& element :
         sortedByRow(elements, visibleHeirarchyWithRoot(*m_canvas))) {
        moveForward(element);
    }
}

// One row down: behind the next sibling, out of the group at its back, or into an expanded group.
void PCProject::moveBackward(const PCElement::Ptr& element) {
    const PCElement::Ptr parent = parentOf(*element);
    if (!parent) return;  // a group that the move before has emptied
    if (parent != m_canvas) parent->setExpanded(true);
    const Elements rows = visibleHeirarchyWithRoot(*m_canvas);
    const auto row = std::find(rows.begin(), rows.end(), element);
    // Its own descendants are rows again when one of them was moved before.
    const auto next = std::find_if(row, rows.end(), [&element](const PCElement::Ptr& other) {
        return !holds(element, other);
    });
    if (next == rows.end()) {
        moveItems({element}, m_canvas, 0);
        return;
    }
    const PCElement::Ptr& below = *next;
    const PCElement::Ptr newParent = parentOf(*below);
    if (element->index() == 0 && newParent != parent) {
        moveItems({element}, newParent, below->index() + 1);
    } else if (below->isGroup() && below->expanded()) {
        moveItems({element}, below, static_cast<int32_t>(below->children().size()));
    } else {
        moveItems({element}, newParent, below->index());
    }
}

void PCProject::moveElementsBackward(const Elements& elements) {
    const UndoGroup group(m_undoManager);
    Elements ordered = sortedByRow(elements, visibleHeirarchyWithRoot(*m_canvas));
    std::reverse(ordered.begin(), ordered.end());
    // An expanded element's own children must not count as the next row.
    Elements collapsed;
    for (const PCElement::Ptr& element : ordered) {
        const PCElement::Ptr parent = parentOf(*element);
        if (parent && parent != m_canvas) parent->setExpanded(true);
        if (!element->expanded()) continue;
        collapsed.push_back(element);
        element->setExpanded(false);
    }
    for (const PCElement::Ptr& element : ordered) {
        moveBackward(element);
    }
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
    if (elements.empty()) return;
    const UndoGroup undoGroup(m_undoManager);
    const Elements sorted = sortedByRow(elements, visibleHeirarchyWithRoot(*m_canvas));
    const PCElement::Ptr parent = parentOf(*sorted.front());
    const PCElement::Ptr group = makeGroupAround(sorted, *parent);
    parent->insertSubelement(group, static_cast<size_t>(sorted.front()->index()));
    moveItems(sorted, group, 0);
    m_undoManager.setActionName(u"Group"_s);
}

void PCProject::ungroupElements(const Elements& elements) {
    if (!elementsAreAllGroups(elements)) return;
    const UndoGroup undoGroup(m_undoManager);
    for (const PCElement::Ptr& group : Elements(elements)) {
        const PCElement::Ptr parent = parentOf(*group);
        if (!parent) continue;  // ungrouped twice, or the canvas
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
    for (const PCElement::Ptr& source : Elements(elements)) {
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
    QStringList order = stored;
    for (qsizetype i = 0; i < present.size(); ++i) {
        if (!storedSet.contains(present[i])) order.insert(std::min(i, order.size()), present[i]);
    }
    order.removeIf([&](const QString& identifier) { return !presentSet.contains(identifier); });
    return order;
}

void PCProject::updateChildrenZPositionsForElement(PCElement& element) {
    const auto timeline = element.childrenZPositionsTimeline();
    if (!timeline) return;
    const QStringList present = sortedSubelementIdentifiers(element);
    for (const auto& keyframe : timeline->keyframesSortedByTime()) {
        timeline->setArrayPropertyValue(
            childrenOrderInLine(keyframe->arrayPropertyValue(), present), keyframe->timeInMS());
    }
}

void PCProject::updateZIndexAnimation() {
    for (const PCElement::Ptr& element : m_canvas->elementAndAllDescendants()) {
        updateChildrenZPositionsForElement(*element);
    }
}

}  // namespace tweenery
