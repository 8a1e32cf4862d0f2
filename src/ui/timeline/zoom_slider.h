#pragma once

#include <QSlider>

namespace tweenery {

/// The zoom of the timeline: a slider over its stops, with a tick for each. A press takes the
/// closest stop.
class ZoomSlider : public QSlider {
    Q_OBJECT

 public:
    /// `stops` is the number of stops.
    ZoomSlider(int stops, QWidget* parent);

    /// The middle of the knob at a stop, in points from the left.
    double placeOf(int stop) const;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

 private:
    int stopAt(double x) const;
};

}  // namespace tweenery
