#pragma once

#include <QWidget>

#include "editor/document_window_controller.h"

namespace tweenery {

class HeaderView;

/// The pane at the right: says what is selected.
class InspectorPane : public QWidget, private PCElementSelectionManagerListener {
 public:
    /// Outlives this.
    explicit InspectorPane(PCDocumentWindowController& controller, QWidget* parent = nullptr);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    PCDocumentWindowController& m_controller;
    HeaderView* m_header;
    std::vector<Subscription> m_subscriptions;

    void showSelection();
    void elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                 const PCElement::Ptr&) override {
        showSelection();
    }
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                   const PCElement::Ptr&) override {
        showSelection();
    }
};

}  // namespace tweenery
