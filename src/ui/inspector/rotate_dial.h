#pragma once

#include <QDial>

#include "ui/inspector/drag_input.h"

namespace tweenery {

/// A round dial with a line at an angle, clockwise from the right. For assistive tools its value is
/// whole degrees, 0 to 359.
class RotateDial : public QDial {
    Q_OBJECT

 public:
    explicit RotateDial(QWidget* parent);

    double radians() const { return m_radians; }
    void setRadians(double radians);

 Q_SIGNALS:
    void dragBegan();
    /// By that many degrees, also by a key or an assistive tool.
    void turned(double degrees);
    void dragEnded(bool isCancelled);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

 private:
    double m_radians = 0;

    void turn(QPointF from, QPointF to);
};

}  // namespace tweenery
