#pragma once

#include <QMainWindow>
#include <QTimer>
#include <memory>

#include "editor/document_window_controller.h"
#include "editor/documents/open_document.h"

namespace tweenery {

class CanvasArea;
class CanvasView;
class DocumentWindow;
class ExportSheet;
class InspectorPane;
class MainMenu;
class Navigator;
class SplitView;
class TimelinePane;
class Toolbar;
struct ExportOutcome;

/// What the program around a window does for it.
class DocumentWindowOwner {
 public:
    virtual ~DocumentWindowOwner() = default;
    /// Adds the commands that are the program's: files, windows, preferences, help.
    virtual void addCommands(CommandSet& commands, DocumentWindow& window) = 0;
    /// The user wants the window to go. It goes by leave(), when nothing of it can be lost.
    virtual void windowWantsToClose(DocumentWindow& window) = 0;
    virtual void fillRecentDocuments(QMenu& menu) = 0;
    /// Projects were dropped on a window.
    virtual void openProjects(const QStringList& paths) = 0;
    /// An untitled or read-only project is to be saved: asks where.
    virtual void askForPlace(DocumentWindow& window) = 0;
};

/// The window of one open project: menu, toolbar and panes around the controller, which decides.
class DocumentWindow : public QMainWindow,
                       private OpenDocumentObserver,
                       private PCElementSelectionManagerListener,
                       private PCKeyframeManagerSelectionListener,
                       private PCAnimationsManagerChangeListener,
                       private PCProjectTimeManagerPlaybackStateListener {
    Q_OBJECT

 public:
    /// Neither the ports nor the owner are owned.
    DocumentWindow(std::unique_ptr<OpenDocument> document, const DesktopPorts& ports,
                   DocumentWindowOwner& owner);
    ~DocumentWindow() override;

    static constexpr QSize leastSize() { return {800, 400}; }

    OpenDocument& document() { return *m_document; }
    PCDocumentWindowController& controller() { return *m_controller; }
    CanvasView& canvas() { return *m_canvas; }
    MainMenu& menu() { return *m_menu; }
    SplitView& splitView() { return *m_split; }
    TimelinePane& timeline() { return *m_timeline; }
    /// At the size and place that the project remembers, or in the middle of the screen.
    void showAsRemembered();
    /// Ends a text edit that is open, which takes what was typed.
    void endTextEdit();
    /// A line at the canvas's lower left, for two seconds.
    void tellStatus(const QString& text);
    /// Closes the window and frees it, unasked.
    void leave();

 protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    DesktopPorts m_ports;
    DocumentWindowOwner& m_owner;
    std::unique_ptr<OpenDocument> m_document;
    std::unique_ptr<PCDocumentWindowController> m_controller;
    CanvasArea* m_area = nullptr;
    CanvasView* m_canvas = nullptr;
    SplitView* m_split = nullptr;
    Toolbar* m_toolbar = nullptr;
    Navigator* m_navigator = nullptr;
    TimelinePane* m_timeline = nullptr;
    InspectorPane* m_inspector = nullptr;
    MainMenu* m_menu = nullptr;
    ExportSheet* m_exportSheet = nullptr;
    QTimer m_updateTimer;
    QTimer m_spaceTimer;  // a held Space repeats its release
    double m_shownMagnification = 0;
    bool m_titleTellsZoom = false;
    bool m_isLeaving = false;
    bool m_isRestored = false;
    int m_lastBottomHeight = 0;
    Subscription m_documentSubscription;
    std::vector<Subscription> m_subscriptions;  // to the controller's parts

    void build();
    void tearDown();
    WindowHooks hooks();
    void buildPanes();
    void addWindowCommands();
    void addPaneCommands(CommandSet& commands);
    void addToolbar();
    void listen();
    void restorePanes();
    void updateLater();
    void updateCommands();
    void focusPane(int step);
    void updateTitle();
    void updatePanes();
    void storePaneSizes();
    void toggleBottomPane();
    bool isBottomPaneCollapsed() const;
    void viewportDidChange();
    void followScreen();
    bool handleDigit(const QKeyEvent& event);
    void showContextMenu(const QStringList& commands, QPoint position);
    void openExportSheet();
    void closeExportSheet();
    void tellExport(const ExportOutcome& outcome);

    void documentStateDidChange() override;
    void documentWillBeStored() override;
    void documentWasReplaced() override;
    void documentWasSaved(const QString& text) override { tellStatus(text); }
    void documentNeedsPlace() override { m_owner.askForPlace(*this); }
    void elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                 const PCElement::Ptr&) override {
        updateLater();
    }
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                   const PCElement::Ptr&) override {
        updateLater();
    }
    void keyframeSelectionManagerDidSelectKeyframe(PCKeyframeManager&, const Keyframe&) override {
        updateLater();
    }
    void keyframeSelectionManagerDidDeselectKeyframe(PCKeyframeManager&, const Keyframe&) override {
        updateLater();
    }
    void keyframeManagerDidSelectTween(PCKeyframeManager&, const Keyframe&) override {
        updateLater();
    }
    void keyframeManagerDidDeselectTween(PCKeyframeManager&, const Keyframe&) override {
        updateLater();
    }
    void animationManagerDidSelectAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) override;
    void timeManagerDidChangePlaybackState(PCProjectTimeManager&) override { updateLater(); }
};

}  // namespace tweenery
