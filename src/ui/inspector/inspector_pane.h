#pragma once

#include <QTimer>
#include <QWidget>
#include <array>
#include <memory>
#include <vector>

#include "editor/document_window_controller.h"
#include "ui/inspector/property_pane.h"

namespace tweenery {

class HeaderView;
class PaneListView;

/// The pane at the right: the numbers of what is selected, in a stack of panes, and their edits.
/// However much changes, it is brought up to date once a turn of the event loop.
class InspectorPane : public QWidget,
                      private PCElementSelectionManagerListener,
                      private PCAnimationsManagerChangeListener,
                      private PCProjectTimeManagerPlayheadListener {
    Q_OBJECT

 public:
    /// The controller outlives this.
    explicit InspectorPane(PCDocumentWindowController& controller, QWidget* parent = nullptr);
    ~InspectorPane() override;

    PropertyPane& pane(InspectorPaneKind kind) { return *m_panes[static_cast<size_t>(kind)]; }
    /// Brings it up to date now.
    void refresh();

 Q_SIGNALS:
    /// The user is done with a field, and the keyboard goes to the canvas.
    void left();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

 private:
    PCDocumentWindowController& m_controller;
    HeaderView* m_header;
    PaneListView* m_list;
    std::vector<std::unique_ptr<PropertyPane>> m_panes;  // by kind
    std::vector<InspectorPaneKind> m_shown;
    std::vector<int> m_shownHeights;
    InspectorHeader m_shownHeader;
    QTimer m_refreshTimer;
    bool m_selectionDidChange = true;
    std::vector<Subscription> m_subscriptions;

    void listen();
    void refreshLater(bool selectionDidChange);
    void showHeader();
    void showPanes();
    std::vector<QWidget*> shownPanes() const;
    std::vector<QWidget*> tabRing() const;

    void elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                 const PCElement::Ptr&) override {
        refreshLater(true);
    }
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                   const PCElement::Ptr&) override {
        refreshLater(true);
    }
    void animationManagerDidSelectAnimation(PCAnimationsManager&,
                                            const PCAnimation::Ptr&) override {
        refreshLater(true);
    }
    void timeManagerDidUpdatePlayhead(PCProjectTimeManager&) override { refreshLater(false); }
};

}  // namespace tweenery
