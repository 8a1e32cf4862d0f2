#include "ui/timeline/zoom_slider.h"

#include <QMouseEvent>
#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"

namespace tweenery {
namespace {

constexpr double kSliderEnd = 4;  // from its edge to the first stop
constexpr double kGrooveWider = 1;
constexpr double kGroove = 2;
constexpr QSizeF kKnob(5, 12);
constexpr double kStopTick = 3;
constexpr double kStopTickBelow = 5;  // from the middle of the groove

}  // namespace

ZoomSlider::ZoomSlider(int stops, QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setRange(0, stops - 1);
    setPageStep(1);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

double ZoomSlider::placeOf(int stop) const {
    return kSliderEnd + (width() - 2 * kSliderEnd) * stop / maximum();
}

int ZoomSlider::stopAt(double x) const {
    const double share = (x - kSliderEnd) / (width() - 2 * kSliderEnd);
    return qBound(0, qRound(share * maximum()), maximum());
}

void ZoomSlider::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    const double middle = height() / 2.0;
    const QRectF groove(kSliderEnd - kGrooveWider, middle - kGroove / 2,
                        width() - 2 * (kSliderEnd - kGrooveWider), kGroove);
    paintRounded(painter, groove, kGroove / 2, colors.lightGrey, {});
    const double tick = hairlineWidth(painter);
    for (int stop = 0; stop <= maximum(); ++stop) {
        const QRectF line(placeOf(stop) - tick / 2, middle + kStopTickBelow, tick, kStopTick);
        painter.fillRect(alignedToDevice(painter, line), colors.timelineHeadLine);
    }
    QRectF knob({}, kKnob);
    knob.moveCenter({placeOf(value()), middle});
    painter.fillRect(alignedToDevice(painter, knob),
                     isSliderDown() ? colors.lightGrey : colors.onSelected);
}

void ZoomSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return event->ignore(); }
    setSliderDown(true);
    setValue(stopAt(event->position().x()));
}

void ZoomSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) { setValue(stopAt(event->position().x())); }
}

void ZoomSlider::mouseReleaseEvent(QMouseEvent*) {
    setSliderDown(false);
    update();
}

}  // namespace tweenery
