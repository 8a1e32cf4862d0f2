#pragma once

#include <QTemporaryDir>
#include <QTest>
#include <QWindow>
#include <memory>

#include "editor/controller_scene.h"
#include "storage/bitmap.h"
#include "ui/canvas/canvas_view.h"
#include "ui/window/document_window.h"
#include "ui/window/main_menu.h"

namespace tweenery::test {

/// A document window on the screen, with a project of its own in a folder that goes with it, and a
/// desktop that is scripted. Events are sent to the window as the desktop sends them.
class WindowScene : public DocumentWindowOwner {
 public:
    QTemporaryDir folder;
    ScriptedAlerts alerts;
    ScriptedOpenPanel panel;
    MemoryClipboard clipboard;
    RecordingWorkspace workspace;
    ScriptedClock clock;
    RecordingLog log;
    int closeRequests = 0;
    int placeRequests = 0;
    QStringList opened;
    std::unique_ptr<DocumentServices> services;
    std::unique_ptr<DocumentWindow> window;

    /// Elements of the notation show a red square of 40 points, 160 apart.
    explicit WindowScene(std::string_view tree = "A B C") {
        services = std::make_unique<DocumentServices>(
            DocumentServices{alerts, log, clock,
                             [] {
                                 return QDateTime(QDate(2030, 1, 2), {14, 5});
                             },
                             RecoveryStore(folder.filePath(QStringLiteral("recovery"))),
                             folder.filePath(QStringLiteral("locks"))});
        auto document = std::make_unique<OpenDocument>(*services);
        document->openUntitled(QStringLiteral("Test"));
        fill(*document->project(), tree);
        giveCanvasRoom(document->project()->preferences());
        window = std::make_unique<DocumentWindow>(
            std::move(document), DesktopPorts{alerts, panel, clipboard, workspace, clock, log},
            *this);
        window->showAsRemembered();
        QCoreApplication::processEvents();
    }

    PCDocumentWindowController& controller() { return window->controller(); }
    PCProject& project() { return *controller().project(); }
    PCElement::Ptr element(const char* name) { return named(project(), QString::fromLatin1(name)); }
    QString selected() {
        QStringList names;
        for (const PCElement::Ptr& element : controller().selectionManager().selectedElements()) {
            names << element->name();
        }
        return names.join(u' ');
    }

    // Events.

    /// Of the window, for a point of the canvas.
    QPoint at(QPointF canvasPoint) {
        const QPointF inView = controller().viewport().viewPoint(canvasPoint);
        return window->canvas().viewport()->mapTo(window.get(), inView.toPoint());
    }
    QPoint middleOf(const char* name) {
        const QSizeF size = element(name)->size();
        return at(element(name)->convertToCanvas({size.width() / 2, size.height() / 2}));
    }
    void press(QPoint point, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, modifiers, point);
    }
    void move(QPoint point) { QTest::mouseMove(window->windowHandle(), point); }
    void release(QPoint point, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, modifiers, point);
    }
    void click(QPoint point, Qt::KeyboardModifiers modifiers = {}) {
        press(point, modifiers);
        release(point, modifiers);
    }
    void drag(QPoint from, QPoint by) {
        press(from);
        move(from + by / 2);
        move(from + by);
        release(from + by);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window->windowHandle(), key, modifiers);
        QCoreApplication::processEvents();
    }

    // The window's owner.

    void addCommands(CommandSet&, DocumentWindow&) override {}
    void windowWantsToClose(DocumentWindow&) override { ++closeRequests; }
    void fillRecentDocuments(QMenu&) override {}
    void openProjects(const QStringList& paths) override { opened += paths; }
    void askForPlace(DocumentWindow&) override { ++placeRequests; }

 private:
    static constexpr int kSide = 40;
    static constexpr int kDistance = 160;

    // The screen of tests is small.
    static void giveCanvasRoom(PCProjectPreferences& preferences) {
        preferences.setNewProject(false);
        preferences.setUtilitiesPaneVisible(false);
        preferences.setNavigatorPaneWidth(250);
        preferences.setTimelinePaneHeight(44);
    }
    static void fill(PCProject& project, std::string_view tree) {
        const UndoRegistrationPause pause(project.undoManager());
        QImage square(kSide, kSide, QImage::Format_ARGB32);
        square.fill(Qt::red);
        const QString file = QStringLiteral("square.png");
        project.imageSetManager().addOrReplaceImageSetWithPCImage(
            PCImage::pcimageWithData(encodeImage(square, ImageFormat::Png), file));
        buildTree(project, tree);
        int count = 0;
        for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
            if (element->isGroup() || element == project.canvas()) { continue; }
            element->setImageName(file);
            element->setSize({kSide, kSide});
            element->setPosition({static_cast<double>(kDistance * ++count), 100});
        }
    }
};

}  // namespace tweenery::test
