#include "ui/timeline/easing_chooser.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include "editor/timeline/easing_choice.h"
#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

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

EasingChooser::EasingChooser(Use use) : m_use(std::move(use)) {
    QPoint cell = kFirstEasingCell;
    for (const EasingChoice& choice : easingChoices()) {
        auto* button = new EasingStyleButton(choice, this);
        button->setGeometry(QRect(cell, kEasingCell));
        button->setColor(m_use.color);
        connect(button, &QAbstractButton::clicked, this, [this, mode = choice.mode] {
            showMode(mode);
            m_use.choose(mode);
        });
        m_buttons.push_back(button);
        cell.rx() += kEasingCell.width();
        if (m_buttons.size() % kColumns == 0) {
            cell = {kFirstEasingCell.x(), cell.y() + kEasingCell.height()};
        }
    }
    showMode(m_use.mode);
}

QSize EasingChooser::sizeHint() const {
    return {sizes::easingPopoverWidth, sizes::easingPopoverHeight};
}

void EasingChooser::showMode(PCEasingMode mode) {
    size_t index = 0;
    for (const EasingChoice& choice : easingChoices()) {
        m_buttons[index++]->setChecked(choice.mode == mode);
    }
}

void EasingChooser::takeFocus() {
    const auto used =
        std::find_if(m_buttons.begin(), m_buttons.end(),
                     [](const QAbstractButton* button) { return button->isChecked(); });
    (used == m_buttons.end() ? m_buttons.front() : *used)->setFocus(Qt::PopupFocusReason);
}

void EasingChooser::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
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
            Q_EMIT modifierPressed();
            return;
        default:
            event->ignore();
    }
}

bool EasingChooser::focusNextPrevChild(bool next) {
    step(next ? 1 : -1);
    return true;
}

void EasingChooser::step(int by) {
    const auto count = static_cast<int>(m_buttons.size());
    const auto present = std::find(m_buttons.begin(), m_buttons.end(), focusWidget());
    const auto index = static_cast<int>(present - m_buttons.begin()) % count;
    m_buttons[static_cast<size_t>((index + by + count) % count)]->setFocus(Qt::TabFocusReason);
}

}  // namespace tweenery
