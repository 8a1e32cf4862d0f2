#include "ui/inspector/inspector_pane.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/header_view.h"
#include "ui/widgets/pane_list_view.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Fields first, since numbers are typed one after the other.
int rankInRing(const QWidget& widget) {
    if (qobject_cast<const NumberField*>(&widget)) { return 0; }
    if (qobject_cast<const QAbstractItemView*>(&widget)) { return 1; }
    return qobject_cast<const KeyButton*>(&widget) ? 3 : 2;
}

}  // namespace

InspectorPane::InspectorPane(PCDocumentWindowController& controller, QWidget* parent)
    : QWidget(parent),
      m_controller(controller),
      m_header(new HeaderView(this)),
      m_list(new PaneListView(this)),
      m_panes(makePropertyPanes(controller)) {
    setAccessibleName(u"Inspector"_s);
    setFocusPolicy(Qt::TabFocus);
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(0);
    connect(&m_refreshTimer, &QTimer::timeout, this, &InspectorPane::refresh);
    connect(&Appearance::current(), &Appearance::changed, this, [this] { update(); });
    m_list->setPanes([this] { return shownPanes(); });
    for (const auto& pane : m_panes) {
        connect(pane.get(), &PropertyPane::left, this, &InspectorPane::left);
        connect(pane.get(), &PropertyPane::edited, this, [this] { refreshLater(false); });
    }
    listen();
    refresh();
}

InspectorPane::~InspectorPane() {
    m_shown.clear();
    m_list->reloadData();
}

void InspectorPane::listen() {
    const auto keep = [this](Subscription subscription) {
        m_subscriptions.push_back(std::move(subscription));
    };
    PCProject& project = *m_controller.project();
    keep(m_controller.selectionManager().addSelectionListener(this));
    keep(project.animationsManager().addChangeListener(this));
    keep(m_controller.timeManager().addPlayheadTimeListener(this));
    keep(project.undoManager().addChangeHandler([this] { refreshLater(false); }));
    for (const QString& name :
         {ElementNotification::position, ElementNotification::scale, ElementNotification::rotation,
          ElementNotification::opacity, ElementNotification::name, ElementNotification::subelements,
          ElementNotification::size, ElementNotification::imageName,
          ElementNotification::scalesLocked, ElementNotification::contents,
          ElementNotification::childrenZPosition}) {
        keep(project.notificationCentre().subscribe(name, nullptr,
                                                    [this](const void*) { refreshLater(false); }));
    }
}

// What shows.

void InspectorPane::refreshLater(bool selectionDidChange) {
    m_selectionDidChange = m_selectionDidChange || selectionDidChange;
    if (!m_refreshTimer.isActive()) { m_refreshTimer.start(); }
}

void InspectorPane::refresh() {
    m_refreshTimer.stop();
    if (!isVisible() && !m_selectionDidChange) { return; }
    showHeader();
    const PCElementSelectionManager& selection = m_controller.selectionManager();
    const auto panes = inspectorPanes(selection, m_controller.project()->isSetupMode());
    const EditTime when = m_controller.editTime();
    const InspectorValues values = inspectorValues(*m_controller.project(), selection, when);
    for (const InspectorPaneKind kind : panes) {
        if (m_selectionDidChange) {
            for (NumberField* field : pane(kind).fields()) {
                field->forgetRefusal();
            }
        }
        pane(kind).showValues(values, when);
    }
    m_selectionDidChange = false;
    std::vector<int> heights;
    for (const InspectorPaneKind kind : panes) {
        heights.push_back(pane(kind).height());
    }
    if (panes == m_shown && heights == m_shownHeights) { return; }
    m_shown = panes;
    m_shownHeights = heights;
    showPanes();
}

void InspectorPane::showHeader() {
    const InspectorHeader header = inspectorHeader(m_controller.selectionManager());
    if (header == m_shownHeader) { return; }
    m_shownHeader = header;
    m_header->setTitle(header.title);
    m_header->setTitleImage(header.picture);
}

void InspectorPane::showPanes() {
    QWidget* const focus = QApplication::focusWidget();
    const bool hadFocus = focus && isAncestorOf(focus);
    m_list->reloadData();
    if (!hadFocus) { return; }
    const auto ring = tabRing();
    if (std::find(ring.begin(), ring.end(), focus) != ring.end()) {
        focus->setFocus(Qt::OtherFocusReason);
    } else {
        Q_EMIT left();
    }
}

std::vector<QWidget*> InspectorPane::shownPanes() const {
    std::vector<QWidget*> panes;
    for (const InspectorPaneKind kind : m_shown) {
        panes.push_back(m_panes[static_cast<size_t>(kind)].get());
    }
    return panes;
}

// Keyboard.

std::vector<QWidget*> InspectorPane::tabRing() const {
    std::vector<QWidget*> ring;
    for (QWidget* pane : shownPanes()) {
        for (QWidget* child : pane->findChildren<QWidget*>()) {
            const bool takesTab =
                (child->focusPolicy() & Qt::TabFocus) && child->isEnabled() && !child->isHidden();
            if (takesTab) { ring.push_back(child); }
        }
    }
    std::stable_sort(ring.begin(), ring.end(), [](const QWidget* a, const QWidget* b) {
        return rankInRing(*a) < rankInRing(*b);
    });
    return ring;
}

bool InspectorPane::focusNextPrevChild(bool next) {
    const auto ring = tabRing();
    if (ring.empty()) { return false; }
    const auto count = static_cast<ptrdiff_t>(ring.size());
    const ptrdiff_t found =
        std::find(ring.begin(), ring.end(), QApplication::focusWidget()) - ring.begin();
    const ptrdiff_t present = found < count ? found : (next ? -1 : 0);
    QWidget* target = ring[static_cast<size_t>((present + (next ? 1 : -1) + count) % count)];
    target->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    m_list->ensureWidgetVisible(target);
    return true;
}

void InspectorPane::focusInEvent(QFocusEvent*) {
    focusNextPrevChild(true);
}

// Layout.

void InspectorPane::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Appearance::current().frame().surround);
}

void InspectorPane::resizeEvent(QResizeEvent*) {
    m_header->setGeometry(0, 0, width(), sizes::headerHeight);
    m_list->setGeometry(0, sizes::headerHeight, width(),
                        std::max(0, height() - sizes::headerHeight));
}

void InspectorPane::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refreshLater(true);
}

}  // namespace tweenery
