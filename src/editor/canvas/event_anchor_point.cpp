#include "editor/canvas/event_anchor_point.h"

#include "editor/canvas/element_space.h"
#include "model/project.h"

namespace tweenery {

EventAnchorPoint::EventAnchorPoint(const std::shared_ptr<PCProject>& project,
                                   PCElementSelectionManager& selection, PCEditorLayer& editor)
    : m_project(project), m_selection(selection), m_editor(editor) {
    m_subscriptions.push_back(m_selection.addSelectionListener(this));
    const auto update = [this](const void*) { updateAdditiveAnchorPointLocation(); };
    // What moves an anchor point: that of the element itself, or of a group around it.
    for (const QString& notification :
         {ElementNotification::position, ElementNotification::rotation, ElementNotification::scale,
          ElementNotification::anchorPoint, ElementNotification::size}) {
        m_subscriptions.push_back(
            project->notificationCentre().subscribe(notification, nullptr, update));
    }
    updateAdditiveAnchorPointLocation();
}

QPointF EventAnchorPoint::anchorPointOfLastSelected(const PCProject& project) const {
    const PCElement::Ptr last = m_selection.lastSelectedElement();
    if (!last) { return {}; }
    if (project.isSetupMode()) { return last->canvasPosition(); }
    return convertPoint(last->anchorPointInPts(), *last, *project.canvas());
}

void EventAnchorPoint::updateAdditiveAnchorPointLocation() {
    const auto project = m_project.lock();
    if (!project) { return; }
    if (!m_inEventLoop) { m_movedEventAnchorPoint = anchorPointOfLastSelected(*project); }
    project->setEventAnchorPoint(m_movedEventAnchorPoint);
    updateAnchorPointIcons();
}

void EventAnchorPoint::setMovedEventAnchorPoint(QPointF point) {
    m_movedEventAnchorPoint = point;
    if (const auto project = m_project.lock()) { project->setEventAnchorPoint(point); }
    updateAnchorPointIcons();
}

void EventAnchorPoint::updateAnchorPointIcons() {
    const auto project = m_project.lock();
    const Layer* canvas = m_editor.canvasLayer();
    if (!project || !canvas) { return; }
    constexpr double kSide = 19;
    const double magnification = canvas->transform().scale.x();
    const double side = magnification == 0 ? kSide : kSide / magnification;
    m_editor.anchorPointLayer().setBounds({0, 0, side, side});
    m_editor.anchorPointLayer().setPosition(project->eventAnchorPoint());
    m_editor.setShowsAnchorPoint(project->isSetupMode() &&
                                 m_selection.selectedElementsCount() == 1);
}

void EventAnchorPoint::elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                               const PCElement::Ptr&) {
    updateAdditiveAnchorPointLocation();
}

void EventAnchorPoint::elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                                 const PCElement::Ptr&) {
    updateAnchorPointIcons();
}

}  // namespace tweenery
