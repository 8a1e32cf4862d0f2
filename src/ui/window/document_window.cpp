#include "ui/window/document_window.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QVBoxLayout>
#include <QWindow>

#include "editor/canvas/canvas_picture.h"
#include "editor/canvas/keyboard_edits.h"
#include "editor/documents/project_path.h"
#include "editor/outline_drop.h"
#include "ui/canvas/canvas_view.h"
#include "ui/export/export_sheet.h"
#include "ui/inspector/inspector_pane.h"
#include "ui/navigators/navigator.h"
#include "ui/timeline/keyframe_dialog.h"
#include "ui/timeline/timeline_pane.h"
#include "ui/window/canvas_area.h"
#include "ui/window/main_menu.h"
#include "ui/window/split_view.h"
#include "ui/window/toolbar.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// A held key that repeats its release too is pressed again within this.
constexpr std::chrono::milliseconds kKeyRepeat(50);

const QStringList& contextCommands() {
    static const QStringList names{u"duplicateElements"_s, u"duplicateElementsInPlace"_s,
                                   u"delete"_s, u"groupElements"_s, u"ungroupElements"_s};
    return names;
}

}  // namespace

DocumentWindow::DocumentWindow(std::unique_ptr<OpenDocument> document, const DesktopPorts& ports,
                               DocumentWindowOwner& owner)
    : m_ports(ports), m_owner(owner), m_document(std::move(document)) {
    setMinimumSize(leastSize());
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(true);
    m_updateTimer.setSingleShot(true);
    connect(&m_updateTimer, &QTimer::timeout, this, &DocumentWindow::updateCommands);
    m_spaceTimer.setSingleShot(true);
    m_spaceTimer.setInterval(kKeyRepeat);
    connect(&m_spaceTimer, &QTimer::timeout, this, [this] {
        m_controller->interaction().setSpaceIsDown(false);
        m_canvas->updateCursor();
    });
    build();
    m_documentSubscription = m_document->addObserver(this);
}

DocumentWindow::~DocumentWindow() {
    m_documentSubscription.end();
    tearDown();
}

// Parts.

void DocumentWindow::build() {
    m_controller =
        std::make_unique<PCDocumentWindowController>(m_document->project(), m_ports, hooks());
    followScreen();
    buildPanes();
    addWindowCommands();
    m_menu = new MainMenu(*this, m_controller->commands());
    connect(m_menu, &MainMenu::willPerform, this, &DocumentWindow::endTextEdit);
    auto* recent = new QMenu(u"Open Recent"_s, this);
    connect(recent, &QMenu::aboutToShow, this, [this, recent] {
        recent->clear();
        m_owner.fillRecentDocuments(*recent);
    });
    m_menu->setSubmenu(u"openRecent"_s, recent);
    addToolbar();
    listen();
    updatePanes();
    updateLater();
    updateTitle();
}

void DocumentWindow::tearDown() {
    m_updateTimer.stop();
    m_spaceTimer.stop();
    delete std::exchange(m_exportSheet, nullptr);
    m_subscriptions.clear();
    m_canvas = nullptr;
    m_timeline = nullptr;
    m_toolbar = nullptr;
    delete takeCentralWidget();
    delete std::exchange(m_menu, nullptr);
    m_controller.reset();
}

WindowHooks DocumentWindow::hooks() {
    return {[this] {
                if (m_canvas) { m_canvas->scheduleFrame(); }
            },
            [this] {
                if (m_canvas) { m_canvas->updateCursor(); }
                updateLater();
            },
            [this](std::chrono::milliseconds delay, std::function<void()> call) {
                QTimer::singleShot(delay, this, std::move(call));
            },
            [this] { updateLater(); },
            [this] {
                if (m_timeline) { m_timeline->overlayDidChange(); }
            }};
}

void DocumentWindow::buildPanes() {
    m_split = new SplitView;
    m_canvas = new CanvasView(*m_controller);
    m_area = new CanvasArea(*m_canvas, *m_document);
    m_navigator = new Navigator(*m_controller);
    m_timeline = new TimelinePane(*m_controller);
    m_inspector = new InspectorPane(*m_controller);
    m_split->setLeftPane(m_navigator);
    m_split->setRightPane(m_inspector);
    m_split->setBottomPane(m_timeline);
    m_split->setMainPane(m_area);
    connect(m_split, &SplitView::panesDidChangeCollapseState, this, &DocumentWindow::updatePanes);
    connect(m_split, &SplitView::panesDidChangeSizes, this, &DocumentWindow::storePaneSizes);
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_split, 1);
    setCentralWidget(content);
    connect(m_canvas, &CanvasView::contextMenuRequested, this,
            [this](QPoint position) { showContextMenu(contextCommands(), position); });
    connect(m_timeline, &TimelinePane::contextMenuRequested, this,
            &DocumentWindow::showContextMenu);
    connect(m_inspector, &InspectorPane::left, m_canvas, [this] { m_canvas->setFocus(); });
    connect(m_canvas, &CanvasView::viewportChanged, this, &DocumentWindow::viewportDidChange);
}

