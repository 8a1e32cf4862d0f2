#include "ui/timeline/tracks_view.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QNativeGestureEvent>
#include <QStyleHints>
#include <QToolTip>
#include <cmath>

#include "editor/timeline/timeline_hits.h"
#include "ui/timeline/keyframe_text.h"
#include "ui/timeline/playhead_field.h"
#include "ui/timeline/ruler_painting.h"
#include "ui/timeline/timeline_accessible.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/feedback_plate.h"
#include "ui/widgets/sizes.h"
#include "ui/widgets/wheel.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr std::chrono::milliseconds kTickPeriod(10);
constexpr double kBarReach = 2;  // of the playhead's line to either side of its time
constexpr double kKeyframeHalfWidth = 10;

QStringList menuCommands(const TimelineMenu& menu, bool isInRuler) {
    switch (menu.target) {
        case TimelineMenu::Target::Keyframe:
            return keyframeMenu(menu.isInstant.has_value());
        case TimelineMenu::Target::MasterKeyframe:
            return {u"deleteKeyframes"_s};
        case TimelineMenu::Target::Nothing:
            break;
    }
    return isInRuler ? rulerMenu() : trackMenu();
}

}  // namespace

TracksView::TracksView(PCDocumentWindowController& controller, const TimelineMark& mark,
                       QWidget* parent)
    : QWidget(parent),
      m_controller(controller),
      m_mark(mark),
      m_fill(Appearance::current().workbench().timelineRest),
      m_feedback(new FeedbackPlate(this)),
      m_field(new PlayheadField(controller, this)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setAccessibleName(u"Tracks"_s);
    m_tickTimer.setTimerType(Qt::PreciseTimer);
    m_tickTimer.setInterval(kTickPeriod);
    connect(&m_tickTimer, &QTimer::timeout, this, &TracksView::tick);
    PCProjectTimeManager& time = m_controller.timeManager();
    m_subscriptions.push_back(time.addPlayheadTimeListener(this));
    m_subscriptions.push_back(time.addPlaybackStateListener(this));
    m_subscriptions.push_back(m_controller.keyframeManager().addSelectionListener(this));
    m_subscriptions.push_back(m_controller.playback().addLoopRangeHandler([this] { update(); }));
    m_subscriptions.push_back(viewport().addChangeHandler([this] { update(); }));
    m_subscriptions.push_back(
        m_controller.timelineOutline().addChangeHandler([this] { update(); }));
}

void TracksView::setFill(const QColor& fill) {
    if (fill == m_fill) { return; }
    m_fill = fill;
    update();
}

void TracksView::setShowsMark(bool shows) {
    if (shows == m_showsMark && !shows) { return; }
    m_showsMark = shows;
    update();
}

// What lies over the tracks.

TracksView::Overlay TracksView::overlay() const {
    const PCProjectTimeManager& time = m_controller.timeManager();
    Overlay overlay;
    overlay.playhead = viewport().pointForTime(time.playheadPositionInMS());
    overlay.label = playheadLabel(time.playheadPositionInMS());
    if (interaction().skimIsShown()) {
        overlay.skim = viewport().pointForTime(time.skimPositionInMS());
    }
    overlay.marquee = interaction().marquee();
    return overlay;
}

QRect TracksView::stripOf(double x) const {
    return QRectF(x - kBarReach, 0, 2 * kBarReach + 1, height()).toAlignedRect();
}

QRegion TracksView::regionOf(const Overlay& overlay) const {
    QRegion region = stripOf(overlay.playhead);
    region += playheadPlate(overlay.playhead, overlay.label).toAlignedRect();
    if (overlay.skim) { region += stripOf(*overlay.skim); }
    if (overlay.marquee) { region += overlay.marquee->toAlignedRect().adjusted(-1, -1, 1, 1); }
    return region.intersected(rect());
}

// Only the strips of the old and the new playhead: while it runs, that is all that changes.
void TracksView::overlayDidChange() {
    const Overlay now = overlay();
    if (now == m_shown) { return; }
    update(regionOf(m_shown) + regionOf(now));
    m_shown = now;
}

// Places.

QRect TracksView::rowRect(int row) const {
    return QRectF(0, viewport().rowTop(row), width(), sizes::timelineRow).toAlignedRect();
}

QRectF TracksView::keyframeRect(int row, int32_t timeInMS) const {
    const double x = viewport().pointForTime(timeInMS);
    return {x - kKeyframeHalfWidth, viewport().rowTop(row), 2 * kKeyframeHalfWidth,
            sizes::timelineRow};
}

QRectF TracksView::masterKeyframeRect(int32_t timeInMS) const {
    const double x = viewport().pointForTime(timeInMS);
    return {x - kKeyframeHalfWidth, 0, 2 * kKeyframeHalfWidth, sizes::timelineRow};
}

QRectF TracksView::playheadRect() const {
    const int32_t time = m_controller.timeManager().playheadPositionInMS();
    return playheadPlate(viewport().pointForTime(time), playheadLabel(time));
}

