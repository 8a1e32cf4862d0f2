#include "ui/timeline/head_buttons.h"

#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kKeyAllPicture = 20;
constexpr double kKeyAllPictureLeft = 6;
constexpr double kKeyAllTextLeft = 30;
constexpr double kEasingPicture = 22;
constexpr double kEasingPictureLeft = 3;
constexpr double kMenuArrow = 12;
constexpr double kMenuArrowLeft = 25;

// Darker under the pointer, and more so while it is held.
QColor stateFill(const QAbstractButton& button, const QColor& fill) {
    const FrameColors& colors = frameColors(false, false);
    if (button.isDown()) { return blended(colors.pressed, fill); }
    return button.underMouse() && button.isEnabled() ? blended(colors.hover, fill) : fill;
}

QRectF pictureAt(double left, double side, double height) {
    return {left, (height - side) / 2, side, side};
}

}  // namespace

KeyAllButton::KeyAllButton(QWidget* parent) : QAbstractButton(parent) {
    setText(u"Key All"_s);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void KeyAllButton::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    paintRounded(painter, rect(), sizes::buttonRadius, stateFill(*this, colors.timelineButton),
                 colors.timelineHeadLine);
    const QColor ink = isEnabled() ? colors.headerInk : colors.timelineHeadLine;
    paintIcon(painter, pictureAt(kKeyAllPictureLeft, kKeyAllPicture, height()), u"keyall"_s, ink);
    painter.setFont(frameFont());
    painter.setPen(ink);
    painter.drawText(QRectF(kKeyAllTextLeft, 0, width() - kKeyAllTextLeft, height()),
                     Qt::AlignLeft | Qt::AlignVCenter, text());
}

EasingButton::EasingButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void EasingButton::setPicture(const QString& name) {
    m_picture = name;
    update();
}

void EasingButton::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    paintRounded(painter, rect(), sizes::buttonRadius, stateFill(*this, colors.easingButton), {});
    if (!m_picture.isEmpty()) {
        paintIcon(painter, pictureAt(kEasingPictureLeft, kEasingPicture, height()), m_picture,
                  colors.easingInk);
    }
    paintIcon(painter, pictureAt(kMenuArrowLeft, kMenuArrow, height()), u"chev_down"_s,
              colors.easingInk);
}

}  // namespace tweenery
