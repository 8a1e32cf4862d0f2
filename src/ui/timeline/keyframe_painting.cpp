#include "ui/timeline/keyframe_painting.h"

#include <QCache>
#include <QPainter>
#include <QPixmap>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/sizes.h"

namespace tweenery {
namespace {

constexpr QSizeF kKeyframe(24, sizes::timelineRow);  // with room for the line's corners
constexpr double kDiamondLine = 2;
constexpr double kMasterLine = 1;
constexpr double kMasterLineEdge = 0.75;
constexpr double kSelectedMaster = 0.5;  // with so much black
constexpr int kCachedKeyframes = 256;

QPolygonF diamond(QPointF middle, double halfWidth, double halfHeight) {
    return QPolygonF({{middle.x(), middle.y() - halfHeight},
                      {middle.x() + halfWidth, middle.y()},
                      {middle.x(), middle.y() + halfHeight},
                      {middle.x() - halfWidth, middle.y()}});
}

QPen diamondLine(const QColor& color) {
    return QPen(color, kDiamondLine, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
}

void drawKeyframe(QPainter& painter, QPointF middle, const KeyframeLook& look) {
    const QPolygonF outer = diamond(middle, 9.5, 13.5);
    const bool isHollow = !look.isSelected;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(look.isInstant || isHollow ? diamondLine(look.color) : QPen(Qt::NoPen));
    painter.setBrush(isHollow ? QColor(Qt::white) : look.color);
    painter.drawPolygon(outer);
    if (!look.isInstant) { return; }
    painter.setBrush(Qt::white);
    painter.drawPolygon(diamond(middle, 4.75, 6.75));
}

struct PictureKey {
    QRgb color;
    bool isInstant;
    bool isSelected;
    double devicePixelRatio;

    bool operator==(const PictureKey&) const = default;
};

size_t qHash(const PictureKey& key, size_t seed) {
    return qHashMulti(seed, key.color, key.isInstant, key.isSelected, key.devicePixelRatio);
}

// Drawn once for each look and scale: a track may show a thousand of them.
QPixmap keyframePicture(const KeyframeLook& look, double devicePixelRatio) {
    static QCache<PictureKey, QPixmap> pictures(kCachedKeyframes);
    const PictureKey key{look.color.rgb(), look.isInstant, look.isSelected, devicePixelRatio};
    if (const QPixmap* kept = pictures.object(key)) { return *kept; }
    QPixmap picture((kKeyframe * devicePixelRatio).toSize());
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawKeyframe(painter, {kKeyframe.width() / 2, kKeyframe.height() / 2}, look);
    painter.end();
    pictures.insert(key, new QPixmap(picture));
    return picture;
}

}  // namespace

void paintKeyframe(QPainter& painter, QPointF middle, const KeyframeLook& look) {
    QRectF rect({}, kKeyframe);
    rect.moveCenter(middle);
    painter.drawPixmap(alignedToDevice(painter, rect).topLeft(),
                       keyframePicture(look, painter.device()->devicePixelRatioF()));
}

void paintMasterKeyframe(QPainter& painter, double x, bool isSelected) {
    const double level = isSelected ? kSelectedMaster : 0;
    const QPointF middle(x, sizes::timelineRow / 2.0);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(darkened(Qt::white, level));
    painter.drawPolygon(diamond(middle, 10, 14));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(diamondLine(Qt::black));
    painter.drawPolygon(diamond(middle, 7, 10));
    painter.restore();
}

void paintMasterLine(QPainter& painter, double x, double height) {
    const QRectF line(x, 0, kMasterLine, height);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(line.adjusted(-kMasterLineEdge, 0, kMasterLineEdge, 0), Qt::white);
    painter.fillRect(alignedToDevice(painter, line), Qt::black);
    painter.restore();
}

void paintKeyframeButton(QPainter& painter, const QRectF& rect, const QColor& fill) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawEllipse(rect);
    painter.setBrush(Qt::white);
    painter.drawPolygon(diamond(rect.center(), 6, 9.5));
    painter.restore();
}

}  // namespace tweenery