void DocumentWindow::addToolbar() {
    m_toolbar =
        new Toolbar([this](const QString& name) { return m_menu->action(name); }, centralWidget());
    connect(m_toolbar, &Toolbar::additiveButtonPressed, this,
            [this] { m_controller->setAdditiveMode(m_toolbar->additiveButtonIsOn()); });
    static_cast<QBoxLayout*>(centralWidget()->layout())->insertWidget(0, m_toolbar);
}

void DocumentWindow::listen() {
    PCProject& project = *m_controller->project();
    const auto keep = [this](Subscription subscription) {
        m_subscriptions.push_back(std::move(subscription));
    };
    m_subscriptions.clear();
    keep(m_controller->selectionManager().addSelectionListener(this));
    keep(m_controller->keyframeManager().addSelectionListener(this));
    keep(m_controller->playback().addLoopRangeHandler([this] { updateLater(); }));
    keep(project.animationsManager().addChangeListener(this));
    keep(m_controller->timeManager().addPlaybackStateListener(this));
    keep(project.undoManager().addChangeHandler([this] { updateLater(); }));
}

void DocumentWindow::documentWasReplaced() {
    tearDown();
    build();
    restorePanes();
    m_controller->viewport().showAsStored();
}

// Commands.

void DocumentWindow::addWindowCommands() {
    CommandSet& commands = m_controller->commands();
    commands.add(u"close"_s, {[this] { close(); }});
    commands.add(u"customizeToolbar"_s, {[this] { m_toolbar->customize(); }});
    commands.add(u"minimize"_s, {[this] { showMinimized(); }});
    commands.add(u"toggleFullScreen"_s,
                 {[this] { setWindowState(windowState() ^ Qt::WindowFullScreen); },
                  {},
                  [this] { return isFullScreen(); }});
    commands.add(u"exportGeneratedCode"_s, {[this] { openExportSheet(); }});
    commands.add(u"nextPane"_s, {[this] { focusPane(1); }});
    commands.add(u"previousPane"_s, {[this] { focusPane(-1); }});
    addPaneCommands(commands);
    addKeyframeDialogCommands(commands, m_controller->keyframeCommands(), this);
    m_owner.addCommands(commands, *this);
}

void DocumentWindow::endTextEdit() {
    if (auto* field = qobject_cast<QLineEdit*>(focusWidget())) { field->clearFocus(); }
    m_navigator->endEditing();
}

void DocumentWindow::showContextMenu(const QStringList& commands, QPoint position) {
    execContextMenu(*m_menu, this, commands, position);
}

// Keys that no pane took.

void DocumentWindow::keyPressEvent(QKeyEvent* event) {
    CanvasInteraction& interaction = m_controller->interaction();
    switch (event->key()) {
        case Qt::Key_Escape:
            m_controller->cancelPress();
            return;
        case Qt::Key_Space:
            m_spaceTimer.stop();
            interaction.setSpaceIsDown(true);
            m_canvas->updateCursor();
            return;
        case Qt::Key_Control:
        case Qt::Key_Shift:
        case Qt::Key_Alt:
            m_controller->modifiersChanged(QGuiApplication::queryKeyboardModifiers());
            m_canvas->updateCursor();
            return;
        default:
            break;
    }
    if (m_menu->performPlainKey(*event) || handleDigit(*event)) { return; }
    QMainWindow::keyPressEvent(event);
}

void DocumentWindow::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        m_spaceTimer.start();
    } else if (event->key() == Qt::Key_Control || event->key() == Qt::Key_Shift ||
               event->key() == Qt::Key_Alt) {
        m_controller->modifiersChanged(QGuiApplication::queryKeyboardModifiers());
        m_canvas->updateCursor();
    }
    QMainWindow::keyReleaseEvent(event);
}

bool DocumentWindow::handleDigit(const QKeyEvent& event) {
    if (event.modifiers() & ~Qt::KeypadModifier) { return false; }
    const auto opacity = opacityForDigitKey(event.nativeScanCode(), event.text());
    if (!opacity) { return false; }
    m_controller->setOpacityOfSelection(*opacity);
    return true;
}

