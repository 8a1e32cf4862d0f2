#include "ui/widgets/toggle_icon_button.h"

#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr int kCircle = 56;
constexpr double kPictureShare = 32.0 / kCircle;
constexpr float kPressedShadow = 0.5F;

}  // namespace

ToggleIconButton::ToggleIconButton(QWidget* parent)
    : QAbstractButton(parent),
      m_onIcon(u"image_light_icon"_s),
      m_onColor(Appearance::current().workbench().toggleOn),
      m_offColor(Appearance::current().workbench().toggleOff) {
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    resize(sizeHint());
}

void ToggleIconButton::setOnIcon(const QString& name) {
    m_onIcon = name;
    update();
}

void ToggleIconButton::setOffIcon(const QString& name) {
    m_offIcon = name;
    update();
}

void ToggleIconButton::setOnColor(const QColor& color) {
    m_onColor = color;
    update();
}

void ToggleIconButton::setOffColor(const QColor& color) {
    m_offColor = color;
    update();
}

QSize ToggleIconButton::sizeHint() const {
    return {kCircle, kCircle};
}

QRectF ToggleIconButton::circle() const {
    const double side = std::min(width(), height());
    QRectF square(0, 0, side, side);
    square.moveCenter(QRectF(rect()).center());
    return square;
}

bool ToggleIconButton::hitButton(const QPoint& point) const {
    const QPointF fromMiddle = QPointF(point) + QPointF(0.5, 0.5) - circle().center();
    return std::hypot(fromMiddle.x(), fromMiddle.y()) <= circle().width() / 2;
}

void ToggleIconButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor fill = isOn() ? m_onColor : m_offColor;
    QColor ink = pictureColorOn(fill);
    if (!isEnabled()) {
        fill = QColor();
        ink = Appearance::current().frame().disabledIcon;
    } else if (isDown()) {
        fill = blended(QColor::fromRgbF(0, 0, 0, kPressedShadow), fill);
        ink = pictureColorOn(fill);
    }
    const QRectF place = circle();
    if (fill.isValid()) { paintRounded(painter, place, place.width() / 2, fill, {}); }
    QRectF picture(0, 0, place.width() * kPictureShare, place.width() * kPictureShare);
    picture.moveCenter(place.center());
    paintIcon(painter, picture, !isOn() && !m_offIcon.isEmpty() ? m_offIcon : m_onIcon, ink);
}

}  // namespace tweenery
