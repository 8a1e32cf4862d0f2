#include "ui/widgets/popover.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>

#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

constexpr int kArrowWidth = 22;
constexpr int kArrowHeight = 9;
constexpr int kShadow = 12;  // how far it reaches
constexpr int kShadowDrop = 3;
constexpr int kRadius = 8;
/// All round the panel, for shadow and arrow.
constexpr int kMargin = kShadow;
constexpr int kWindowMargin = 4;  // between the panel and the edge of the window

QPainterPath outline(const QRectF& panel, double arrowX, Popover::Side side) {
    QPainterPath path;
    path.addRoundedRect(panel, kRadius, kRadius);
    const bool isBelow = side == Popover::Side::Below;
    const double base = isBelow ? panel.top() : panel.bottom();
    const double inside = isBelow ? base + 1 : base - 1;
    const double tip = isBelow ? base - kArrowHeight : base + kArrowHeight;
    QPainterPath arrow;
    arrow.addPolygon(QPolygonF({{arrowX - kArrowWidth / 2.0 - 1, inside},
                                {arrowX, tip},
                                {arrowX + kArrowWidth / 2.0 + 1, inside}}));
    arrow.closeSubpath();
    return path.united(arrow);
}

void paintShadow(QPainter& painter, const QRectF& panel) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(Appearance::current().frame().popoverShadow);
    for (int reach = 1; reach < kShadow - kShadowDrop; ++reach) {
        const QRectF ring = panel.adjusted(-reach, -reach, reach, reach).translated(0, kShadowDrop);
        painter.drawRoundedRect(ring, kRadius + reach, kRadius + reach);
    }
}

}  // namespace

Popover::Popover(QWidget* content, QWidget* window) : QWidget(window), m_content(content) {
    m_content->setParent(this);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_NoMousePropagation);
    setCursor(Qt::ArrowCursor);
    setAccessibleRole(*this, QAccessible::Dialog);
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& opacity) {
        if (auto* effect = qobject_cast<QGraphicsOpacityEffect*>(graphicsEffect())) {
            effect->setOpacity(opacity.toDouble());
        }
    });
    connect(&m_fade, &QVariantAnimation::finished, this, &Popover::endFade);
    hide();
}

Popover::~Popover() {
    m_isOpen = false;  // tells nobody
}

QRect Popover::panelRect() const {
    return rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
}

QRect Popover::anchorInWindow() const {
    return {m_owner->mapTo(parentWidget(), m_anchor.topLeft()), m_anchor.size()};
}

// Opening and placing.

void Popover::popUp(QWidget& owner, const QRect& anchor, Side preferred) {
    m_owner = &owner;
    m_anchor = anchor;
    m_preferred = preferred;
    m_focusBefore = parentWidget()->focusWidget();
    m_isOpen = true;
    place();
    show();
    raise();
    fade(0, 1);
    qApp->installEventFilter(this);
    connect(&owner, &QObject::destroyed, this, &Popover::vanish);
    const bool wantsFocus = m_takesKeyboard && !isAncestorOf(QApplication::focusWidget());
    if (wantsFocus && !focusNextPrevChild(true)) { setFocus(Qt::PopupFocusReason); }
    connect(qApp, &QApplication::focusChanged, this, &Popover::focusMoved);
}

void Popover::place() {
    if (!m_owner) { return; }
    const QRect window = parentWidget()->rect();
    const QRect anchor = anchorInWindow();
    QSize size = m_content->sizeHint();
    const int above = anchor.top() - kArrowHeight - kWindowMargin;
    const int below = window.bottom() - anchor.bottom() - kArrowHeight - kWindowMargin;
    const bool prefersBelow = m_preferred == Side::Below;
    const int preferredRoom = prefersBelow ? below : above;
    const int otherRoom = prefersBelow ? above : below;
    const bool isPreferred = preferredRoom >= size.height() || preferredRoom >= otherRoom;
    m_side = isPreferred == prefersBelow ? Side::Below : Side::Above;
    size.setHeight(std::min(size.height(), std::max(preferredRoom, otherRoom)));

    const int middle = anchor.center().x();
    const int rightmost = window.width() - size.width() - kWindowMargin;
    const int left = std::max(kWindowMargin, std::min(middle - size.width() / 2, rightmost));
    const int top = m_side == Side::Below ? anchor.bottom() + 1 + kArrowHeight
                                          : anchor.top() - kArrowHeight - size.height();
    setGeometry(QRect(QPoint(left, top), size).adjusted(-kMargin, -kMargin, kMargin, kMargin));
    const QRect panel = panelRect();
    const int cornerRoom = kRadius + kArrowWidth / 2;
    m_arrowX = std::clamp(middle - x(), panel.left() + cornerRoom,
                          std::max(panel.left() + cornerRoom, panel.right() - cornerRoom));
    m_content->setGeometry(panel);
    m_content->show();
    update();
}

