#include "app/document_controller.h"

#include <QApplication>
#include <QFileInfo>
#include <QMenu>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <algorithm>

#include "app/about.h"
#include "app/recent_projects.h"
#include "base/errors.h"
#include "editor/documents/project_path.h"
#include "model/preferences/app_preferences.h"
#include "ui/start/start_window.h"
#include "ui/window/main_menu.h"
#include "ui/window/preferences_window.h"
#include "ui/window/shortcuts_window.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kCancel = 0;
const QString kUntitled = u"Untitled"_s;
// A window of its own, such as a second start's, may come first.
constexpr std::chrono::milliseconds kGreetingDelay{100};

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace

PCDocumentController::PCDocumentController(DocumentServices& services, const DesktopPorts& ports,
                                           ProjectPanelPort& panel)
    : m_services(services), m_ports(ports), m_panel(panel) {}

PCDocumentController::~PCDocumentController() {
    delete m_preferences;
    delete m_start;
    for (DocumentWindow* window : std::exchange(m_windows, {})) {
        delete window;
    }
}

// Windows.

DocumentWindow& PCDocumentController::show(std::unique_ptr<OpenDocument> document) {
    auto* window = new DocumentWindow(std::move(document), m_ports, *this);
    m_windows.push_back(window);
    window->installEventFilter(this);
    connect(window, &QObject::destroyed, this, [this, window] {
        std::erase(m_windows, window);
        if (m_windows.empty() && !m_start) { QApplication::quit(); }
    });
    window->showAsRemembered();
    leaveStartWindow();
    return *window;
}

bool PCDocumentController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        const auto found = std::find(m_windows.begin(), m_windows.end(), watched);
        if (found != m_windows.end()) { std::rotate(found, found + 1, m_windows.end()); }
    }
    return QObject::eventFilter(watched, event);
}

void PCDocumentController::raise() {
    if (!m_windows.empty()) { return bringToFront(*m_windows.back()); }
    if (m_start) { return bringToFront(*m_start); }
    showStartWindow();
}

// The start window.

void PCDocumentController::greet() {
    QTimer::singleShot(kGreetingDelay, this, [this] {
        if (!m_windows.empty() || m_start) { return; }
        if (PCAppPreferences::showsOnboardWindowAtLaunch()) {
            showStartWindow();
        } else {
            newDocument();
        }
    });
}

void PCDocumentController::showStartWindow() {
    leaveStartWindow();
    m_start = new StartWindow(recentProjectsAt(recentProjects()), samplesFolder());
    m_start->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_start, &StartWindow::newProjectWanted, this, [this] { newDocument(); });
    connect(m_start, &StartWindow::openPanelWanted, this,
            [this] { open(m_panel.chooseProjects(m_start)); });
    connect(m_start, &StartWindow::projectChosen, this,
            [this](const QString& path) { tryToOpen(path, OpenAs::Recent); });
    connect(m_start, &StartWindow::sampleChosen, this,
            [this](const QString& path) { tryToOpen(path, OpenAs::Sample); });
    connect(m_start, &StartWindow::recentRemoved, this, &removeRecentProject);
    lookAtRecents();
    m_start->move(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, m_start->size(),
                                      m_start->screen()->availableGeometry())
                      .topLeft());
    bringToFront(*m_start);
}

void PCDocumentController::lookAtRecents() {
    m_looking = std::make_unique<LooseThread>(
        [projects = recentProjectsAt(recentProjects()), this](const LooseThread::Tell& tell) {
            for (RecentProject project : projects) {
                look(project);
                const bool isWanted = tell([this, project] {
                    if (m_start) { m_start->recents().update(project); }
                });
                if (!isWanted) { return; }
            }
        });
}

void PCDocumentController::leaveStartWindow() {
    if (!m_start) { return; }
    m_start->hide();
    m_start->deleteLater();
    m_start = nullptr;
}

void PCDocumentController::showNextWindow(DocumentWindow& window) {
    const auto next =
        std::find_if(m_windows.begin(), m_windows.end(),
                     [&window](const DocumentWindow* other) { return other != &window; });
    if (next != m_windows.end()) { bringToFront(**next); }
}

// New and open.

QString PCDocumentController::freeUntitledName() const {
    const auto isTaken = [this](const QString& name) {
        return std::any_of(m_windows.begin(), m_windows.end(), [&name](DocumentWindow* window) {
            return window->document().project()->projectName() == name;
        });
    };
    QString name = kUntitled;
    for (int number = 2; isTaken(name); ++number) {
        name = kUntitled + u' ' + QString::number(number);
    }
    return name;
}

DocumentWindow& PCDocumentController::newDocument() {
    auto document = std::make_unique<OpenDocument>(m_services);
    document->openUntitled(freeUntitledName());
    return show(std::move(document));
}

void PCDocumentController::open(const QStringList& paths) {
    for (const QString& path : paths) {
        openOne(path);
    }
}

