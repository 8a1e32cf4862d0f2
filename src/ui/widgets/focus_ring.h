#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace tweenery {

/// The ring round the button or box that has the keyboard: 2 points wide, 2 points away, shown only
/// while the keyboard is in use. One for the whole program.
class FocusRing : public QObject {
    Q_OBJECT

 public:
    /// Installs the one ring; called once, by the style.
    static void install();
    /// The last input came from the keyboard, so that lists show which row has it.
    static bool keyboardIsInUse();

 protected:
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    FocusRing();
    void setKeyboardIsInUse(bool isInUse);
    void follow(QWidget* target);
    void place();
    void attach(QWidget* target);
    void detach();

    QPointer<QWidget> m_focus;   // has the keyboard
    QPointer<QWidget> m_target;  // has the ring
    QPointer<QWidget> m_ring;    // a child of the target's window, and goes with it
    bool m_keyboardIsInUse = false;
};

}  // namespace tweenery
