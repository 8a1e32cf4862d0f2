#include "editor/canvas/element_selection_manager.h"

#include "base/errors.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PCElementSelectionManager::PCElementSelectionManager(const std::shared_ptr<PCProject>& project)
    : m_project(project),
      m_hierarchySubscription(project->notificationCentre().subscribe(
          ElementNotification::subelements, nullptr, [this](const void*) { hierarchyChanged(); })) {
}

void PCElementSelectionManager::hierarchyChanged() {
    m_managedElementsAreDirty = true;
    deselectAllElements();
}

bool PCElementSelectionManager::elementIsSelected(const PCElement& element) const {
    return m_places.contains(&element);
}

PCElementSelectionManager::Elements PCElementSelectionManager::selectedElements() const {
    return {m_selected.begin(), m_selected.end()};
}

PCElement::Ptr PCElementSelectionManager::firstSelectedElement() const {
    return m_selected.empty() ? nullptr : m_selected.front();
}

PCElement::Ptr PCElementSelectionManager::lastSelectedElement() const {
    return m_selected.empty() ? nullptr : m_selected.back();
}

void PCElementSelectionManager::selectElement(const PCElement::Ptr& element) {
    if (element->locked()) { return; }
    assertContract(!elementIsSelected(*element), u"element is already selected"_s);
    const PCElement::Ptr selected = element;  // may be the entry of a list that a listener changes
    m_places.insert(selected.get(), m_selected.insert(m_selected.end(), selected));
    selected->setSelected(true);
    m_managedElementsAreDirty = true;
    m_listeners.tell([this, &selected](auto& listener) {
        listener.elementSelectionManagerDidSelectElement(*this, selected);
    });
}

void PCElementSelectionManager::deselectElement(const PCElement::Ptr& element) {
    const auto place = m_places.find(element.get());
    assertContract(place != m_places.end(), u"element was not already selected"_s);
    const PCElement::Ptr deselected = element;  // as above
    m_selected.erase(*place);
    m_places.erase(place);
    deselected->setSelected(false);
    m_managedElementsAreDirty = true;
    m_listeners.tell([this, &deselected](auto& listener) {
        listener.elementSelectionManagerDidDeselectElement(*this, deselected);
    });
}

void PCElementSelectionManager::selectElements(const Elements& elements) {
    const Elements wanted = elements;
    deselectAllElements();
    for (const PCElement::Ptr& element : wanted) {
        if (!elementIsSelected(*element)) { selectElement(element); }
    }
}

void PCElementSelectionManager::deselectAllElements() {
    for (const PCElement::Ptr& element : selectedElements()) {
        // A listener may have deselected it already.
        if (elementIsSelected(*element)) { deselectElement(element); }
    }
}

// Listeners.

Subscription PCElementSelectionManager::addSelectionListener(
    PCElementSelectionManagerListener* listener) {
    assertContract(!m_listeners.contains(listener), u"listener was already added"_s);
    return m_listeners.add(listener);
}

void PCElementSelectionManager::removeSelectionListener(
    PCElementSelectionManagerListener* listener) {
    assertContract(m_listeners.remove(listener), u"listener was not already added"_s);
}

// Derived lists.

void PCElementSelectionManager::updateNonOrPartiallyManagedElementsIfDirty() {
    if (!m_managedElementsAreDirty) { return; }
    m_nonManagedElements.clear();
    m_partiallyManagedElements.clear();
    const auto addChildren = [this](const PCElement& element) {
        m_partiallyManagedElements.insert(element.children().begin(), element.children().end());
    };
    for (const PCElement::Ptr& element : m_selected) {
        m_nonManagedElements.insert(element);
        addChildren(*element);
    }
    const auto project = m_project.lock();
    if (m_selected.empty() && project) { addChildren(*project->canvas()); }
    m_managedElementsAreDirty = false;
}

const PCElementSelectionManager::ElementSet& PCElementSelectionManager::nonManagedElements() {
    updateNonOrPartiallyManagedElementsIfDirty();
    return m_nonManagedElements;
}

const PCElementSelectionManager::ElementSet& PCElementSelectionManager::partiallyManagedElements() {
    updateNonOrPartiallyManagedElementsIfDirty();
    return m_partiallyManagedElements;
}

PCElementSelectionManager::Elements PCElementSelectionManager::elementsToUpdate(
    bool additive) const {
    return additive ? additiveSelectedElements() : selectedElements();
}

PCElementSelectionManager::Elements PCElementSelectionManager::additiveSelectedElements() const {
    const bool isOneGroup = m_selected.size() == 1 && m_selected.front()->isGroup();
    if (isOneGroup) { return m_selected.front()->subelements(); }
    return {m_selected.rbegin(), m_selected.rend()};
}

size_t PCElementSelectionManager::additiveSelectedElementsCount() const {
    return additiveSelectedElements().size();
}

QPointF PCElementSelectionManager::additiveAnchorPointOnCanvas() const {
    const PCElement::Ptr element = lastSelectedElement();
    return element ? element->convertToCanvas(element->anchorPointInPts()) : QPointF();
}

}  // namespace tweenery
