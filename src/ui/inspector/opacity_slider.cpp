#include "ui/inspector/opacity_slider.h"

#include <QKeyEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <cmath>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kWhole = 100;

}  // namespace

OpacitySlider::OpacitySlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setRange(0, kWhole);
    setFocusPolicy(Qt::TabFocus);
    resize(sizes::paneExtraWidth, sizes::paneFieldHeight);
    setAccessibleName(u"Opacity Slider"_s);
    setToolTip(u"Opacity"_s);
    new DragInput(*this, {[this](QPointF point) {
                              Q_EMIT dragBegan();
                              moveTo(point.x());
                          },
                          [this](QPointF, QPointF to) { moveTo(to.x()); },
                          [this](bool isCancelled) { Q_EMIT dragEnded(isCancelled); }});
    connect(this, &QSlider::valueChanged, this,
            [this](int percents) { Q_EMIT moved(static_cast<double>(percents) / kWhole); });
}

void OpacitySlider::setOpacity(double opacity) {
    const QSignalBlocker blocker(this);
    setValue(static_cast<int>(std::round(opacity * kWhole)));
    update();
}

void OpacitySlider::moveTo(double x) {
    const double share = (x - sizes::sliderKnob / 2.0) / (width() - sizes::sliderKnob);
    setValue(static_cast<int>(std::round(std::clamp(share, 0.0, 1.0) * kWhole)));
}

void OpacitySlider::keyPressEvent(QKeyEvent* event) {
    const double step = event->modifiers().testFlag(Qt::ShiftModifier) ? 10 : 1;
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Right:
            Q_EMIT stepped(step);
            return;
        case Qt::Key_Down:
        case Qt::Key_Left:
            Q_EMIT stepped(-step);
            return;
        case Qt::Key_Home:
            Q_EMIT moved(0);
            return;
        case Qt::Key_End:
            Q_EMIT moved(1);
            return;
        default:
            event->ignore();
    }
}

void OpacitySlider::wheelEvent(QWheelEvent* event) {
    event->ignore();  // scrolls the panes
}

void OpacitySlider::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    const double middle = height() / 2.0;
    const QRectF groove(0, middle - sizes::sliderGroove / 2.0, width(), sizes::sliderGroove);
    paintRounded(painter, groove, sizes::sliderGroove / 2.0, colors.rowIcon, {});
    const double left = (width() - sizes::sliderKnob) * static_cast<double>(value()) / kWhole;
    const QRectF knob(left, middle - sizes::sliderKnob / 2.0, sizes::sliderKnob, sizes::sliderKnob);
    paintRounded(painter, knob, sizes::sliderKnob / 2.0, colors.knob, colors.fieldLine);
}

}  // namespace tweenery
