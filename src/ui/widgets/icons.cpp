#include "ui/widgets/icons.h"

#include <QCache>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include "base/errors.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/icon_names.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kCachedPixels = 4 * 1024 * 1024;
constexpr double kGrid = 24;

struct PixmapKey {
    QString file;
    int width;  // pixels
    int height;
    double devicePixelRatio;
    QRgb color;
    QRgb detail;

    bool operator==(const PixmapKey&) const = default;
};

size_t qHash(const PixmapKey& key, size_t seed) {
    return qHashMulti(seed, key.file, key.width, key.height, key.devicePixelRatio, key.color,
                      key.detail);
}

QByteArray fileText(const QString& name) {
    QFile file(u":/icons/%1.svg"_s.arg(name));
    if (!file.open(QIODevice::ReadOnly)) { failContract(u"* no picture named %1"_s.arg(name)); }
    return file.readAll();
}

// The file with its tint, and the width of its lines, as it is to be drawn.
QByteArray tintedText(const PixmapKey& key, double size) {
    QByteArray text = fileText(key.file);
    const bool liesOnTheGrid = text.contains(R"(viewBox="0 0 24 24")");
    if (liesOnTheGrid) {
        text.replace(R"(stroke-width="1.5")",
                     "stroke-width=\"" + QByteArray::number(iconStrokeWidth(size)) + '"');
    }
    if (qAlpha(key.detail) != 0) { text.replace("#F3F3F3", QColor(key.detail).name().toLatin1()); }
    return text.replace("currentColor", QColor(key.color).name().toLatin1());
}

QPixmap drawnPixmap(const PixmapKey& key, QSizeF size) {
    QPixmap pixmap(key.width, key.height);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer renderer(tintedText(key, std::max(size.width(), size.height())));
    renderer.render(&painter, QRectF(0, 0, key.width, key.height));
    painter.end();
    pixmap.setDevicePixelRatio(key.devicePixelRatio);
    return pixmap;
}

int pixels(double points, double devicePixelRatio) {
    return std::max(1, qRound(points * devicePixelRatio));
}

void paintPlate(QPainter& painter, const QRectF& rect) {
    QRectF plate(0, 0, sizes::platePicture, sizes::platePicture);
    plate.moveCenter(rect.center());
    paintRounded(painter, plate, sizes::plateRadius, Appearance::current().frame().plate, {});
}

}  // namespace

double iconStrokeWidth(double size) {
    const double points = size >= sizes::thickStrokeFrom ? 2.0 : 1.5;
    return points * kGrid / size;
}

QPixmap iconPixmap(const QString& name, QSizeF size, double devicePixelRatio, const QColor& color,
                   const QColor& detail) {
    static QCache<PixmapKey, QPixmap> cache(kCachedPixels);
    const IconSource source = iconSource(name);
    const QColor tint = source.tint.isValid() ? source.tint : color;
    const PixmapKey key = {source.file,
                           pixels(size.width(), devicePixelRatio),
                           pixels(size.height(), devicePixelRatio),
                           devicePixelRatio,
                           tint.rgba(),
                           detail.isValid() ? detail.rgba() : 0};
    if (const QPixmap* kept = cache.object(key)) { return *kept; }
    QPixmap pixmap = drawnPixmap(key, size);
    cache.insert(key, new QPixmap(pixmap), qsizetype{key.width} * key.height);
    return pixmap;
}

void paintIcon(QPainter& painter, const QRectF& rect, const QString& name, const QColor& color,
               const QColor& detail) {
    const bool hasPlate = iconSource(name).hasPlate;
    if (hasPlate) { paintPlate(painter, rect); }
    const QColor& ink = hasPlate ? Appearance::current().frame().onPlate : color;
    const QPixmap pixmap =
        iconPixmap(name, rect.size(), painter.device()->devicePixelRatioF(), ink, detail);
    painter.drawPixmap(alignedToDevice(painter, rect).topLeft(), pixmap);
}

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        const QString name = size <= 24 ? u"tweenery_small"_s : u"tweenery"_s;
        icon.addPixmap(iconPixmap(name, QSizeF(size, size), 1, Qt::black));
    }
    return icon;
}

}  // namespace tweenery
