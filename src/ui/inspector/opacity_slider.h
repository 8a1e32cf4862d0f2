#pragma once

#include <QSlider>

#include "ui/inspector/drag_input.h"

namespace tweenery {

/// A level slider of whole percents.
class OpacitySlider : public QSlider {
    Q_OBJECT

 public:
    explicit OpacitySlider(QWidget* parent);

    /// 0 to 1. Tells nobody.
    void setOpacity(double opacity);

 Q_SIGNALS:
    void dragBegan();
    /// To that opacity, 0 to 1: by the pointer or an assistive tool.
    void moved(double opacity);
    /// By that many percents, by a key.
    void stepped(double percents);
    void dragEnded(bool isCancelled);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

 private:
    void moveTo(double x);
};

}  // namespace tweenery
