#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <vector>

#include "base/ports.h"

namespace tweenery {

/// A question or message with the program's icon. Buttons stand in the order of the alert; the
/// default one is filled and answers Return.
class AlertDialog : public QDialog {
    Q_OBJECT

 public:
    AlertDialog(const Alert& alert, QWidget* parent);

    AlertAnswer answer() const;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    int m_button;  // index into Alert::buttons
    QCheckBox* m_suppression = nullptr;
};

/// The index of the button that Escape and the closing of the window stand for: the one that backs
/// out, else the default one.
int escapeButton(const Alert& alert);

/// Asks the user in a dialog over a window.
class QtAlertPort : public AlertPort {
 public:
    /// The window over which alerts appear; null: in the middle of the screen.
    void setWindow(QWidget* window) { m_window = window; }
    AlertAnswer runModal(const Alert& alert) override;

 private:
    QPointer<QWidget> m_window;
};

}  // namespace tweenery