QRect TracksView::onScreen(const QRectF& rect) const {
    const QRect shown = rect.toAlignedRect().intersected(this->rect());
    return shown.isEmpty() ? QRect() : QRect(mapToGlobal(shown.topLeft()), shown.size());
}

void TracksView::timeManagerDidUpdatePlayhead(PCProjectTimeManager& manager) {
    overlayDidChange();
    if (!manager.isPlayingBack()) { announcePlayhead(*this); }
}

void TracksView::selectionDidChange(const Keyframe& keyframe) {
    update();
    Q_EMIT keyframeSelectionChanged(keyframe);
}

// The pointer.

PointerEvent TracksView::pointerEvent(const QMouseEvent& event) const {
    return {event.position(), event.globalPosition(), event.modifiers(), event.button()};
}

void TracksView::mousePressEvent(QMouseEvent* event) {
    Q_EMIT pressed();
    m_pointer = event->position();
    // The playhead's time is typed into after a click; a drag moves the playhead.
    if (event->button() == Qt::LeftButton && !interaction().easingPopover() &&
        playheadRect().contains(event->position())) {
        m_platePress = pointerEvent(*event);
        return;
    }
    interaction().press(pointerEvent(*event));
    afterPointer();
}

void TracksView::mouseMoveEvent(QMouseEvent* event) {
    m_pointer = event->position();
    if (m_platePress) {
        const double moved = (event->position() - m_platePress->viewPoint).manhattanLength();
        if (moved < QGuiApplication::styleHints()->startDragDistance()) { return; }
        interaction().press(*std::exchange(m_platePress, std::nullopt));
    }
    if (interaction().isPressed()) {
        interaction().drag(pointerEvent(*event));
    } else {
        interaction().modifiersChanged(event->modifiers());
    }
    afterPointer();
    event->ignore();  // the pane follows the pointer too
}

void TracksView::mouseReleaseEvent(QMouseEvent* event) {
    if (std::exchange(m_platePress, std::nullopt)) {
        editPlayheadTime();
        return;
    }
    interaction().release(pointerEvent(*event));
    afterPointer();
}

void TracksView::afterPointer() {
    overlayDidChange();
    m_feedback->show(interaction().feedback(), m_pointer);
    if (!interaction().wantsTicks()) {
        m_tickTimer.stop();
    } else if (!m_tickTimer.isActive()) {
        m_sinceTick.start();
        m_tickTimer.start();
    }
}

void TracksView::tick() {
    interaction().tick(std::chrono::nanoseconds(m_sinceTick.nsecsElapsed()));
    m_sinceTick.start();
    afterPointer();
}

void TracksView::hideEvent(QHideEvent* event) {
    m_platePress.reset();
    interaction().lost();
    afterPointer();
    QWidget::hideEvent(event);
}

void TracksView::contextMenuEvent(QContextMenuEvent* event) {
    if (interaction().isPressed()) { return; }
    const QPointF point = event->pos();
    if (viewport().isInScroller(point)) { return; }
    const TimelineMenu menu = interaction().pressForContextMenu(point);
    Q_EMIT contextMenuRequested(menuCommands(menu, viewport().isInRuler(point)),
                                event->globalPos());
}

void TracksView::editPlayheadTime() {
    m_field->open(playheadRect());
}

// Scrolling and zoom.

void TracksView::wheelEvent(QWheelEvent* event) {
    event->accept();
    if (interaction().isPressed()) { return; }  // what is grabbed stays in hand
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        viewport().zoomAbout(event->position().x(), wheelZoom(*event));
    } else {
        viewport().scrollBy(-scrollDistance(*event));
    }
}

bool TracksView::zoomByGesture(const QNativeGestureEvent& event) {
    if (event.gestureType() != Qt::ZoomNativeGesture || interaction().isPressed()) { return false; }
    viewport().zoomAbout(event.position().x(), std::exp(event.value()));
    return true;
}

bool TracksView::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::NativeGesture:
            return zoomByGesture(static_cast<QNativeGestureEvent&>(*event));
        case QEvent::UngrabMouse:
            m_platePress.reset();
            interaction().lost();
            afterPointer();
            break;
        case QEvent::ToolTip: {
            const auto* help = static_cast<QHelpEvent*>(event);
            QToolTip::showText(help->globalPos(), toolTipAt(help->pos()), this);
            return true;
        }
        default:
            break;
    }
    return QWidget::event(event);
}

QString TracksView::toolTipAt(QPointF point) const {
    const TimelineScene scene = m_controller.timelineScene();
    if (viewport().isInScroller(point)) { return {}; }
    if (viewport().isInRuler(point)) {
        if (playheadRect().contains(point)) { return u"Playhead: Click to Type a Time"_s; }
        const TimelineKeyframe master = masterKeyframeAt(scene, point.x());
        return master ? masterKeyframeName(master->timeInMS()) : QString();
    }
    if (const TimelineKeyframe keyframe = keyframeAt(scene, point)) {
        const auto timeline = keyframe->timeline();
        return keyframeName(*timeline, keyframe->index()) + u": "_s +
               keyframeDescription(*timeline, keyframe->index());
    }
    return {};
}

}  // namespace tweenery
