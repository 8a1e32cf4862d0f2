#pragma once

#include <QHash>
#include <QString>
#include <optional>

#include "base/undo_manager.h"
#include "editor/document_context.h"

namespace tweenery {

/// How much lighter than its colour a row of the list of elements is: 0 is the colour itself, 1
/// would be white.
struct RowTint {
    /// While the row is selected.
    double selected = 0;
    /// While it is not, of the colour of selected rows; none: the row is as all others.
    std::optional<double> unselected;
};

/// Elements of the project as they stand in the list from the top, each once.
PCElement::Elements inListOrder(const PCProject& project, const PCElement::Elements& elements);

/// What the list of elements decides about selection, names, eyes and locks, without the list. Rows
/// stand front first, each above its own children. Main thread only.
class ElementOutline : private PCElementSelectionManagerListener {
 public:
    using Elements = PCElement::Elements;

    /// The document is not owned and lives longer.
    explicit ElementOutline(DocumentContext& document);

    /// The user has made `rows`, from the top, the selected ones. Locked elements are left out.
    /// What is new is selected from the top, or from the bottom where the element selected first
    /// stands below, so that the order goes outward from it.
    void select(const Elements& rows);
    /// Locked elements never show as selected.
    bool showsAsSelected(const PCElement& element) const;
    /// Those that show as selected, in the order of selection.
    Elements selectedRows() const;
    /// In additive mode each further element has a lighter row; of one group the children do.
    RowTint tintOf(const PCElement& element) const;

    /// The name, or one made of it that is free; blank names and equal ones change nothing. One
    /// undo step.
    void rename(PCElement& element, const QString& name);
    /// With all its children; nothing locked stays selected. One undo step.
    void setLocked(PCElement& element, bool locked);

 private:
    DocumentContext& m_document;
    mutable QHash<const PCElement*, size_t> m_order;  // of selection
    mutable bool m_orderIsStale = true;
    Subscription m_selectionSubscription;

    size_t placeInSelection(const PCElement& element) const;
    void elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                 const PCElement::Ptr&) override;
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                   const PCElement::Ptr&) override;
};

/// A press on the eye of an element, which it turns over, and on over the eyes of others, which are
/// set alike. One undo step, which ends with this object; cancelled, none.
class EyeDrag {
 public:
    /// Neither is owned; both live longer.
    EyeDrag(PCProject& project, PCElement& first);

    bool hides() const { return m_hides; }
    void reach(PCElement& element);
    /// Puts everything back. At most once; nothing is reached afterwards.
    void cancel() { m_gesture.cancel(); }

 private:
    PCProject& m_project;
    UndoGesture m_gesture;
    bool m_hides;
};

}  // namespace tweenery
