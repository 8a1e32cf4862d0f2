#include "editor/layers/tweenery_style.h"

#include <QPainter>

namespace tweenery::TweeneryStyle {
namespace {

// Pixels of a marker, and of one of its points: sharp on dense screens too.
constexpr int kMarkerSide = 19 * 2;
constexpr double kMarkerScale = 2;

QImage drawCheckerboard() {
    constexpr int kSquare = 8;
    QImage tile(2 * kSquare, 2 * kSquare, QImage::Format_ARGB32_Premultiplied);
    tile.fill(Qt::white);
    QPainter painter(&tile);
    painter.fillRect(kSquare, 0, kSquare, kSquare, white(0.86F));
    painter.fillRect(0, kSquare, kSquare, kSquare, white(0.86F));
    return tile;
}

// A ring around a cross, white under dark, so that it shows on any artwork.
QImage drawMarker(double ringRadius, bool isFilled) {
    QImage marker(kMarkerSide, kMarkerSide, QImage::Format_ARGB32_Premultiplied);
    marker.fill(Qt::transparent);
    QPainter painter(&marker);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(kMarkerScale, kMarkerScale);
    const QPointF centre(9.5, 9.5);
    for (const auto& [color, width] : {std::pair{QColor(Qt::white), 3.0}, {white(0.15F), 1.0}}) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
        painter.setBrush(isFilled ? QBrush(Qt::white) : QBrush(Qt::NoBrush));
        painter.drawEllipse(centre, ringRadius, ringRadius);
        painter.drawLine(centre - QPointF(8, 0), centre + QPointF(8, 0));
        painter.drawLine(centre - QPointF(0, 8), centre + QPointF(0, 8));
    }
    return marker;
}

}  // namespace

const QImage& canvasPattern() {
    static const QImage tile = drawCheckerboard();
    return tile;
}

const QImage& anchorPointImage() {
    static const QImage marker = drawMarker(5, true);
    return marker;
}

const QImage& anchorPointAxisImage() {
    static const QImage marker = drawMarker(3, false);
    return marker;
}

}  // namespace tweenery::TweeneryStyle
