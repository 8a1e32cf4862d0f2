#pragma once

#include <QObject>
#include <QPointer>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "app/loose_thread.h"
#include "app/project_panel.h"
#include "editor/documents/open_document.h"
#include "ui/start/start_window.h"
#include "ui/window/document_window.h"

namespace tweenery {

class PreferencesWindow;

/// The open projects and their windows: makes, opens, saves and closes them, with what has to be
/// asked, and performs the commands that are the program's.
class PCDocumentController : public QObject, private DocumentWindowOwner {
 public:
    /// None is owned.
    PCDocumentController(DocumentServices& services, const DesktopPorts& ports,
                         ProjectPanelPort& panel);
    ~PCDocumentController() override;

    const std::vector<DocumentWindow*>& windows() const { return m_windows; }
    DocumentWindow& newDocument();
    /// Each opens in a window, or brings its own to the front. Those that do not are told; the
    /// others open all the same.
    void open(const QStringList& paths);
    /// Work that other processes left behind comes back, each with a notice.
    void openRecovered();
    /// The window last used comes to the front; without one the start window.
    void raise();
    /// At the program's start without a project to open: shows the start window, or a new project
    /// where the user does not want that, unless some window is there after a moment.
    void greet();
    /// Anew, with recent projects as they are now.
    void showStartWindow();
    /// Null when it does not show.
    StartWindow* startWindow() const { return m_start; }
    /// Closes all windows, with one question for all that would lose something.
    void quit();

 private:
    DocumentServices& m_services;
    DesktopPorts m_ports;
    ProjectPanelPort& m_panel;
    std::vector<DocumentWindow*> m_windows;  // the one last used at the end
    PreferencesWindow* m_preferences = nullptr;
    QPointer<StartWindow> m_start;
    std::unique_ptr<LooseThread> m_looking;  // at the recent projects

    using Windows = std::vector<DocumentWindow*>;

    DocumentWindow& show(std::unique_ptr<OpenDocument> document);
    void openOne(const QString& path);
    enum class OpenAs { Project, Recent, Sample };
    void tryToOpen(const QString& path, OpenAs as);
    void lookAtRecents();
    void leaveStartWindow();
    std::unique_ptr<OpenDocument> openInMode(const QString& path);
    DocumentWindow* windowOf(const QString& path) const;
    QString freeUntitledName() const;

    void save(DocumentWindow& window);
    void saveAs(DocumentWindow& window, const std::function<void()>& then);
    void saveCopy(DocumentWindow& window);
    void revert(DocumentWindow& window);
    void tell(const QString& message, const OpenDocument::Outcome& outcome);
    void close(const Windows& windows);
    void closeNext(std::deque<DocumentWindow*> windows, bool discards);
    void showPreferences();
    void showNextWindow(DocumentWindow& window);

    void addCommands(CommandSet& commands, DocumentWindow& window) override;
    void windowWantsToClose(DocumentWindow& window) override { close({&window}); }
    void fillRecentDocuments(QMenu& menu) override;
    void openProjects(const QStringList& paths) override { open(paths); }
    void askForPlace(DocumentWindow& window) override { saveAs(window, {}); }
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tweenery
