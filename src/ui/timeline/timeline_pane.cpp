#include "ui/timeline/timeline_pane.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include "editor/timeline/easing_choice.h"
#include "ui/timeline/easing_chooser.h"
#include "ui/timeline/pane_divider.h"
#include "ui/timeline/rows_view.h"
#include "ui/timeline/timeline_accessible.h"
#include "ui/timeline/timeline_header.h"
#include "ui/timeline/tracks_scroller.h"
#include "ui/timeline/tracks_view.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kLeastTracks = 100;
constexpr int kDividerReach = 2;  // beyond its line, for the pointer

bool isEditingText(const QWidget* widget) {
    return widget && widget->testAttribute(Qt::WA_InputMethodEnabled);
}

}  // namespace

TimelinePane::TimelinePane(PCDocumentWindowController& controller, QWidget* parent)
    : QWidget(parent),
      m_controller(controller),
      m_mark(controller.timelineScene()),
      m_header(new TimelineHeader(TimelineViewport::lastZoomIndex() + 1, this)),
      m_rows(new RowsView(controller, m_mark, this)),
      m_tracks(new TracksView(controller, m_mark, this)),
      m_across(new TracksScroller(Qt::Horizontal, this)),
      m_down(new TracksScroller(Qt::Vertical, this)),
      m_divider(new PaneDivider(this, [this](int x) { setOutlineWidth(x); })),
      m_outlineWidth(sizes::timelineOutline) {
    setAccessibleName(u"Timeline Pane"_s);
    setMouseTracking(true);
    m_header->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_rows);
    connectParts();
    showFill();
    showDefaultEasing();
    viewportDidChange();
}

TimelinePane::~TimelinePane() {
    delete m_popover;
}

void TimelinePane::connectParts() {
    TimelineViewport& viewport = m_controller.timelineViewport();
    CommandSet& commands = m_controller.commands();
    connect(m_header, &TimelineHeader::keyAllPressed, this,
            [&commands] { commands.perform(u"keyAll"_s); });
    connect(m_header, &TimelineHeader::easingPressed, this, &TimelinePane::toggleDefaultEasing);
    connect(m_header, &TimelineHeader::zoomChosen, this,
            [&viewport](int stop) { viewport.setZoomIndex(stop); });
    connect(m_header, &TimelineHeader::zoomInPressed, this, [&viewport] { viewport.zoomIn(); });
    connect(m_header, &TimelineHeader::zoomOutPressed, this, [&viewport] { viewport.zoomOut(); });
    connect(m_rows, &RowsView::scrolled, this,
            [&viewport](QPointF distance) { viewport.scrollBy(distance); });
    connect(m_across, &TracksScroller::scrolledTo, this, [&viewport](double x) {
        viewport.scrollTo({x, viewport.scrollOrigin().y()});
    });
    connect(m_down, &TracksScroller::scrolledTo, this, [&viewport](double y) {
        viewport.scrollTo({viewport.scrollOrigin().x(), y});
    });
    connect(m_rows, &RowsView::contextMenuRequested, this, &TimelinePane::contextMenuRequested);
    connect(m_tracks, &TracksView::contextMenuRequested, this, &TimelinePane::contextMenuRequested);
    connect(m_tracks, &TracksView::keyframeSelectionChanged, this,
            [this](const TimelineKeyframe& keyframe) { announceSelection(*m_rows, keyframe); });
    connect(m_rows, &RowsView::pressed, this, &TimelinePane::takeFocus);
    connect(m_tracks, &TracksView::pressed, this, &TimelinePane::takeFocus);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focus) { focusDidChange(focus); });
    m_subscriptions.push_back(viewport.addChangeHandler([this] { viewportDidChange(); }));
    m_refreshTimer.setSingleShot(true);
    connect(&m_refreshTimer, &QTimer::timeout, this, &TimelinePane::refresh);
    m_subscriptions.push_back(
        m_controller.timelineOutline().addChangeHandler([this] { refreshLater(); }));
    m_subscriptions.push_back(m_controller.timeManager().addPlayheadTimeListener(this));
}

// Once in a turn of the event loop: the outline is made anew when somebody asks it.
void TimelinePane::refreshLater() {
    if (!m_refreshTimer.isActive()) { m_refreshTimer.start(0); }
}

void TimelinePane::refresh() {
    viewportDidChange();
    updateTweenPopover();
}

// Layout.

void TimelinePane::resizeEvent(QResizeEvent*) {
    layOut();
}

void TimelinePane::setOutlineWidth(int width) {
    m_outlineWidth = width;
    layOut();
}

