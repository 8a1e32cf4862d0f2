#include "editor/element_outline.h"

#include <algorithm>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// From below the canvas down to the element itself.
std::vector<const PCElement*> pathTo(const PCElement& element) {
    std::vector<const PCElement*> path;
    for (const PCElement* e = &element; e && e->parentElement(); e = e->parentElement()) {
        path.push_back(e);
    }
    std::reverse(path.begin(), path.end());
    return path;
}

bool standsBelow(const PCElement& element, const PCElement& other) {
    const auto path = pathTo(element);
    const auto otherPath = pathTo(other);
    const auto [fork, otherFork] =
        std::mismatch(path.begin(), path.end(), otherPath.begin(), otherPath.end());
    if (fork == path.end()) { return false; }
    if (otherFork == otherPath.end()) { return true; }
    return (*fork)->index() < (*otherFork)->index();
}

// The lightest row of `count` is at four fifths of the way to white.
double level(float place, size_t count) {
    return static_cast<double>(place) / (static_cast<double>(count) * 1.25);
}

}  // namespace

PCElement::Elements inListOrder(const PCProject& project, const PCElement::Elements& elements) {
    if (elements.size() < 2) { return elements; }
    std::unordered_set<const PCElement*> left;
    for (const PCElement::Ptr& element : elements) {
        left.insert(element.get());
    }
    PCElement::Elements ordered;
    for (const PCElement::Ptr& element : project.heirarchyWithRoot(*project.canvas())) {
        if (left.contains(element.get())) { ordered.push_back(element); }
    }
    return ordered;
}

ElementOutline::ElementOutline(DocumentContext& document)
    : m_document(document),
      m_selectionSubscription(document.selectionManager().addSelectionListener(this)) {}

void ElementOutline::select(const Elements& rows) {
    PCElementSelectionManager& selection = m_document.selectionManager();
    std::unordered_set<const PCElement*> wanted;
    Elements added;
    for (const PCElement::Ptr& element : rows) {
        if (element->locked() || !wanted.insert(element.get()).second) { continue; }
        if (!selection.elementIsSelected(*element)) { added.push_back(element); }
    }
    const PCElement::Ptr first = selection.firstSelectedElement();
    if (first && !added.empty() && standsBelow(*first, *added.front())) {
        std::reverse(added.begin(), added.end());
    }
    // Listeners may have done some of it already.
    for (const PCElement::Ptr& element : selection.selectedElements()) {
        const bool stays = wanted.contains(element.get());
        if (!stays && selection.elementIsSelected(*element)) { selection.deselectElement(element); }
    }
    for (const PCElement::Ptr& element : added) {
        if (!selection.elementIsSelected(*element)) { selection.selectElement(element); }
    }
}

bool ElementOutline::showsAsSelected(const PCElement& element) const {
    return !element.locked() && m_document.selectionManager().elementIsSelected(element);
}

ElementOutline::Elements ElementOutline::selectedRows() const {
    Elements rows = m_document.selectionManager().selectedElements();
    std::erase_if(rows, [](const PCElement::Ptr& element) { return element->locked(); });
    return rows;
}

RowTint ElementOutline::tintOf(const PCElement& element) const {
    if (!m_document.additiveModeIsOn()) { return {}; }
    const PCElementSelectionManager& selection = m_document.selectionManager();
    const size_t count = selection.selectedElementsCount();
    if (selection.elementIsSelected(element)) {
        return {level(static_cast<float>(placeInSelection(element)), count), std::nullopt};
    }
    const PCElement* parent = element.parentElement();
    if (count != 1 || !parent || selection.firstSelectedElement().get() != parent) { return {}; }
    const size_t children = parent->children().size();
    const float fromTheFront = static_cast<float>(children) - static_cast<float>(element.index());
    return {0, level(fromTheFront, children)};
}

size_t ElementOutline::placeInSelection(const PCElement& element) const {
    if (std::exchange(m_orderIsStale, false)) {
        m_order.clear();
        size_t place = 0;
        for (const PCElement::Ptr& selected : m_document.selectionManager().selectedElements()) {
            m_order.insert(selected.get(), place++);
        }
    }
    return m_order.value(&element);
}

void ElementOutline::elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                             const PCElement::Ptr&) {
    m_orderIsStale = true;
}

void ElementOutline::elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                               const PCElement::Ptr&) {
    m_orderIsStale = true;
}

void ElementOutline::rename(PCElement& element, const QString& name) {
    if (name.trimmed().isEmpty()) { return; }
    PCProject& project = *m_document.project();
    const QString unique = project.uniqueElementNameWithBase(name, &element);
    if (unique == element.name()) { return; }
    const UndoGroup step(project.undoManager());
    element.setName(unique);
    project.undoManager().setActionName(u"Rename"_s);
}

void ElementOutline::setLocked(PCElement& element, bool locked) {
    if (locked == element.locked()) { return; }
    UndoManager& undo = m_document.project()->undoManager();
    {
        const UndoGroup step(undo);
        element.setLocked(locked);
        undo.setActionName(locked ? u"Lock"_s : u"Unlock"_s);
    }
    PCElementSelectionManager& selection = m_document.selectionManager();
    for (const PCElement::Ptr& selected : selection.selectedElements()) {
        if (selected->locked()) { selection.deselectElement(selected); }
    }
}

EyeDrag::EyeDrag(PCProject& project, PCElement& first)
    : m_project(project), m_gesture(project.undoManager()), m_hides(!first.hidden()) {
    reach(first);
}

void EyeDrag::reach(PCElement& element) {
    if (element.hidden() == m_hides) { return; }
    element.setHidden(m_hides);
    m_project.undoManager().setActionName(m_hides ? u"Hide"_s : u"Show"_s);
}

}  // namespace tweenery
