#include "ui/timeline/rows_view.h"

#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QSet>
#include <QToolTip>

#include "ui/timeline/keyframe_painting.h"
#include "ui/timeline/keyframe_text.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/row_painting.h"
#include "ui/widgets/sizes.h"
#include "ui/widgets/wheel.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// From the left edge.
constexpr int kRowChevron = 16;
constexpr int kRowChevronLeft = 8;
constexpr int kRowChevronCell = 28;
constexpr int kElementIconLeft = 28;
constexpr int kRowNameLeft = 56;
constexpr QSizeF kColorTick(4, 12);
constexpr double kColorTickRadius = 2;
constexpr int kPropertyNameLeft = 68;
// From the right edge.
constexpr int kKeyRight = 12;
constexpr int kKeySide = 25;
constexpr int kLoopSide = 22;
constexpr int kLoopRight = kKeyRight + kKeySide + 11;
constexpr int kNameGap = 8;
constexpr double kSelectionPaleness = 0.6;  // of a selected timeline's row
constexpr double kPressedShade = 0.5;

QString loopPicture(PCRepeatBehavior behavior) {
    switch (behavior) {
        case PCRepeatBehaviorForever:
            return u"loop_on_box"_s;
        case PCRepeatBehaviorForeverAutoreverse:
            return u"loop_reverse_box"_s;
        default:
            return u"loop_off_box"_s;
    }
}

bool isInDisc(const QRectF& rect, QPointF point) {
    const QPointF off = point - rect.center();
    return QPointF::dotProduct(off, off) <= rect.width() * rect.width() / 4;
}

bool movesMark(const QKeyEvent& event) {
    const QSet<int> arrows{Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right};
    return event.modifiers() == Qt::ControlModifier && arrows.contains(event.key());
}

}  // namespace

RowsView::RowsView(PCDocumentWindowController& controller, const TimelineMark& mark,
                   QWidget* parent)
    : QWidget(parent),
      m_controller(controller),
      m_mark(mark),
      m_fill(Appearance::current().workbench().timelineRest) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setAccessibleName(u"Timeline"_s);
    setFocusPolicy(Qt::StrongFocus);
    m_subscriptions.push_back(outline().addChangeHandler([this] { update(); }));
    m_subscriptions.push_back(viewport().addChangeHandler([this] { update(); }));
}

void RowsView::setFill(const QColor& fill) {
    if (fill == m_fill) { return; }
    m_fill = fill;
    update();
}

// Places.

QRect RowsView::rowRect(int row) const {
    const double top = viewport().rowTop(row) - sizes::timelineHeader;
    return QRectF(0, top, width(), sizes::timelineRow).toRect();
}

QRect RowsView::partRect(int row, Part part) const {
    const QRect rect = rowRect(row);
    const auto atRight = [&rect](int right, int side) {
        return QRect(rect.right() + 1 - right - side, rect.top() + (rect.height() - side) / 2, side,
                     side);
    };
    switch (part) {
        case Part::Chevron:
            return {rect.left(), rect.top(), kRowChevronCell, rect.height()};
        case Part::Loop:
            return atRight(kLoopRight, kLoopSide);
        case Part::Keyframe:
            return atRight(kKeyRight, kKeySide);
        default:
            return rect;
    }
}

int RowsView::rowAt(double y) const {
    return viewport().rowAt(y + sizes::timelineHeader);
}

RowsView::Place RowsView::placeAt(QPointF point) const {
    const int number = rowAt(point.y());
    if (number < 0) { return {}; }
    const TimelineRow row = outline().row(number);
    const auto isOn = [&](Part part) { return partRect(number, part).contains(point.toPoint()); };
    if (row.isBlank()) { return {}; }
    if (!row.isTimeline()) { return {number, isOn(Part::Chevron) ? Part::Chevron : Part::Name}; }
    if (isOn(Part::Loop)) { return {number, Part::Loop}; }
    if (isInDisc(partRect(number, Part::Keyframe), point)) { return {number, Part::Keyframe}; }
    return {number, Part::Name};
}

