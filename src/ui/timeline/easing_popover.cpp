#include "ui/timeline/easing_popover.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include "editor/timeline/easing_choice.h"
#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kPopoverMargin = 16;  // round the body, for its shadow and the arrow
constexpr double kPopoverRadius = 8;
constexpr QSizeF kPopoverArrow(21, 10);
constexpr int kShadowSteps = 12;
constexpr int kColumns = 4;
constexpr QSize kEasingCell(66, 74);
constexpr QPoint kFirstEasingCell(11, 12);
constexpr int kEasingFace = 44;
constexpr double kEasingFaceRadius = 5;
constexpr int kEasingInset = 5;
constexpr int kEasingLabelMiddle = 55;  // from the cell's top

class EasingStyleButton : public QAbstractButton {
 public:
    EasingStyleButton(const EasingChoice& choice, QWidget* parent)
        : QAbstractButton(parent), m_picture(QString::fromLatin1(choice.icon)) {
        setText(QString::fromLatin1(choice.label));
        setCheckable(true);
        setAutoExclusive(false);
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        setAccessibleRole(*this, QAccessible::PushButton);
    }
    void setColor(const QColor& color) {
        m_color = color;
        update();
    }

 protected:
    // The popover's: they go across and down.
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Space) { return QAbstractButton::keyPressEvent(event); }
        event->ignore();
    }
    // Which one is in use is shown by showMode().
    void nextCheckState() override {}
    void paintEvent(QPaintEvent*) override {
        const Appearance& appearance = Appearance::current();
        QPainter painter(this);
        const QRectF face((width() - kEasingFace) / 2.0, 0, kEasingFace, kEasingFace);
        QColor fill = isChecked() ? m_color : appearance.workbench().easingButton;
        if (isDown()) {
            fill = blended(appearance.frame().pressed, fill);
        } else if (underMouse()) {
            fill = blended(frameColors(false, false).hover, fill);
        }
        paintRounded(painter, face, kEasingFaceRadius, fill, {});
        paintIcon(painter, face.adjusted(kEasingInset, kEasingInset, -kEasingInset, -kEasingInset),
                  m_picture,
                  isChecked() ? pictureColorOn(m_color) : appearance.workbench().easingInk);
        painter.setFont(isChecked() ? mediumFont(sizes::smallCaptionTextSize)
                                    : regularFont(sizes::smallCaptionTextSize));
        painter.setPen(isChecked() ? appearance.frame().ink : appearance.frame().secondInk);
        const QRect label(0, kEasingFace, width(), 2 * (kEasingLabelMiddle - kEasingFace));
        painter.drawText(label, Qt::AlignCenter, text());
    }

 private:
    QString m_picture;
    QColor m_color;
};

}  // namespace

EasingPopover::EasingPopover(QWidget* window) : QWidget(window) {
    hide();
    resize(sizes::easingPopoverWidth + 2 * kPopoverMargin,
           sizes::easingPopoverHeight + 2 * kPopoverMargin);
    setAccessibleRole(*this, QAccessible::Grouping);  // before the name is told
    setAccessibleName(u"Easing"_s);
    QPoint cell = body().topLeft().toPoint() + kFirstEasingCell;
    for (const EasingChoice& choice : easingChoices()) {
        auto* button = new EasingStyleButton(choice, this);
        button->setGeometry(QRect(cell, kEasingCell));
        connect(button, &QAbstractButton::clicked, this, [this, mode = choice.mode] {
            showMode(mode);
            m_use.choose(mode);
        });
        m_buttons.push_back(button);
        cell.rx() += kEasingCell.width();
        if (m_buttons.size() % kColumns == 0) {
            cell = {body().toRect().left() + kFirstEasingCell.x(), cell.y() + kEasingCell.height()};
        }
    }
}

QRectF EasingPopover::body() const {
    return {kPopoverMargin, kPopoverMargin, sizes::easingPopoverWidth, sizes::easingPopoverHeight};
}

void EasingPopover::open(const Use& use, QPoint tip, bool prefersAbove) {
    m_use = use;
    place(tip, prefersAbove);
    showMode(use.mode);
    qApp->installEventFilter(this);
    show();
    raise();
    if (FocusRing::keyboardIsInUse()) { takeFocus(); }
}

void EasingPopover::showMode(PCEasingMode mode) {
    size_t index = 0;
    for (const EasingChoice& choice : easingChoices()) {
        auto* button = static_cast<EasingStyleButton*>(m_buttons[index++]);
        button->setChecked(choice.mode == mode);
        button->setColor(m_use.color);
    }
}

