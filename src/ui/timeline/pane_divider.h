#pragma once

#include <QMouseEvent>
#include <QWidget>
#include <functional>

namespace tweenery {

/// What of the line between two parts of a pane reacts to the pointer; draws nothing.
class PaneDivider : public QWidget {
 public:
    /// `moveTo` gets the pointer's x in the pane.
    PaneDivider(QWidget* pane, std::function<void(int x)> moveTo)
        : QWidget(pane), m_moveTo(std::move(moveTo)) {
        setCursor(Qt::SplitHCursor);
    }

 protected:
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (event->buttons() & Qt::LeftButton) {
            m_moveTo(mapToParent(event->position().toPoint()).x());
        }
    }

 private:
    std::function<void(int)> m_moveTo;
};

}  // namespace tweenery