// The pointer.

void RowsView::setHovered(Place place) {
    if (place == m_hovered) { return; }
    for (const int row : {m_hovered.row, place.row}) {
        if (row >= 0) { update(rowRect(row)); }
    }
    m_hovered = place;
}

void RowsView::mousePressEvent(QMouseEvent* event) {
    Q_EMIT pressed();
    if (event->button() != Qt::LeftButton) { return; }
    const Place place = placeAt(event->position());
    if (place.row < 0) { return; }
    if (place.part == Part::Name) { return outline().pressRow(place.row, event->modifiers()); }
    m_pressed = place;
    update(rowRect(place.row));
    if (place.part == Part::Chevron) { activate(place.row, place.part); }
}

void RowsView::mouseMoveEvent(QMouseEvent* event) {
    setHovered(placeAt(event->position()));
    event->ignore();  // the pane follows the pointer too
}

// The keyframe button acts wherever it is let go; the others where they were pressed.
void RowsView::mouseReleaseEvent(QMouseEvent* event) {
    const Place place = std::exchange(m_pressed, {});
    if (place.row < 0) { return; }
    update(rowRect(place.row));
    if (place.part == Part::Keyframe ||
        (place.part == Part::Loop && placeAt(event->position()) == place)) {
        activate(place.row, place.part);
    }
}

void RowsView::mouseDoubleClickEvent(QMouseEvent* event) {
    const Place place = placeAt(event->position());
    if (place.row < 0 || place.part != Part::Name || outline().row(place.row).isTimeline()) {
        return mousePressEvent(event);
    }
    activate(place.row, Part::Chevron);
}

void RowsView::activate(int number, Part part) {
    if (number >= outline().rowCount()) { return; }
    const TimelineRow row = outline().row(number);
    if (part == Part::Chevron && row.element) {
        outline().setExpanded(*row.element, !outline().isExpanded(*row.element));
    } else if (row.isTimeline() && part == Part::Loop) {
        m_controller.keyframeCommands().cycleLoopMode(row.timeline);
    } else if (row.isTimeline() && part == Part::Keyframe) {
        m_controller.keyframeCommands().createKeyframe(row.timeline);
    }
}

void RowsView::leaveEvent(QEvent*) {
    setHovered({});
}

void RowsView::wheelEvent(QWheelEvent* event) {
    event->accept();
    Q_EMIT scrolled(-scrollDistance(*event));
}

void RowsView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const Place place = isByKey ? Place{m_mark.row(), Part::Name} : placeAt(event->pos());
    if (place.row < 0) { return; }
    if (!outline().isSelected(place.row)) { outline().pressRow(place.row, {}); }
    Q_EMIT contextMenuRequested(
        outline().row(place.row).isTimeline() ? timelineRowMenu() : elementRowMenu(),
        isByKey ? mapToGlobal(rowRect(place.row).center()) : event->globalPos());
}

bool RowsView::event(QEvent* event) {
    // The keyboard's mark goes before shortcuts of the menu.
    if (event->type() == QEvent::ShortcutOverride && movesMark(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(), toolTipOf(placeAt(help->pos())), this);
        return true;
    }
    return QWidget::event(event);
}

QString RowsView::toolTipOf(const Place& place) const {
    if (place.row < 0) { return {}; }
    const TimelineRow row = outline().row(place.row);
    switch (place.part) {
        case Part::Loop:
            return commandToolTip(
                u"Loop Mode: %1"_s.arg(loopModeName(row.timeline->repeatBehavior())),
                u"cycleLoopMode"_s);
        case Part::Keyframe:
            return commandToolTip(u"Create Keyframe"_s, u"createKeyframes"_s);
        case Part::Name: {
            if (row.isTimeline()) { return {}; }
            const QString name = row.element->name();
            const int room = width() - kRowNameLeft - kNameGap;
            return rows::isCut(name, room, devicePixelRatioF()) ? name : QString();
        }
        default:
            return {};
    }
}

// Painting.

