#include "editor/layers/tweenery_style.h"

#include <QPainter>
#include <cmath>
#include <map>
#include <utility>

namespace tweenery::TweeneryStyle {
namespace {

QImage drawCheckerboard() {
    constexpr int kSquare = 8;
    QImage tile(2 * kSquare, 2 * kSquare, QImage::Format_ARGB32_Premultiplied);
    tile.fill(Qt::white);
    QPainter painter(&tile);
    painter.fillRect(kSquare, 0, kSquare, kSquare, white(0.86F));
    painter.fillRect(0, kSquare, kSquare, kSquare, white(0.86F));
    return tile;
}

// The images of one picture by their scale.
class PictureAtScales {
 public:
    // `draw` paints around (0, 0), in points.
    PictureAtScales(double side, void (*draw)(QPainter& painter)) : m_side(side), m_draw(draw) {}

    QImage at(double scale) {
        auto known = m_images.find(scale);
        if (known == m_images.end()) { known = m_images.emplace(scale, drawn(scale)).first; }
        return known->second;
    }

 private:
    double m_side;  // points
    void (*m_draw)(QPainter& painter);
    std::map<double, QImage> m_images;

    QImage drawn(double scale) const {
        const int side = static_cast<int>(std::ceil(m_side * scale));
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(side / 2.0, side / 2.0);
        painter.scale(scale, scale);
        m_draw(painter);
        return image;
    }
};

// A ring around a cross, white under dark, so that it shows on any artwork.
void drawMarker(QPainter& painter, double ringRadius, const QBrush& inside) {
    for (const auto& [color, width] : {std::pair{QColor(Qt::white), 3.0}, {white(0.15F), 1.0}}) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
        painter.setBrush(inside);
        painter.drawEllipse(QPointF(), ringRadius, ringRadius);
        painter.drawLine(QPointF(-8, 0), QPointF(8, 0));
        painter.drawLine(QPointF(0, -8), QPointF(0, 8));
    }
}

void drawHandle(QPainter& painter) {
    constexpr double kSide = 13;
    constexpr double kRim = 1;
    constexpr double kRadius = 2;
    const QRectF square(-kSide / 2, -kSide / 2, kSide, kSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(square, kRadius, kRadius);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(square.adjusted(kRim, kRim, -kRim, -kRim), kRadius - kRim,
                            kRadius - kRim);
}

}  // namespace

const QImage& canvasPattern() {
    static const QImage tile = drawCheckerboard();
    return tile;
}

QImage anchorPointImage(double scale) {
    static PictureAtScales marker(19, [](QPainter& painter) { drawMarker(painter, 5, Qt::white); });
    return marker.at(scale);
}

QImage anchorPointAxisImage(double scale) {
    static PictureAtScales marker(19,
                                  [](QPainter& painter) { drawMarker(painter, 3, Qt::NoBrush); });
    return marker.at(scale);
}

QImage handleImage(double scale) {
    static PictureAtScales handle(13, drawHandle);
    return handle.at(scale);
}

}  // namespace tweenery::TweeneryStyle
