#pragma once

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

namespace tweenery {

/// A framed panel over a window, with an arrow at what it belongs to. It is a child of the window
/// and keeps the keyboard while it shows. Escape closes it, and so does whatever makes it
/// pointless: a press outside, the keyboard going elsewhere, the window losing it, its owner
/// moving or vanishing. A press on the owner does nothing but close it, any other press goes on to
/// what lies there. Closed, it takes no part any more, fades and deletes itself.
class Popover : public QWidget {
    Q_OBJECT

 public:
    enum class Side { Above, Below };

    /// Takes `content` over. Its size hint is the panel's size; where the window is smaller it is
    /// given less.
    Popover(QWidget* content, QWidget* window);
    ~Popover() override;

    QWidget* content() const { return m_content; }
    /// False: the keyboard stays where it is when the popover opens; Escape closes it all the same.
    void setTakesKeyboard(bool takes) { m_takesKeyboard = takes; }
    /// Shows it at `anchor`, a rectangle of `owner`, which lies in the window, perhaps an empty
    /// one: on the side that is preferred, or on the other one where that has more room and this
    /// one too little.
    void popUp(QWidget& owner, const QRect& anchor, Side preferred);
    /// Lays it out anew, after the content asks for another size.
    void place();
    /// Closes it, and gives the keyboard back to who had it before. Harmless when it is closed.
    void dismiss();
    /// The panel without arrow and shadow, in the coordinates of the popover.
    QRect panelRect() const;

 Q_SIGNALS:
    /// Once.
    void closed();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    QWidget* m_content;
    QPointer<QWidget> m_owner;
    QPointer<QWidget> m_focusBefore;
    QRect m_anchor;
    Side m_preferred = Side::Below;
    Side m_side = Side::Below;
    int m_arrowX = 0;  // of its tip
    bool m_takesKeyboard = true;
    bool m_isOpen = false;
    QVariantAnimation m_fade;

    QRect anchorInWindow() const;
    bool anchorMovesWith(const QObject* object) const;
    bool takesPress(const QPoint& globalPosition);
    void vanish();
    void focusMoved(QWidget* former, QWidget* focus);
    bool holds(const QWidget* widget) const;
    void fade(double from, double to);
    void endFade();
};

}  // namespace tweenery
