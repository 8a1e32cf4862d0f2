#pragma once

#include <QHash>
#include <QPointF>
#include <list>
#include <memory>
#include <unordered_set>

#include "base/listener_set.h"
#include "base/notification_centre.h"
#include "model/element.h"

namespace tweenery {

class PCElementSelectionManager;
class PCProject;

/// Told of each single change of the selection, within the operation that made it.
class PCElementSelectionManagerListener {
 public:
    virtual ~PCElementSelectionManagerListener() = default;
    virtual void elementSelectionManagerDidSelectElement(PCElementSelectionManager& manager,
                                                         const PCElement::Ptr& element) = 0;
    virtual void elementSelectionManagerDidDeselectElement(PCElementSelectionManager& manager,
                                                           const PCElement::Ptr& element) = 0;
};

/// The selected elements of a document, in the order in which they were selected. One a window. Any
/// insertion into or removal from the project's tree empties the selection. Main thread only.
///
/// Selecting, deselecting and asking for one element take constant time beside the listeners.
class PCElementSelectionManager {
 public:
    using Elements = PCElement::Elements;
    using ElementSet = std::unordered_set<PCElement::Ptr>;

    /// The project is not kept alive.
    explicit PCElementSelectionManager(const std::shared_ptr<PCProject>& project);
    PCElementSelectionManager(const PCElementSelectionManager&) = delete;
    PCElementSelectionManager& operator=(const PCElementSelectionManager&) = delete;

    bool elementIsSelected(const PCElement& element) const;
    /// Oldest first; a copy of the list.
    Elements selectedElements() const;
    size_t selectedElementsCount() const { return m_selected.size(); }
    /// The ends of that list; null when nothing is selected.
    PCElement::Ptr firstSelectedElement() const;
    PCElement::Ptr lastSelectedElement() const;

    /// A locked element is silently refused. Throws AssertionFailure "element is already selected".
    void selectElement(const PCElement::Ptr& element);
    /// Throws AssertionFailure "element was not already selected".
    void deselectElement(const PCElement::Ptr& element);
    /// Replaces the selection, in the order of `elements`. A repeated element is taken once, a
    /// locked one is left out. Listeners hear of every single change, also where the old and the
    /// new selection are equal.
    void selectElements(const Elements& elements);
    /// One by one, oldest first.
    void deselectAllElements();

    /// Not owned; whoever is added takes itself away before it goes. Listeners may be added and
    /// removed while one is called. Throw AssertionFailure "listener was already added" and
    /// "listener was not already added".
    Subscription addSelectionListener(PCElementSelectionManagerListener* listener);
    void removeSelectionListener(PCElementSelectionManagerListener* listener);

    /// The selected elements.
    const ElementSet& nonManagedElements();
    /// The children of the selected elements; with nothing selected, those of the canvas.
    const ElementSet& partiallyManagedElements();
    void updateNonOrPartiallyManagedElementsIfDirty();

    /// The targets of an edit: additiveSelectedElements() or selectedElements().
    Elements elementsToUpdate(bool additive) const;
    /// Of two or more selected elements the list reversed, of one group its children, back to
    /// front, of one other element that element.
    Elements additiveSelectedElements() const;
    size_t additiveSelectedElementsCount() const;
    /// The anchor point of the element selected last, in canvas points, at the setup state; (0, 0)
    /// when nothing is selected.
    QPointF additiveAnchorPointOnCanvas() const;

 private:
    using Order = std::list<PCElement::Ptr>;

    bool m_managedElementsAreDirty = true;
    Order m_selected;
    QHash<const PCElement*, Order::iterator> m_places;
    ListenerSet<PCElementSelectionManagerListener> m_listeners;
    std::weak_ptr<PCProject> m_project;
    ElementSet m_nonManagedElements;
    ElementSet m_partiallyManagedElements;
    Subscription m_hierarchySubscription;

    void hierarchyChanged();
};

}  // namespace tweenery