DocumentWindow* PCDocumentController::windowOf(const QString& path) const {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const auto found =
        std::find_if(m_windows.begin(), m_windows.end(), [&canonical](DocumentWindow* window) {
            const QString own = window->document().path();
            return !own.isEmpty() && QFileInfo(own).canonicalFilePath() == canonical;
        });
    return found == m_windows.end() ? nullptr : *found;
}

void PCDocumentController::openOne(const QString& path) {
    if (DocumentWindow* window = windowOf(path)) {
        leaveStartWindow();
        return bringToFront(*window);
    }
    tryToOpen(path, OpenAs::Project);
}

void PCDocumentController::tryToOpen(const QString& path, OpenAs as) {
    if (as == OpenAs::Recent && windowOf(path)) { return openOne(path); }
    try {
        if (as == OpenAs::Sample) {
            auto copy = std::make_unique<OpenDocument>(m_services);
            if (copy->open(path, OpenDocument::OpenMode::Copy) == OpenDocument::Opening::Opened) {
                show(std::move(copy));
            }
        } else if (auto document = openInMode(path)) {
            addRecentProject(document->path());
            show(std::move(document));
        }
    } catch (const InputError& error) {
        const QString reason = u"“%1” %2."_s.arg(error.entry(), error.reason());
        const QFileInfo file(path);
        Alert alert{u"“%1” Cannot Be Opened"_s.arg(file.fileName()), reason, {u"Ok"_s}, {}};
        if (as != OpenAs::Project) {
            alert.message = u"Problem Opening Document"_s;
            alert.informativeText =
                u"There was a problem opening %1\n%2"_s.arg(file.completeBaseName(), reason);
        }
        m_ports.alerts.runModal(alert);
        if (m_start) { lookAtRecents(); }
    }
}

// Null when the user does not want it.
std::unique_ptr<OpenDocument> PCDocumentController::openInMode(const QString& path) {
    auto document = std::make_unique<OpenDocument>(m_services);
    OpenDocument::Opening opening = document->open(path);
    if (opening == OpenDocument::Opening::HeldByOther) {
        enum { Cancel, Copy, ReadOnly };
        const int answer =
            m_ports.alerts
                .runModal({u"“%1” Is Already Open"_s.arg(QFileInfo(path).fileName()),
                           u"%1 has it open. You can open a copy, or only look at it."_s.arg(
                               document->lockHolder()),
                           {u"Cancel"_s, u"Open a Copy"_s, u"Open Read-Only"_s},
                           {}})
                .button;
        if (answer == Cancel) { return nullptr; }
        opening = document->open(
            path, answer == Copy ? OpenDocument::OpenMode::Copy : OpenDocument::OpenMode::ReadOnly);
    }
    return opening == OpenDocument::Opening::Opened ? std::move(document) : nullptr;
}

void PCDocumentController::openRecovered() {
    for (const RecoveredWork& work : m_services.recovery.leftBehind()) {
        if (work.note.reason != RecoveryNote::Reason::Unsaved) { continue; }
        auto document = std::make_unique<OpenDocument>(m_services);
        try {
            if (document->openRecovered(work) == OpenDocument::Opening::Opened) {
                show(std::move(document));
            }
        } catch (const InputError& error) {
            m_ports.alerts.runModal(
                {u"Unsaved Work Cannot Be Brought Back"_s,
                 u"“%1” %2. It is kept in %3."_s.arg(error.entry(), error.reason(), work.folder),
                 {u"Ok"_s},
                 {}});
        }
    }
}

// Save.

void PCDocumentController::tell(const QString& message, const OpenDocument::Outcome& outcome) {
    if (outcome.isDone()) { return; }
    m_ports.alerts.runModal({message, outcome.message, {u"Ok"_s}, {}});
}

void PCDocumentController::save(DocumentWindow& window) {
    OpenDocument& document = window.document();
    if (document.isUntitled() || document.isReadOnly()) { return saveAs(window, {}); }
    document.save([this](const OpenDocument::Outcome& outcome) {
        tell(u"The Project Was Not Saved"_s, outcome);
    });
}

void PCDocumentController::saveAs(DocumentWindow& window, const std::function<void()>& then) {
    OpenDocument& document = window.document();
    const QString place =
        m_panel.choosePlace(&window, u"Save Project As"_s, document.project()->projectName(),
                            QFileInfo(document.path()).path());
    if (place.isNull()) { return; }
    document.saveAs(place, [this, place, then](const OpenDocument::Outcome& outcome) {
        tell(u"The Project Was Not Saved"_s, outcome);
        if (!outcome.isDone()) { return; }
        addRecentProject(place);
        if (then) { then(); }
    });
}

void PCDocumentController::saveCopy(DocumentWindow& window) {
    OpenDocument& document = window.document();
    const QString place = m_panel.choosePlace(&window, u"Save a Copy"_s,
                                              document.project()->projectName() + u" copy"_s,
                                              QFileInfo(document.path()).path());
    if (place.isNull()) { return; }
    document.saveCopy(place, [this, &window, place](const OpenDocument::Outcome& outcome) {
        tell(u"The Copy Was Not Saved"_s, outcome);
        if (outcome.isDone()) {
            window.tellStatus(u"Copy saved as “%1”"_s.arg(QFileInfo(place).completeBaseName()));
        }
    });
}

