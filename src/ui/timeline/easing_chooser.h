#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "model/properties/easing.h"

class QAbstractButton;

namespace tweenery {

/// The eight easings to choose from, as the content of a popover. A choice does not close it.
class EasingChooser : public QWidget {
    Q_OBJECT

 public:
    struct Use {
        PCEasingMode mode;  // in use now
        QColor color;       // of the button in use
        std::function<void(PCEasingMode mode)> choose;
    };
    explicit EasingChooser(Use use);

    QSize sizeHint() const override;
    /// Another easing is in use.
    void showMode(PCEasingMode mode);
    /// To the button in use, else the first.
    void takeFocus();

 Q_SIGNALS:
    /// Shift or Control went down here.
    void modifierPressed();

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

 private:
    std::vector<QAbstractButton*> m_buttons;
    Use m_use;

    void step(int by);
};

}  // namespace tweenery