// Closing.

bool Popover::holds(const QWidget* widget) const {
    return widget && (widget == this || isAncestorOf(widget));
}

void Popover::dismiss() {
    const bool hasFocus = holds(QApplication::focusWidget());
    if (m_isOpen && hasFocus && m_focusBefore && m_focusBefore->isVisible()) {
        m_focusBefore->setFocus(Qt::PopupFocusReason);
    }
    vanish();
}

void Popover::vanish() {
    if (!m_isOpen) { return; }
    m_isOpen = false;
    qApp->removeEventFilter(this);
    qApp->disconnect(this);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    if (holds(QApplication::focusWidget())) { QApplication::focusWidget()->clearFocus(); }
    setEnabled(false);
    Q_EMIT closed();
    fade(1, 0);
}

void Popover::focusMoved(QWidget* former, QWidget* focus) {
    const bool isElsewhere = focus && !holds(focus) && focus->window() == window();
    if (isElsewhere && (m_takesKeyboard || holds(former))) { vanish(); }
}

// Fading.

void Popover::fade(double from, double to) {
    m_fade.stop();
    m_fade.setStartValue(from);
    m_fade.setEndValue(to);
    m_fade.setDuration(static_cast<int>(Appearance::current().duration(motion::fade).count()));
    if (m_fade.duration() == 0) { return endFade(); }
    setGraphicsEffect(new QGraphicsOpacityEffect(this));
    m_fade.start();
}

void Popover::endFade() {
    setGraphicsEffect(nullptr);
    if (m_isOpen) { return; }
    hide();
    deleteLater();
}

bool Popover::anchorMovesWith(const QObject* object) const {
    const auto* widget = qobject_cast<const QWidget*>(object);
    return widget && m_owner && (widget == m_owner || widget->isAncestorOf(m_owner));
}

// True for a press that is not to go on.
bool Popover::takesPress(const QPoint& globalPosition) {
    if (panelRect().contains(mapFromGlobal(globalPosition))) { return false; }
    const bool isOnOwner =
        m_owner && m_owner->rect().contains(m_owner->mapFromGlobal(globalPosition));
    dismiss();
    return isOnOwner;
}

bool Popover::eventFilter(QObject* object, QEvent* event) {
    const bool isOnWindow = object == static_cast<QObject*>(window()->windowHandle());
    switch (event->type()) {
        case QEvent::KeyPress:
            if (!isOnWindow || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) { break; }
            dismiss();
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            // On its way to the window, before any widget takes the keyboard by it.
            return isOnWindow &&
                   takesPress(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
        case QEvent::Move:
        case QEvent::Resize:
            if (object == window()) {
                if (event->type() == QEvent::Resize) { dismiss(); }
            } else if (anchorMovesWith(object)) {
                dismiss();
            }
            break;
        case QEvent::Hide:  // perhaps for good, so that the keyboard cannot go there
            if (anchorMovesWith(object)) { vanish(); }
            break;
        case QEvent::WindowDeactivate:
        case QEvent::WindowBlocked:
            if (object == window()) { dismiss(); }
            break;
        default:
            break;
    }
    return false;
}

// Keys.

void Popover::keyPressEvent(QKeyEvent* event) {
    event->accept();  // or the window ran its commands
}

bool Popover::focusNextPrevChild(bool next) {
    QWidget* const present = QApplication::focusWidget();
    QWidget* const from = present && isAncestorOf(present) ? present : this;
    QWidget* candidate = from;
    do {
        candidate = next ? candidate->nextInFocusChain() : candidate->previousInFocusChain();
        const bool takesTab = (candidate->focusPolicy() & Qt::TabFocus) && candidate->isEnabled() &&
                              candidate->isVisibleTo(this);
        if (isAncestorOf(candidate) && takesTab) {
            candidate->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    } while (candidate != from);
    return false;
}

void Popover::paintEvent(QPaintEvent*) {
    const FrameColors& colors = Appearance::current().frame();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF panel = alignedToDevice(painter, panelRect());
    paintShadow(painter, panel);
    const double width = hairlineWidth(painter);
    painter.setBrush(colors.popover);
    painter.setPen(QPen(colors.popoverLine, width));
    const QRectF line = panel.adjusted(width / 2, width / 2, -width / 2, -width / 2);
    painter.drawPath(outline(line, m_arrowX, m_side));
}

}  // namespace tweenery