void PCDocumentController::revert(DocumentWindow& window) {
    const AlertAnswer answer =
        m_ports.alerts.runModal({u"Go Back to the Saved Version?"_s,
                                 u"What you have changed since is kept as a recovery copy."_s,
                                 {u"Revert"_s, u"Cancel"_s},
                                 {}});
    if (answer.button != 0) { return; }
    window.document().revert([this](const OpenDocument::Outcome& outcome) {
        tell(u"The Project Was Not Reverted"_s, outcome);
    });
}

// Close.

void PCDocumentController::quit() {
    if (m_windows.empty()) { return QApplication::quit(); }
    close(m_windows);
}

void PCDocumentController::close(const Windows& windows) {
    QStringList names;
    for (DocumentWindow* window : windows) {
        window->endTextEdit();
        if (window->document().closeNeed() == OpenDocument::CloseNeed::Question) {
            names << u"“%1”"_s.arg(window->document().project()->projectName());
        }
    }
    bool discards = false;
    if (!names.isEmpty()) {
        const bool isOne = names.size() == 1;
        const AlertAnswer answer = m_ports.alerts.runModal(
            {isOne ? u"Save the Changes to %1?"_s.arg(names.first())
                   : u"Save the Changes to %1 Projects?"_s.arg(names.size()),
             isOne ? u"Your changes are lost if you do not save them."_s
                   : names.join(u", "_s) + u": your changes are lost if you do not save them."_s,
             {u"Cancel"_s, u"Discard"_s, u"Save"_s},
             {}});
        if (answer.button == kCancel) { return; }
        discards = answer.button == 1;
    }
    closeNext({windows.begin(), windows.end()}, discards);
}

// One after the other: whoever is asked for a place, or cannot be saved, stays, and all after it.
void PCDocumentController::closeNext(std::deque<DocumentWindow*> windows, bool discards) {
    if (windows.empty()) { return; }
    DocumentWindow* window = windows.front();
    windows.pop_front();
    const auto left = [this, window, windows, discards] {
        window->leave();
        closeNext(windows, discards);
    };
    const auto completion = [left](const OpenDocument::Outcome& outcome) {
        if (outcome.isDone()) { left(); }
    };
    OpenDocument& document = window->document();
    if (document.closeNeed() != OpenDocument::CloseNeed::Question) {
        document.close(completion);
    } else if (discards) {
        document.discard(completion);
    } else {
        saveAs(*window, [&document, completion] { document.close(completion); });
    }
}

// Commands.

void PCDocumentController::addCommands(CommandSet& commands, DocumentWindow& window) {
    commands.add(u"newDocument"_s, {[this] { newDocument(); }});
    commands.add(u"openDocument"_s, {[this, &window] { open(m_panel.chooseProjects(&window)); }});
    commands.add(u"saveDocument"_s, {[this, &window] { save(window); }});
    commands.add(u"saveDocumentAs"_s, {[this, &window] { saveAs(window, {}); }});
    commands.add(u"saveDocumentCopy"_s, {[this, &window] { saveCopy(window); }});
    commands.add(u"revertDocument"_s, {[this, &window] { revert(window); },
                                       [&window] { return window.document().canRevert(); }});
    commands.add(u"quit"_s, {[this] { quit(); }});
    commands.add(u"openPreferences"_s, {[this] { showPreferences(); }});
    commands.add(u"nextWindow"_s, {[this, &window] { showNextWindow(window); },
                                   [this] { return m_windows.size() > 1; }});
    commands.add(u"openOnboardingWindow"_s, {[this] { showStartWindow(); }});
    commands.add(u"showShortcuts"_s, {[&window] { showShortcuts(window); }});
    commands.add(u"about"_s, {[&window] { showAbout(&window); }});
    commands.add(u"openHelp"_s, {[this] { m_ports.workspace.openUrl(helpUrl()); }});
}

void PCDocumentController::fillRecentDocuments(QMenu& menu) {
    for (const QString& path : recentProjects()) {
        const QFileInfo file(path);
        QAction* action = menu.addAction(file.completeBaseName());
        action->setToolTip(path);
        action->setEnabled(file.exists());
        connect(action, &QAction::triggered, this, [this, path] { open({path}); });
    }
    if (menu.isEmpty()) { menu.addAction(u"No Recent Projects"_s)->setEnabled(false); }
    menu.addSeparator();
    connect(menu.addAction(u"Clear Recent Projects"_s), &QAction::triggered, this,
            [] { clearRecentProjects(); });
}

void PCDocumentController::showPreferences() {
    if (!m_preferences) {
        m_preferences = new PreferencesWindow;
        connect(m_preferences, &PreferencesWindow::preferencesDidChange, this, [this] {
            for (DocumentWindow* window : m_windows) {
                window->menu().update();
            }
        });
    }
    bringToFront(*m_preferences);
}

}  // namespace tweenery
