#pragma once

#include <QElapsedTimer>
#include <QPoint>
#include <functional>
#include <memory>
#include <vector>

#include "app/qt_ports.h"
#include "bench/big_project.h"
#include "ui/window/document_window.h"

namespace tweenery::bench {

/// A document window with a project in memory. Events are sent to it as the desktop sends them.
class OpenWindow : public DocumentWindowOwner {
 public:
    /// The canvas has about 1200 by 800 points of it, at actual size.
    static constexpr QSize kSize{1820, 890};

    /// `fill` makes the project before the window opens.
    explicit OpenWindow(const std::function<void(PCProject&)>& fill);
    ~OpenWindow();

    DocumentWindow& window() { return *m_window; }
    PCDocumentWindowController& controller() { return m_window->controller(); }
    PCProject& project() { return *controller().project(); }
    /// Of the window, for a point of the canvas.
    QPoint at(QPointF canvasPoint);

    void press(QPoint point, Qt::KeyboardModifiers modifiers = {});
    void move(QPoint point);
    void release(QPoint point);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// Turns over the canvas, in eighths of a degree.
    void wheel(QPoint angle, Qt::KeyboardModifiers modifiers = {});
    /// Until nothing is left to do.
    void settle();

 private:
    class NoAlerts : public AlertPort {
     public:
        AlertAnswer runModal(const Alert& alert) override;
    };

    ScratchDirectory m_folder;
    NoAlerts m_alerts;
    QtOpenPanel m_panel;
    QtClipboard m_clipboard;
    QtWorkspace m_workspace;
    SteadyMediaClock m_clock;
    StandardErrorLog m_log;
    DocumentServices m_services;
    std::unique_ptr<DocumentWindow> m_window;

    void addCommands(CommandSet&, DocumentWindow&) override {}
    void windowWantsToClose(DocumentWindow&) override {}
    void fillRecentDocuments(QMenu&) override {}
    void openProjects(const QStringList&) override {}
    void askForPlace(DocumentWindow&) override {}
};

/// Fills the canvas with so many small images, every third of them turned.
void addPictures(PCProject& project, int count);

}  // namespace tweenery::bench