void RowsView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const auto range = viewport().visibleRows();
    for (int row = range.first; row < range.end; ++row) {
        if (event->region().intersects(rowRect(row))) { paintRow(painter, row); }
    }
    const int end = rowRect(outline().rowCount()).top();
    if (end < height()) { painter.fillRect(0, end, width(), height() - end, m_fill); }
}

void RowsView::paintRow(QPainter& painter, int number) const {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const QRect rect = rowRect(number);
    const TimelineRow row = outline().row(number);
    const bool isSelected = !row.isBlank() && outline().isSelected(number);
    QColor fill = colors.track;
    if (isSelected) {
        fill = row.isTimeline()
                   ? lightened(propertyColor(row.timeline->propertyType()), kSelectionPaleness)
                   : colors.animationSelection;
    }
    if (number == m_hovered.row) { fill = blended(colors.rowHover, fill); }
    painter.fillRect(rect, fill);
    paintLowerLine(painter, rect, colors.trackLine);
    if (row.isBlank()) { return; }
    if (row.isTimeline()) {
        paintTimelineRow(painter, number, *row.timeline, fill);
    } else {
        paintElementRow(painter, rect, *row.element, isSelected);
    }
    if (hasFocus() && FocusRing::keyboardIsInUse() && number == m_mark.row() &&
        !m_mark.keyframe()) {
        rows::paintFocusRing(painter, rect, isSelected && !row.isTimeline());
    }
}

void RowsView::paintElementRow(QPainter& painter, const QRect& rect, const PCElement& element,
                               bool isSelected) const {
    const double middle = QRectF(rect).center().y();
    rows::paintPicture(painter, {kRowChevronLeft + kRowChevron / 2.0, middle}, kRowChevron,
                       outline().isExpanded(element) ? u"chev_down"_s : u"chev_right"_s,
                       isSelected);
    const bool isFolder = element.isGroup() || element.isCanvas();
    rows::paintPicture(painter, {kElementIconLeft + sizes::rowPicture / 2.0, middle},
                       sizes::rowPicture, isFolder ? u"folder"_s : u"image"_s, isSelected);
    rows::paintName(painter, rect.adjusted(kRowNameLeft, 0, -kNameGap, 0), element.name(),
                    isSelected);
}

void RowsView::paintTimelineRow(QPainter& painter, int row, const PCKeyedPropertyTimeline& timeline,
                                const QColor& fill) const {
    const Appearance& appearance = Appearance::current();
    const QRect rect = rowRect(row);
    QRectF tick({}, kColorTick);
    tick.moveCenter(QRectF(rect).center());
    tick.moveLeft(kRowNameLeft);
    paintRounded(painter, tick, kColorTickRadius, propertyColor(timeline.propertyType()), {});
    painter.setFont(appearance.increasesContrast() ? regularFont(sizes::paneLabelSize)
                                                   : lightFont(sizes::paneLabelSize));
    painter.setPen(appearance.workbench().rowInk);
    QRect name = rect;
    name.setLeft(kPropertyNameLeft);
    name.setRight(partRect(row, Part::Loop).left() - kNameGap);
    painter.drawText(
        name, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(timeline.displayString(), Qt::ElideRight, name.width()));
    paintIcon(painter, partRect(row, Part::Loop), loopPicture(timeline.repeatBehavior()), {}, fill);
    QRectF button({}, QSizeF(kKeySide, kKeySide));
    button.moveCenter(QRectF(rect).center());
    button.moveLeft(partRect(row, Part::Keyframe).left());
    paintKeyframeButton(painter, button, keyframeButtonFill(row, timeline));
}

QColor RowsView::keyframeButtonFill(int row, const PCKeyedPropertyTimeline& timeline) const {
    const Place place{row, Part::Keyframe};
    const QColor color = propertyColor(timeline.propertyType());
    if (m_pressed == place) { return darkened(color, kPressedShade); }
    return m_hovered == place ? color : Appearance::current().workbench().lightGrey;
}

}  // namespace tweenery
