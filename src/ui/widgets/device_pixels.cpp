#include "ui/widgets/device_pixels.h"

#include <QPainter>

namespace tweenery {

QRectF alignedToDevice(const QPainter& painter, const QRectF& rect) {
    const QTransform toDevice = painter.deviceTransform();
    if (toDevice.type() > QTransform::TxScale) { return rect; }
    const QRectF device = toDevice.mapRect(rect);
    const QPointF topLeft(std::round(device.left()), std::round(device.top()));
    const QPointF bottomRight(std::round(device.right()), std::round(device.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

double hairlineWidth(const QPainter& painter) {
    const double scale = painter.deviceTransform().m11();
    return std::max(1.0, std::floor(scale)) / (scale > 0 ? scale : 1);
}

void paintRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& fill,
                  const QColor& line, double lineWidth) {
    const double width = lineWidth * hairlineWidth(painter);
    const double inset = line.isValid() ? width / 2 : 0;
    const QRectF path = alignedToDevice(painter, rect).adjusted(inset, inset, -inset, -inset);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    painter.setPen(line.isValid() ? QPen(line, width) : QPen(Qt::NoPen));
    painter.drawRoundedRect(path, radius - inset, radius - inset);
    painter.restore();
}

void paintLowerLine(QPainter& painter, const QRectF& rect, const QColor& color) {
    QRectF line = alignedToDevice(painter, rect);
    line.setTop(line.bottom() - hairlineWidth(painter));
    painter.fillRect(line, color);
}

}  // namespace tweenery
