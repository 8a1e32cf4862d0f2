#include "ui/inspector/inspector_pane.h"

#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/header_view.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {

InspectorPane::InspectorPane(PCDocumentWindowController& controller, QWidget* parent)
    : QWidget(parent), m_controller(controller), m_header(new HeaderView(this)) {
    m_subscriptions.push_back(m_controller.selectionManager().addSelectionListener(this));
    m_subscriptions.push_back(m_controller.project()->notificationCentre().subscribe(
        ElementNotification::name, nullptr, [this](const void*) { showSelection(); }));
    showSelection();
}

void InspectorPane::showSelection() {
    const PCElementSelectionManager& selection = m_controller.selectionManager();
    const PCElement::Ptr element = selection.lastSelectedElement();
    if (selection.selectedElementsCount() > 1) {
        m_header->setTitle(u"%1 Elements"_s.arg(selection.selectedElementsCount()));
        m_header->setTitleImage(u"element_icon"_s);
    } else if (element) {
        m_header->setTitle(element->name());
        m_header->setTitleImage(element->isGroup() ? u"property_folder_icon"_s
                                                   : u"property_element_icon"_s);
    } else {
        m_header->setTitle(u"Canvas"_s);
        m_header->setTitleImage(u"header_canvas_icon"_s);
    }
}

void InspectorPane::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Appearance::current().frame().surround);
}

void InspectorPane::resizeEvent(QResizeEvent*) {
    m_header->setGeometry(0, 0, width(), sizes::headerHeight);
}

}  // namespace tweenery
