#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

#include "model/properties/easing.h"

class QAbstractButton;

namespace tweenery {

/// The eight easings to choose from, in a popover whose arrow points at what they are for. A child
/// of the window. Escape, or a press outside, closes it; a choice does not.
class EasingPopover : public QWidget {
    Q_OBJECT

 public:
    explicit EasingPopover(QWidget* window);

    struct Use {
        PCEasingMode mode;  // in use now
        QColor color;       // of the button in use
        std::function<void(PCEasingMode mode)> choose;
        QWidget* opener = nullptr;         // a press on it is its own affair
        bool closesWithModifiers = false;  // Shift or Control dismiss
    };
    /// The arrow points at `tip`, a point of the window; the popover lies above it or below, as
    /// asked where there is room.
    void open(const Use& use, QPoint tip, bool prefersAbove);
    /// Another easing is in use.
    void showMode(PCEasingMode mode);
    /// Gives the keyboard back, if it has it.
    void close();
    bool isOpen() const { return isVisible(); }
    QWidget* opener() const { return m_use.opener; }
    /// To the button in use, else the first.
    void takeFocus();

 Q_SIGNALS:
    void closed();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

 private:
    std::vector<QAbstractButton*> m_buttons;
    Use m_use;
    QPointF m_tip;  // of the arrow, in this widget
    bool m_liesAbove = true;
    QPointer<QWidget> m_focusBefore;

    QRectF body() const;
    void place(QPoint tip, bool prefersAbove);
    void step(int by);
};

}  // namespace tweenery