void TimelinePane::layOut() {
    const int most = qMax(sizes::timelineOutline, width() - kLeastTracks);
    m_outlineWidth = qBound(sizes::timelineOutline, m_outlineWidth, most);
    const int head = sizes::timelineHeader;
    const int foot = height() - sizes::timelineScroller;
    const int left = m_outlineWidth + sizes::timelineDivider;
    const int tracksWidth = qMax(0, width() - left);
    // A collapsed pane has head and ruler, and no scroller.
    const bool isOpen = foot > head;
    const int rowsHeight = qMax(0, (isOpen ? foot : height()) - head);
    m_header->setGeometry(0, 0, m_outlineWidth, head);
    m_rows->setGeometry(0, head, m_outlineWidth, rowsHeight);
    m_tracks->setGeometry(left, 0, tracksWidth, height());
    m_divider->setGeometry(m_outlineWidth - kDividerReach, 0,
                           sizes::timelineDivider + 2 * kDividerReach, height());
    m_across->setGeometry(left, foot, tracksWidth, sizes::timelineScroller);
    m_across->setVisible(isOpen);
    m_down->setGeometry(width() - sizes::scrollBar, head, sizes::scrollBar, rowsHeight);
    TimelineViewport& viewport = m_controller.timelineViewport();
    viewport.setSize(QSizeF(tracksWidth, head + rowsHeight + sizes::timelineScroller));
    if (tracksWidth > 0 && !std::exchange(m_isRestored, true)) { viewport.showAsStored(); }
    viewportDidChange();
}

void TimelinePane::viewportDidChange() {
    const TimelineViewport& viewport = m_controller.timelineViewport();
    const QRectF tracks = viewport.tracksRect();
    const QPointF range = viewport.scrollRange();
    m_header->showZoom(viewport.zoomIndex());
    m_across->show(range.x(), viewport.scrollOrigin().x(), tracks.width());
    m_down->show(range.y(), viewport.scrollOrigin().y(), tracks.height());
    m_down->setVisible(range.y() > 0 && tracks.height() > sizes::timelineRow);
}

void TimelinePane::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    painter.fillRect(rect(), hasKeyboard() ? colors.timelineActive : colors.timelineRest);
    painter.fillRect(m_outlineWidth, 0, sizes::timelineDivider, height(), colors.divider);
}

void TimelinePane::showFill() {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const QColor& fill = hasKeyboard() ? colors.timelineActive : colors.timelineRest;
    m_header->setFill(fill);
    m_rows->setFill(fill);
    m_tracks->setFill(fill);
    m_across->setFill(fill);
    update();
}

// The keyboard.

bool TimelinePane::hasKeyboard() const {
    const QWidget* focus = QApplication::focusWidget();
    return focus && (isAncestorOf(focus) || (m_popover && m_popover->isAncestorOf(focus)));
}

void TimelinePane::takeFocus() {
    if (hasKeyboard()) { return; }
    m_focusBefore = QApplication::focusWidget();
    m_tookFocus = true;
    m_rows->setFocus(Qt::MouseFocusReason);
}

void TimelinePane::giveFocusBack() {
    if (!std::exchange(m_tookFocus, false) || !hasKeyboard()) { return; }
    if (m_focusBefore && m_focusBefore->isVisible()) {
        m_focusBefore->setFocus(Qt::MouseFocusReason);
    } else {
        QApplication::focusWidget()->clearFocus();
    }
}

// A window that is left keeps what had the keyboard.
void TimelinePane::focusDidChange(QWidget* focus) {
    if (!focus) { return; }
    m_controller.setKeyboardPane(hasKeyboard() ? KeyboardPane::Timeline : KeyboardPane::Canvas);
    if (focus == m_rows && FocusRing::keyboardIsInUse() && m_mark.row() < 0) { m_mark.moveTo(0); }
    showFill();
}

void TimelinePane::enterEvent(QEnterEvent* event) {
    m_pointer = event->globalPosition().toPoint();
}

// Only a pointer that moves takes the keyboard: the pane may have come under one at rest.
void TimelinePane::mouseMoveEvent(QMouseEvent* event) {
    const QPoint pointer = event->globalPosition().toPoint();
    const bool moved = std::exchange(m_pointer, pointer) != pointer;
    const bool isFree = event->buttons() == Qt::NoButton;
    if (moved && isFree && isActiveWindow() && !isEditingText(QApplication::focusWidget())) {
        takeFocus();
    }
    if (isFree) {
        m_controller.timelineInteraction().hover(m_tracks->mapFromGlobal(event->globalPosition()));
    }
}

void TimelinePane::leaveEvent(QEvent*) {
    m_controller.timelineInteraction().leave();
    if (m_popover || isEditingText(QApplication::focusWidget())) { return; }
    giveFocusBack();
}

void TimelinePane::hideEvent(QHideEvent* event) {
    m_controller.timelineInteraction().leave();
    closeEasings();
    giveFocusBack();
    QWidget::hideEvent(event);
}

void TimelinePane::keyPressEvent(QKeyEvent* event) {
    TimelineInteraction& interaction = m_controller.timelineInteraction();
    switch (event->key()) {
        case Qt::Key_Escape:
            if (interaction.cancel()) { return; }
            break;
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Alt:
            interaction.modifiersChanged(QGuiApplication::queryKeyboardModifiers());
            break;
        default:
            break;
    }
    if (!moveMark(*event)) { event->ignore(); }
}

