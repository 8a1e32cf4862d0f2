#include "ui/timeline/timeline_header.h"

#include <QFontMetrics>
#include <QPainter>

#include "editor/commands.h"
#include "ui/timeline/head_buttons.h"
#include "ui/timeline/keyframe_text.h"
#include "ui/timeline/zoom_slider.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icon_button.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// From the left: Key All, the easing's button and name, magnifier, slider, magnifier.
constexpr int kHeadMargin = 8;
constexpr int kKeyAllWidth = 84;
constexpr int kHeadButtonHeight = 26;
constexpr int kEasingLeft = kHeadMargin + kKeyAllWidth + 12;
constexpr int kEasingWidth = 40;
constexpr int kEasingNameLeft = kEasingLeft + kEasingWidth + 8;
constexpr int kEasingNameWidth = 72;
constexpr int kMagnifier = 16;
constexpr int kSliderGap = 2;
constexpr int kSliderWidth = 80;
constexpr int kSliderGapRight = 4;
constexpr int kZoomWidth = kMagnifier + kSliderGap + kSliderWidth + kSliderGapRight + kMagnifier;

// A press needs more room than the picture.
QRect pressRectAbout(int middle) {
    QRect rect(0, 0, sizes::leastPress, sizes::leastPress);
    rect.moveCenter({middle, sizes::timelineHeader / 2});
    return rect;
}

}  // namespace

TimelineHeader::TimelineHeader(int zoomStops, QWidget* parent)
    : QWidget(parent),
      m_keyAll(new KeyAllButton(this)),
      m_easing(new EasingButton(this)),
      m_zoom(new ZoomSlider(zoomStops, this)),
      m_zoomOut(magnifier(u"zoom_out"_s, u"zoomTimelineOut"_s, &TimelineHeader::zoomOutPressed)),
      m_zoomIn(magnifier(u"zoom_in"_s, u"zoomTimelineIn"_s, &TimelineHeader::zoomInPressed)),
      m_fill(Appearance::current().workbench().timelineRest) {
    m_keyAll->setToolTip(commandToolTip(u"Key All"_s, u"keyAll"_s));
    m_easing->setToolTip(u"Easing of New Keyframes"_s);
    m_easing->setAccessibleName(u"Easing"_s);
    m_zoom->setToolTip(u"Timeline Zoom"_s);
    m_zoom->setAccessibleName(u"Timeline Zoom"_s);
    connect(m_keyAll, &QAbstractButton::clicked, this, &TimelineHeader::keyAllPressed);
    connect(m_easing, &QAbstractButton::clicked, this, &TimelineHeader::easingPressed);
    connect(m_zoom, &QSlider::valueChanged, this, &TimelineHeader::zoomChosen);
    setTabOrder(m_easing, m_zoomOut);
    setTabOrder(m_zoomOut, m_zoom);
    setTabOrder(m_zoom, m_zoomIn);
}

QWidget* TimelineHeader::magnifier(const QString& picture, const QString& command,
                                   void (TimelineHeader::*pressed)()) {
    auto* button = new IconButton(picture, kMagnifier, this);
    button->setInk([] { return Appearance::current().workbench().lightGrey; });
    const QString name = commandNamed(command)->title;
    button->setToolTip(commandToolTip(name, command));
    button->setAccessibleName(name);
    connect(button, &QAbstractButton::clicked, this, pressed);
    return button;
}

void TimelineHeader::showEasing(const QString& picture, const QString& name) {
    m_easing->setPicture(picture);
    m_easing->setAccessibleDescription(name);
    m_easingName = name;
    update();
}

void TimelineHeader::showZoom(int stop) {
    const QSignalBlocker blocker(m_zoom);
    m_zoom->setValue(stop);
}

void TimelineHeader::setFill(const QColor& fill) {
    if (fill == m_fill) { return; }
    m_fill = fill;
    update();
}

QWidget* TimelineHeader::easingButton() const {
    return m_easing;
}

void TimelineHeader::resizeEvent(QResizeEvent*) {
    const int top = (sizes::timelineHeader - kHeadButtonHeight) / 2;
    m_keyAll->setGeometry(kHeadMargin, top, kKeyAllWidth, kHeadButtonHeight);
    m_easing->setGeometry(kEasingLeft, top, kEasingWidth, kHeadButtonHeight);
    const int left = width() - kHeadMargin - kZoomWidth;
    m_zoomOut->setGeometry(pressRectAbout(left + kMagnifier / 2));
    m_zoom->setGeometry(left + kMagnifier + kSliderGap, 0, kSliderWidth, sizes::timelineHeader);
    m_zoomIn->setGeometry(pressRectAbout(left + kZoomWidth - kMagnifier / 2));
    m_zoom->raise();
}

void TimelineHeader::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), m_fill);
    painter.setFont(frameFont());
    painter.setPen(Appearance::current().workbench().timelineInk);
    const int room = qMin(kEasingNameWidth, m_zoomOut->x() - kEasingNameLeft);
    painter.drawText(QRect(kEasingNameLeft, 0, room, sizes::timelineHeader),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(m_easingName, Qt::ElideRight, room));
}

}  // namespace tweenery
