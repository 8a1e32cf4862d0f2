#include "ui/inspector/key_button.h"

#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kRoom = 44;  // with the diamond
constexpr double kRing = 2;
constexpr QPointF kDiamond(13.5, 12.5);  // from the middle
constexpr double kDiamondHalfWidth = 5.5;
constexpr double kDiamondHalfHeight = 7;
constexpr double kDiamondEdge = 1.5;
constexpr float kPressedShadow = 0.5F;

struct Row {
    QString name;
    QString picture;
};

Row rowOf(InspectorPaneKind pane) {
    switch (pane) {
        case InspectorPaneKind::Position:
            return {u"Position Keyframe"_s, u"property_position"_s};
        case InspectorPaneKind::Scale:
            return {u"Scale Keyframe"_s, u"property_scale_free"_s};
        case InspectorPaneKind::Rotation:
            return {u"Rotation Keyframe"_s, u"property_rotate"_s};
        case InspectorPaneKind::Opacity:
            return {u"Opacity Keyframe"_s, u"property_opacity"_s};
        case InspectorPaneKind::Image:
            return {u"Image Keyframe"_s, u"property_imagesource"_s};
        default:
            return {u"Z-Position Keyframe"_s, u"property_z"_s};
    }
}

QString descriptionOf(KeyState state) {
    switch (state) {
        case KeyState::NotAnimated:
            return u"Not animated"_s;
        case KeyState::Animated:
            return u"Animated"_s;
        case KeyState::KeyframeHere:
            break;
    }
    return u"Keyframe here"_s;
}

QPolygonF diamond(QPointF center, double grow) {
    const QPointF across(kDiamondHalfWidth + grow, 0);
    const QPointF down(0, kDiamondHalfHeight + grow);
    return {{center - down, center + across, center + down, center - across}};
}

}  // namespace

KeyButton::KeyButton(InspectorPaneKind pane, QWidget* parent)
    : QAbstractButton(parent), m_pane(pane) {
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(rowOf(pane).name);
    setAccessibleDescription(descriptionOf(m_state));
    resize(kRoom, kRoom);
    setInAnimation(false);
}

QPoint KeyButton::centreFromTopLeft() {
    return {kRoom / 2, kRoom / 2};
}

void KeyButton::setState(KeyState state) {
    if (state == m_state) { return; }
    m_state = state;
    setChecked(state == KeyState::KeyframeHere);
    setAccessibleDescription(descriptionOf(state));
    update();
}

void KeyButton::setInAnimation(bool isInAnimation) {
    setEnabled(isInAnimation);
    setToolTip(isInAnimation ? u"Create Keyframe"_s : QString());
}

bool KeyButton::hitButton(const QPoint& point) const {
    const QPointF fromMiddle = QPointF(point) + QPointF(0.5, 0.5) - QRectF(rect()).center();
    return std::hypot(fromMiddle.x(), fromMiddle.y()) <= sizes::keyButton / 2.0;
}

void KeyButton::setUnderPointer(bool isUnder) {
    if (isUnder == m_isUnderPointer) { return; }
    m_isUnderPointer = isUnder;
    update();
}

bool KeyButton::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::HoverEnter:
        case QEvent::HoverMove:
            setUnderPointer(hitButton(static_cast<QHoverEvent*>(event)->position().toPoint()));
            break;
        case QEvent::HoverLeave:
        case QEvent::Hide:
            setUnderPointer(false);
            break;
        default:
            break;
    }
    return QAbstractButton::event(event);
}

void KeyButton::mouseMoveEvent(QMouseEvent* event) {
    setUnderPointer(hitButton(event->position().toPoint()));
    QAbstractButton::mouseMoveEvent(event);
}

QColor KeyButton::fill() const {
    if (!isEnabled()) { return {}; }
    const QColor highlight = propertyColor(keyedTypes(m_pane).front());
    if (isDown()) { return blended(QColor::fromRgbF(0, 0, 0, kPressedShadow), highlight); }
    return m_isUnderPointer ? highlight : Appearance::current().workbench().keyButton;
}

void KeyButton::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const QColor line =
        keyButtonLine(keyedTypes(m_pane).front(), Appearance::current().increasesContrast());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF circle(0, 0, sizes::keyButton, sizes::keyButton);
    circle.moveCenter(QRectF(rect()).center());
    const QColor inner = fill();
    const bool hasRing = isEnabled() && m_state != KeyState::NotAnimated;
    if (inner.isValid()) {
        paintRounded(painter, circle, circle.width() / 2, inner, hasRing ? line : QColor(), kRing);
    }
    QRectF picture(0, 0, sizes::keyPicture, sizes::keyPicture);
    picture.moveCenter(circle.center());
    paintIcon(painter, picture, rowOf(m_pane).picture,
              inner.isValid() ? pictureColorOn(inner) : colors.paneIcon);
    if (!isEnabled() || m_state != KeyState::KeyframeHere) { return; }
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.knob);
    painter.drawPolygon(diamond(circle.center() + kDiamond, kDiamondEdge));
    painter.setBrush(line);
    painter.drawPolygon(diamond(circle.center() + kDiamond, 0));
}

}  // namespace tweenery
