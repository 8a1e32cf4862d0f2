// The panes of a document's window: which show, how large, where the window is, and which of them
// has the keyboard.

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "ui/canvas/canvas_view.h"
#include "ui/inspector/inspector_pane.h"
#include "ui/navigators/navigator.h"
#include "ui/timeline/timeline_pane.h"
#include "ui/widgets/sizes.h"
#include "ui/window/document_window.h"
#include "ui/window/split_view.h"
#include "ui/window/toolbar.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kLeastOpenTimeline = 100;  // points, where it never was open

QWidget* firstFocusable(const QWidget& pane) {
    for (QWidget* child : pane.findChildren<QWidget*>()) {
        if (child->focusPolicy() != Qt::NoFocus && child->isVisible() && child->isEnabled()) {
            return child;
        }
    }
    return nullptr;
}

QRect available(const QWidget& window) {
    const QScreen* screen = window.screen();
    return screen ? screen->availableGeometry() : QRect(QPoint(), DocumentWindow::leastSize());
}

}  // namespace

void DocumentWindow::addPaneCommands(CommandSet& commands) {
    const auto titled = [](const QString& pane, bool isShown) {
        return (isShown ? u"Hide %1 Pane"_s : u"Show %1 Pane"_s).arg(pane);
    };
    commands.add(u"toggleLeftPane"_s,
                 {[this] {
                      const bool shows = !m_split->panes().leftVisible;
                      m_split->setLeftPaneVisible(shows);
                      if (shows) { m_split->setLeftPaneWidth(sizes::paneWidth); }
                  },
                  {},
                  {},
                  [this, titled] { return titled(u"Left"_s, m_split->panes().leftVisible); }});
    commands.add(u"toggleRightPane"_s,
                 {[this] { m_split->setRightPaneVisible(!m_split->panes().rightVisible); },
                  {},
                  {},
                  [this, titled] { return titled(u"Right"_s, m_split->panes().rightVisible); }});
    commands.add(u"toggleBottomPane"_s,
                 {[this] { toggleBottomPane(); },
                  [this] { return !m_controller->project()->isSetupMode(); },
                  {},
                  [this, titled] { return titled(u"Bottom"_s, !isBottomPaneCollapsed()); }});
}

bool DocumentWindow::isBottomPaneCollapsed() const {
    return m_controller->project()->isSetupMode() ||
           m_split->bottomPaneHeight() == sizes::collapsedTimeline;
}

void DocumentWindow::toggleBottomPane() {
    if (m_lastBottomHeight <= sizes::collapsedTimeline) { m_lastBottomHeight = kLeastOpenTimeline; }
    if (isBottomPaneCollapsed()) {
        m_split->setBottomPaneHeight(m_lastBottomHeight);
    } else {
        m_lastBottomHeight = m_split->bottomPaneHeight();
        m_split->setBottomPaneHeight(sizes::collapsedTimeline);
    }
    updatePanes();
}

// Round the panes that show, from the one that has the keyboard.
void DocumentWindow::focusPane(int step) {
    const std::vector<QWidget*> panes{m_toolbar,
                                      &m_navigator->elementsView(),
                                      &m_navigator->animationsView(),
                                      m_canvas,
                                      m_timeline,
                                      m_inspector};
    const auto count = static_cast<int>(panes.size());
    const auto hasFocus = [this](const QWidget* pane) {
        return focusWidget() && (pane == focusWidget() || pane->isAncestorOf(focusWidget()));
    };
    const auto present =
        static_cast<int>(std::find_if(panes.begin(), panes.end(), hasFocus) - panes.begin());
    for (int i = 1; i <= count; ++i) {
        QWidget* pane = panes[static_cast<size_t>(((present + i * step) % count + count) % count)];
        QWidget* target = pane->focusPolicy() != Qt::NoFocus ? pane : firstFocusable(*pane);
        if (!pane->isVisible() || !target) { continue; }
        return target->setFocus(Qt::TabFocusReason);
    }
}

void DocumentWindow::showAsRemembered() {
    PCProjectPreferences& preferences = m_controller->project()->preferences();
    const QRect screen = available(*this);
    resize(preferences.windowSize().toSize().expandedTo(leastSize()).boundedTo(screen.size()));
    const QRect remembered(preferences.windowPosition().toPoint(), size());
    const bool isReachable = QGuiApplication::screenAt(remembered.center()) != nullptr;
    move(!preferences.newProject() && isReachable
             ? remembered.topLeft()
             : QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size(), screen).topLeft());
    restorePanes();
    show();
    m_controller->viewport().showAsStored();
    m_shownMagnification = m_controller->viewport().magnificationFactor();
    m_isRestored = true;
    preferences.setNewProject(false);
    m_canvas->setFocus();
}

void DocumentWindow::restorePanes() {
    const PCProjectPreferences& preferences = m_controller->project()->preferences();
    if (!preferences.newProject()) {
        m_split->setLeftPaneWidth(preferences.navigatorPaneWidth());
        m_split->setBottomPaneHeight(preferences.timelinePaneHeight());
        m_split->setLeftPaneVisible(preferences.navigatorPaneVisible());
        m_split->setRightPaneVisible(preferences.utilitiesPaneVisible());
    }
    m_split->setBottomPaneVisible(false);
    m_controller->restoreLastProjectState();
    updatePanes();
}

void DocumentWindow::updatePanes() {
    if (!m_toolbar) { return; }
    m_toolbar->setLeftPaneItemActive(!m_split->panes().leftVisible);
    m_toolbar->setRightPaneItemActive(!m_split->panes().rightVisible);
    m_toolbar->setBottomPaneItemActive(isBottomPaneCollapsed());
    m_toolbar->setBottomPaneEnabled(!m_controller->project()->isSetupMode());
    if (!m_isRestored) { return; }
    PCProjectPreferences& preferences = m_controller->project()->preferences();
    preferences.setNavigatorPaneVisible(m_split->panes().leftVisible);
    preferences.setUtilitiesPaneVisible(m_split->panes().rightVisible);
    updateLater();
}

void DocumentWindow::storePaneSizes() {
    PCProjectPreferences& preferences = m_controller->project()->preferences();
    preferences.setNavigatorPaneWidth(static_cast<float>(m_split->leftPaneWidth()));
    preferences.setTimelinePaneHeight(static_cast<float>(m_split->bottomPaneHeight()));
}

}  // namespace tweenery
