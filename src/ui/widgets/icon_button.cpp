#include "ui/widgets/icon_button.h"

#include <QEvent>
#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

IconButton::IconButton(const QString& name, int pictureSize, QWidget* parent)
    : QAbstractButton(parent), m_picture(name), m_pictureSize(pictureSize) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    const int side = std::max(pictureSize, sizes::leastPress);
    resize(side, side);
}

void IconButton::setPicture(const QString& name) {
    if (name == m_picture) { return; }
    m_picture = name;
    update();
}

void IconButton::setAlternatePicture(const QString& name) {
    m_alternatePicture = name;
    update();
}

void IconButton::setInk(std::function<QColor()> ink) {
    m_ink = std::move(ink);
    update();
}

void IconButton::setHoverPlate(bool has) {
    m_hasHoverPlate = has;
    update();
}

QSize IconButton::sizeHint() const {
    const int side = std::max(m_pictureSize, sizes::leastPress);
    return {side, side};
}

QColor IconButton::ink() const {
    if (m_ink) { return m_ink(); }
    const FrameColors& colors = Appearance::current().frame();
    return isEnabled() ? colors.icon : colors.disabledIcon;
}

bool IconButton::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) { update(); }
    return QAbstractButton::event(event);
}

void IconButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool showsAlternate =
        !m_alternatePicture.isEmpty() && isEnabled() && (isDown() || isChecked());
    QRectF picture(0, 0, m_pictureSize, m_pictureSize);
    picture.moveCenter(QRectF(rect()).center());
    if (m_hasHoverPlate && isEnabled() && !showsAlternate && underMouse()) {
        QRectF plate(0, 0, sizes::platePicture, sizes::platePicture);
        plate.moveCenter(picture.center());
        paintRounded(painter, plate.intersected(rect()), sizes::plateRadius,
                     Appearance::current().frame().hover, {});
    }
    paintIcon(painter, picture, showsAlternate ? m_alternatePicture : m_picture, ink());
}

}  // namespace tweenery