// What shows.

void DocumentWindow::updateLater() {
    if (!m_updateTimer.isActive()) { m_updateTimer.start(0); }
}

void DocumentWindow::updateCommands() {
    const CanvasInteraction& interaction = m_controller->interaction();
    if (m_controller->isPressed()) { return; }
    m_menu->update();
    m_toolbar->setSelectCursorItemActive(interaction.tool() == PCSelectionStateSelect);
    m_toolbar->setDirectCursorItemActive(interaction.tool() == PCSelectionStateDirect);
    m_toolbar->setHandCursorItemActive(interaction.tool() == PCSelectionStateHand);
    m_toolbar->setPlayItemActive(m_controller->isPlayingBack());
    m_timeline->showDefaultEasing();
}

void DocumentWindow::updateTitle() {
    QString title = m_document->windowTitle();
    if (m_titleTellsZoom) {
        const int percent = static_cast<int>(m_controller->viewport().magnificationFactor() * 100);
        title += u" @ %1% view"_s.arg(percent);
    }
    setWindowTitle(title);
    setWindowModified(m_document->isEdited());
}

void DocumentWindow::viewportDidChange() {
    const double magnification = m_controller->viewport().magnificationFactor();
    if (magnification == m_shownMagnification) { return; }
    m_titleTellsZoom = m_isRestored && m_shownMagnification > 0;
    m_shownMagnification = magnification;
    updateTitle();
}

void DocumentWindow::documentStateDidChange() {
    updateTitle();
    updateLater();
}

void DocumentWindow::tellStatus(const QString& text) {
    m_area->tellStatus(text);
}

void DocumentWindow::animationManagerDidSelectAnimation(PCAnimationsManager&,
                                                        const PCAnimation::Ptr& animation) {
    m_split->setBottomPaneVisible(animation != nullptr);
    updateLater();
}

// Sizes and places, which the project remembers.

void DocumentWindow::documentWillBeStored() {
    PCProject& project = *m_controller->project();
    const auto picture = std::make_shared<CanvasPicture>(m_controller->editorLayer(),
                                                         m_controller->viewport().containerSize());
    project.setPreviewImageMadeLater([picture] { return picture->paint(); });
    if (!m_controller->isPlayingBack()) {
        project.preferences().setTimelinePlayheadPosition(
            m_controller->timeManager().playheadPositionInMS());
    }
}

void DocumentWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (m_isRestored && !isMaximized() && !isFullScreen()) {
        m_controller->project()->preferences().setWindowSize(size());
    }
}

void DocumentWindow::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    if (m_isRestored && !isMaximized() && !isFullScreen()) {
        m_controller->project()->preferences().setWindowPosition(pos());
    }
}

void DocumentWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (windowHandle()) {
        connect(windowHandle(), &QWindow::screenChanged, this, &DocumentWindow::followScreen,
                Qt::UniqueConnection);
    }
}

// Screens of several scales: artwork and layers are made for the one where the window is.
void DocumentWindow::followScreen() {
    PCProject& project = *m_controller->project();
    if (project.backingScale() == devicePixelRatioF()) { return; }
    project.setBackingScale(devicePixelRatioF());
    m_controller->viewport().frameChanged();
    if (m_canvas) { m_canvas->scheduleFrame(); }
}

void DocumentWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !m_controller) { return; }
    if (isActiveWindow()) {
        m_document->checkDisk();
    } else {
        m_controller->focusLost();
    }
}

// Projects that are dropped anywhere open. What is dropped on a pane comes to the pane first.

namespace {

QStringList projectsIn(const QMimeData& data) {
    QStringList projects;
    for (const QString& path : filesOf(data.urls())) {
        const QString project = packageMeantBy(path);
        if (!project.isNull()) { projects << project; }
    }
    return projects;
}

}  // namespace

void DocumentWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (projectsIn(*event->mimeData()).isEmpty()) { return; }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

// The questions of opening would hold up the program that the drag comes from.
void DocumentWindow::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    QMetaObject::invokeMethod(
        this, [this, projects = projectsIn(*event->mimeData())] { m_owner.openProjects(projects); },
        Qt::QueuedConnection);
}

// The end.

void DocumentWindow::closeEvent(QCloseEvent* event) {
    if (m_isLeaving) { return event->accept(); }
    event->ignore();
    endTextEdit();
    m_controller->losePress();
    m_owner.windowWantsToClose(*this);
}

void DocumentWindow::leave() {
    m_isLeaving = true;
    close();
    deleteLater();
}

}  // namespace tweenery
