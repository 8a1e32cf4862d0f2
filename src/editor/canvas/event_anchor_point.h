#pragma once

#include <QPointF>
#include <memory>
#include <vector>

#include "editor/canvas/element_selection_manager.h"
#include "editor/layers/editor_layer.h"

namespace tweenery {

/// Keeps the project's event anchor point, about which rotation cursors turn and additive edits
/// work, at the anchor point of the element selected last, and shows the ring there.
///
/// The mark of an anchor point is axis and ring. Every selection border has the axis; the ring is
/// the editor's, and shows in setup mode with one element selected. Only there can it be dragged.
class EventAnchorPoint : public PCElementSelectionManagerListener {
 public:
    /// Neither is owned, and both outlive this; the project is not kept alive.
    EventAnchorPoint(const std::shared_ptr<PCProject>& project,
                     PCElementSelectionManager& selection, PCEditorLayer& editor);

    /// While a rotation is dragged the point stays where it was when the drag began.
    bool inEventLoop() const { return m_inEventLoop; }
    void setInEventLoop(bool inEventLoop) { m_inEventLoop = inEventLoop; }
    /// The point as it was last worked out, or set by hand; in canvas points.
    QPointF movedEventAnchorPoint() const { return m_movedEventAnchorPoint; }
    /// A drag of the ring: the point stays there until it is next worked out.
    void setMovedEventAnchorPoint(QPointF point);

    /// Works the point out anew: the origin of the canvas when nothing is selected.
    void updateAdditiveAnchorPointLocation();
    /// Shows or hides the ring, 19 points of the screen wide. After a zoom it has to be called.
    void updateAnchorPointIcons();

    void elementSelectionManagerDidSelectElement(PCElementSelectionManager& manager,
                                                 const PCElement::Ptr& element) override;
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager& manager,
                                                   const PCElement::Ptr& element) override;

 private:
    std::weak_ptr<PCProject> m_project;
    PCElementSelectionManager& m_selection;
    PCEditorLayer& m_editor;
    bool m_inEventLoop = false;
    QPointF m_movedEventAnchorPoint;
    std::vector<Subscription> m_subscriptions;

    QPointF anchorPointOfLastSelected(const PCProject& project) const;
};

}  // namespace tweenery