// Plain arrows are the commands'.
bool TimelinePane::moveMark(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::ShiftModifier && event.key() == Qt::Key_Space) {
        m_mark.select();
    } else if (modifiers == Qt::ControlModifier && event.key() == Qt::Key_Up) {
        m_mark.moveByRows(-1);
    } else if (modifiers == Qt::ControlModifier && event.key() == Qt::Key_Down) {
        m_mark.moveByRows(1);
    } else if (modifiers == Qt::ControlModifier && event.key() == Qt::Key_Left) {
        m_mark.moveByKeyframes(-1);
    } else if (modifiers == Qt::ControlModifier && event.key() == Qt::Key_Right) {
        m_mark.moveByKeyframes(1);
    } else {
        return false;
    }
    markDidChange();
    return true;
}

void TimelinePane::markDidChange() {
    m_rows->update();
    m_tracks->setShowsMark(m_rows->hasFocus() && FocusRing::keyboardIsInUse());
    announceMark(*m_rows);
}

void TimelinePane::keyReleaseEvent(QKeyEvent* event) {
    m_controller.timelineInteraction().modifiersChanged(QGuiApplication::queryKeyboardModifiers());
    event->ignore();
}

bool TimelinePane::focusNextPrevChild(bool next) {
    QList<QWidget*> ring{m_rows};
    for (QWidget* child : m_header->findChildren<QWidget*>()) {
        if (child->focusPolicy() & Qt::TabFocus) { ring << child; }
    }
    const auto count = ring.size();
    const auto present = qMax<qsizetype>(0, ring.indexOf(focusWidget()));
    ring[(present + (next ? 1 : count - 1)) % count]->setFocus(Qt::TabFocusReason);
    return true;
}

// Easing.

void TimelinePane::showDefaultEasing() {
    const EasingChoice& choice =
        easingChoice(m_controller.project()->preferences().defaultEasingMode());
    m_header->showEasing(QString::fromLatin1(choice.darkIcon), QString::fromLatin1(choice.label));
}

void TimelinePane::openEasings(EasingChooser* easings, QWidget& owner, const QRect& anchor,
                               Popover::Side side) {
    closeEasings();
    m_easings = easings;
    m_easingsOwner = &owner;
    m_popover = new Popover(easings, window());
    m_popover->setAccessibleName(u"Easing"_s);
    m_popover->setTakesKeyboard(false);
    connect(m_popover, &Popover::closed, this, &TimelinePane::easingsDidClose);
    m_popover->popUp(owner, anchor, side);
    if (FocusRing::keyboardIsInUse()) { easings->takeFocus(); }
}

bool TimelinePane::easingsBelongTo(const QWidget* owner) const {
    return m_popover && m_easingsOwner == owner;
}

void TimelinePane::closeEasings() {
    if (m_popover) { m_popover->dismiss(); }
}

// The pointer may have left meanwhile.
void TimelinePane::easingsDidClose() {
    const bool wereOfTweens = easingsBelongTo(m_tracks);
    m_popover = nullptr;
    m_easings = nullptr;
    if (wereOfTweens) { m_controller.timelineInteraction().closeEasingPopover(); }
    if (!underMouse()) { giveFocusBack(); }
}

void TimelinePane::toggleDefaultEasing() {
    QWidget* button = m_header->easingButton();
    if (easingsBelongTo(button)) { return closeEasings(); }
    const auto choose = [this](PCEasingMode mode) {
        m_controller.keyframeCommands().setDefaultEasing(mode);
        showDefaultEasing();
    };
    openEasings(new EasingChooser({m_controller.project()->preferences().defaultEasingMode(),
                                   Appearance::current().workbench().green, choose}),
                *button, button->rect(), Popover::Side::Below);
}

void TimelinePane::overlayDidChange() {
    m_tracks->overlayDidChange();
    updateTweenPopover();
}

void TimelinePane::updateTweenPopover() {
    TimelineInteraction& interaction = m_controller.timelineInteraction();
    const auto tip = interaction.easingPopover();
    const bool isOpen = easingsBelongTo(m_tracks);
    if (!tip) { return isOpen ? closeEasings() : void(); }
    const ShownEasing easing = interaction.shownEasing();
    if (isOpen) { return m_easings->showMode(easing.mode); }
    const QColor color =
        easing.property ? propertyColor(*easing.property) : Appearance::current().workbench().green;
    auto* easings = new EasingChooser({easing.mode, color, [&interaction](PCEasingMode mode) {
                                           interaction.chooseEasing(mode);
                                       }});
    connect(easings, &EasingChooser::modifierPressed, this, &TimelinePane::closeEasings);
    openEasings(easings, *m_tracks, QRect(tip->toPoint(), QSize(0, 0)), Popover::Side::Above);
}

}  // namespace tweenery