void EasingPopover::close() {
    if (!isVisible()) { return; }
    qApp->removeEventFilter(this);
    const bool hasFocus = isAncestorOf(QApplication::focusWidget());
    hide();
    if (hasFocus && m_focusBefore) { m_focusBefore->setFocus(Qt::PopupFocusReason); }
    Q_EMIT closed();
}

void EasingPopover::takeFocus() {
    m_focusBefore = QApplication::focusWidget();
    const auto used =
        std::find_if(m_buttons.begin(), m_buttons.end(),
                     [](const QAbstractButton* button) { return button->isChecked(); });
    (used == m_buttons.end() ? m_buttons.front() : *used)->setFocus(Qt::PopupFocusReason);
}

void EasingPopover::place(QPoint tip, bool prefersAbove) {
    const int reach = sizes::easingPopoverHeight + static_cast<int>(kPopoverArrow.height());
    const bool fitsAbove = tip.y() >= reach;
    const bool fitsBelow = parentWidget()->height() - tip.y() >= reach;
    m_liesAbove = prefersAbove ? fitsAbove || !fitsBelow : fitsAbove && !fitsBelow;
    const int room = parentWidget()->width() - sizes::easingPopoverWidth;
    const int left = qBound(0, tip.x() - sizes::easingPopoverWidth / 2, qMax(0, room));
    const int top = m_liesAbove ? tip.y() - reach : tip.y() + reach - sizes::easingPopoverHeight;
    const QPoint corner = QPoint(left, top) - body().topLeft().toPoint();
    move(corner);
    m_tip = tip - corner;
}

void EasingPopover::paintEvent(QPaintEvent*) {
    const FrameColors& colors = Appearance::current().frame();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = kShadowSteps; i > 0; --i) {
        paintRounded(painter, body().adjusted(-i, 2 - i, i, 2 + i), kPopoverRadius + i,
                     QColor(0, 0, 0, 3), {});
    }
    const double edge = m_liesAbove ? body().bottom() : body().top();
    const double half = kPopoverArrow.width() / 2;
    const double middle = qBound(body().left() + kPopoverRadius + half, m_tip.x(),
                                 body().right() - kPopoverRadius - half);
    const double inward = m_liesAbove ? -1 : 1;
    QPainterPath arrow;
    arrow.moveTo(middle - half, edge + inward);
    arrow.lineTo(middle, m_tip.y());
    arrow.lineTo(middle + half, edge + inward);
    arrow.closeSubpath();
    const double line = hairlineWidth(painter);
    QPainterPath outline;
    outline.addRoundedRect(body().adjusted(line / 2, line / 2, -line / 2, -line / 2),
                           kPopoverRadius, kPopoverRadius);
    painter.setPen(QPen(colors.popoverLine, line));
    painter.setBrush(colors.popover);
    painter.drawPath(outline.united(arrow));
}

// On the shadow: that is outside.
void EasingPopover::mousePressEvent(QMouseEvent* event) {
    if (!body().contains(event->position())) { close(); }
}

void EasingPopover::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            return close();
        case Qt::Key_Left:
            return step(-1);
        case Qt::Key_Right:
            return step(1);
        case Qt::Key_Up:
            return step(-kColumns);
        case Qt::Key_Down:
            return step(kColumns);
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (auto* button = qobject_cast<QAbstractButton*>(focusWidget())) { button->click(); }
            return;
        case Qt::Key_Shift:
        case Qt::Key_Control:
            if (m_use.closesWithModifiers) { close(); }
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

bool EasingPopover::focusNextPrevChild(bool next) {
    step(next ? 1 : -1);
    return true;
}

void EasingPopover::step(int by) {
    const auto count = static_cast<int>(m_buttons.size());
    const auto present = std::find(m_buttons.begin(), m_buttons.end(), focusWidget());
    const auto index = static_cast<int>(present - m_buttons.begin()) % count;
    m_buttons[static_cast<size_t>((index + by + count) % count)]->setFocus(Qt::TabFocusReason);
}

bool EasingPopover::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && object->isWindowType()) {
        close();
        return true;
    }
    const auto* widget = qobject_cast<QWidget*>(object);
    if (event->type() == QEvent::MouseButtonPress && widget && widget->window() == window() &&
        widget != this && !isAncestorOf(widget) && widget != m_use.opener) {
        close();
    }
    if (event->type() == QEvent::WindowDeactivate && object == window()) { close(); }
    return false;
}

}  // namespace tweenery
