#include "scene/item_painter.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <optional>
#include <type_traits>

namespace tweenery {
namespace {

QTransform transformOf(const DisplayItem& item, QPoint origin) {
    Affine transform = item.toDevice;
    transform.offset -= origin;
    return transform.toQTransform();
}

QPainterPath roundedRect(const QRectF& rect, double cornerRadius) {
    QPainterPath path;
    cornerRadius > 0 ? path.addRoundedRect(rect, cornerRadius, cornerRadius) : path.addRect(rect);
    return path;
}

void draw(QPainter& painter, const FillDrawing& drawing) {
    painter.setBrushOrigin(drawing.rect.topLeft());
    if (drawing.cornerRadius > 0) {
        painter.fillPath(roundedRect(drawing.rect, drawing.cornerRadius), drawing.brush);
    } else {
        painter.fillRect(drawing.rect, drawing.brush);
    }
}

// A path keeps what its first drawing made of it, without a lock: threads must not share it.
void fillCopy(QPainter& painter, const QPainterPath& path, const QColor& color) {
    QPainterPath own;
    own.setFillRule(path.fillRule());
    own.addPath(path);
    painter.fillPath(own, color);
}

void draw(QPainter& painter, const ShapeFill& drawing) {
    fillCopy(painter, drawing.path, drawing.color);
}

void draw(QPainter& painter, const ShapeStroke& drawing) {
    fillCopy(painter, drawing.path, drawing.color);
}

void draw(QPainter& painter, const BorderDrawing& drawing) {
    QPainterPath path = roundedRect(drawing.rect, drawing.cornerRadius);
    const double w = drawing.width;
    const QRectF inside = drawing.rect.adjusted(w, w, -w, -w);
    if (inside.isValid()) { path.addPath(roundedRect(inside, drawing.cornerRadius - w)); }
    painter.fillPath(path, drawing.color);
}

// Where an item that begins a group says that the group ends; the item's own place for others.
size_t endOf(const DisplayItem& item, size_t place) {
    return std::visit(
        [place](const auto& drawing) {
            if constexpr (requires { drawing.end; }) {
                return drawing.end;
            } else {
                return place;
            }
        },
        item.drawing);
}

bool touches(const DisplayItem& item, const QRegion& region) {
    return item.pixels.intersects(region.boundingRect()) &&
           std::any_of(region.begin(), region.end(),
                       [&](const QRect& rect) { return !item.pixelsIn(rect).isEmpty(); });
}

// Around what shows of a turned item in the region, in the item's coordinates.
QRectF shownPart(const DisplayItem& item, const QRegion& region) {
    constexpr int kEdge = 2;  // pixels, so that the antialiased edge of the part does not show
    QRect part;
    for (const QRect& rect : region) {
        part |= item.pixelsIn(rect);
    }
    return item.toDevice.unmapRect(QRectF(part.adjusted(-kEdge, -kEdge, kEdge, kEdge)));
}

// `part` of what is stretched from the image to `rect`, in pixels of the image.
QRect sourceOf(const QRectF& part, const QRectF& rect, const QRect& image) {
    constexpr int kNeighbours = 2;  // pixels that smoothing may read
    const double x = image.width() / rect.width();
    const double y = image.height() / rect.height();
    const QRectF pixels((part.x() - rect.x()) * x, (part.y() - rect.y()) * y, part.width() * x,
                        part.height() * y);
    if (!std::isfinite(pixels.x() + pixels.y() + pixels.width() + pixels.height())) {
        return image;
    }
    const QRect inside = (pixels & QRectF(image)).toAlignedRect();
    return inside.adjusted(-kNeighbours, -kNeighbours, kNeighbours, kNeighbours) & image;
}

// The raster engine moves an image of its own size to whole pixels, also one that is turned by a
// right angle. One that is stretched by next to nothing stays where it is and is smoothed.
void drawAtItsPlace(QPainter& painter, const QRectF& target, const QImage& image,
                    const QRectF& source) {
    constexpr double kNextToNothing = 1 + 1e-9;
    painter.drawImage(QRectF(target.topLeft(), target.size() * kNextToNothing), image, source);
}

// Where an image begins whose pixels each cover one pixel of the picture.
std::optional<QPoint> wholePlaceOf(const DisplayItem& item, const ImageDrawing& drawing) {
    constexpr double kLeastStep = 1.0 / 512;  // half of what the engine tells apart
    const QPointF begin = item.toDevice.map(drawing.rect.topLeft());
    const QPointF size = item.toDevice.map(drawing.rect.bottomRight()) - begin;
    const QPointF place(std::round(begin.x()), std::round(begin.y()));
    const QPointF off = begin - place;
    const double furthestOff =
        std::max({std::abs(off.x()), std::abs(off.y()), std::abs(size.x() - drawing.image.width()),
                  std::abs(size.y() - drawing.image.height())});
    if (!(furthestOff < kLeastStep)) { return std::nullopt; }
    return place.toPoint();
}

void drawUpright(QPainter& painter, const DisplayItem& item, const ImageDrawing& drawing,
                 QPoint origin) {
    if (const auto place = wholePlaceOf(item, drawing)) {
        painter.resetTransform();
        painter.drawImage(*place - origin, drawing.image);
    } else {
        drawAtItsPlace(painter, drawing.rect, drawing.image, drawing.image.rect());
    }
}

// The raster engine walks the whole outline of what it is given for each strip, also where it is
// cut away: of a turned image it gets only the part that shows.
void drawPart(QPainter& painter, const DisplayItem& item, const ImageDrawing& drawing,
              const QRegion& region) {
    const QRectF& rect = drawing.rect;
    const QRect image = drawing.image.rect();
    const QRect source = sourceOf(shownPart(item, region), rect, image);
    const double x = rect.width() / image.width();
    const double y = rect.height() / image.height();
    const QRectF target(rect.x() + source.x() * x, rect.y() + source.y() * y, source.width() * x,
                        source.height() * y);
    drawAtItsPlace(painter, target, drawing.image, source);
}

}  // namespace

void ItemPainter::push(const QRect& area, const QRegion& dirty) {
    if (m_depth == m_surfaces.size()) { m_surfaces.push_back(std::make_unique<Surface>()); }
    Surface& surface = *m_surfaces[m_depth++];
    surface.area = area;
    surface.cuts.assign(1, dirty);
}

void ItemPainter::start(Surface& surface) {
    QPainter& painter = surface.painter;
    painter.begin(&surface.pixels);
    setCut();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(surface.pixels.rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

void ItemPainter::setCut() {
    top().painter.resetTransform();
    top().painter.setClipRegion(dirty().translated(-top().area.topLeft()));
}

void ItemPainter::pushGroup(const DisplayItem& item) {
    push(item.pixels & top().area, dirty() & item.pixels);
    Surface& surface = top();
    const QSize size = surface.area.size();
    const size_t pixels = static_cast<size_t>(size.width()) * static_cast<size_t>(size.height());
    if (surface.memory.size() < pixels) { surface.memory.resize(pixels); }
    surface.pixels = QImage(reinterpret_cast<uchar*>(surface.memory.data()), size.width(),
                            size.height(), size.width() * 4, QImage::Format_ARGB32_Premultiplied);
    start(surface);
}

void ItemPainter::popGroup(double opacity) {
    Surface& group = top();
    const QRect done = dirty().boundingRect();
    group.painter.end();
    --m_depth;
    QPainter& painter = top().painter;
    painter.resetTransform();
    painter.setOpacity(opacity);
    painter.drawImage(done.topLeft() - top().area.topLeft(), group.pixels,
                      done.translated(-group.area.topLeft()));
}

// Takes away what lies outside of the mask.
void ItemPainter::mask(const DisplayItem& item, const MaskEnd& mask) {
    QPainter& painter = top().painter;
    QPainterPath outside;
    outside.addRect(top().pixels.rect());
    outside.addPath(
        transformOf(item, top().area.topLeft()).map(roundedRect(mask.rect, mask.cornerRadius)));
    painter.resetTransform();
    painter.setOpacity(1);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(outside, Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void ItemPainter::step(const DisplayItem& item, const ClipBegin&) {
    const QRegion cut = dirty() & item.pixels;
    top().cuts.push_back(cut);
    setCut();
}

void ItemPainter::step(const DisplayItem&, const ClipEnd&) {
    top().cuts.pop_back();
    setCut();
}

template <typename Drawing>
void ItemPainter::step(const DisplayItem& item, const Drawing& drawing) {
    QPainter& painter = top().painter;
    painter.setTransform(transformOf(item, top().area.topLeft()));
    painter.setOpacity(item.opacity);
    if constexpr (std::is_same_v<Drawing, ImageDrawing>) {
        item.outline.isNull() ? drawUpright(painter, item, drawing, top().area.topLeft())
                              : drawPart(painter, item, drawing, dirty());
    } else {
        draw(painter, drawing);
    }
}

void ItemPainter::paint(const DisplayList& list, const QRect& strip, const QRegion& dirtyPart,
                        QImage& pixels) {
    push(strip, dirtyPart);
    Surface& picture = top();
    picture.pixels = QImage(pixels.bits(), pixels.width(), pixels.height(), pixels.bytesPerLine(),
                            QImage::Format_ARGB32_Premultiplied);
    start(picture);
    const std::vector<DisplayItem>& items = list.items();
    for (size_t i = 0; i < items.size(); ++i) {
        const DisplayItem& item = items[i];
        if (touches(item, dirty())) {
            std::visit([&](const auto& drawing) { step(item, drawing); }, item.drawing);
        } else {
            i = endOf(item, i);
        }
    }
    picture.painter.end();
    --m_depth;
}

}  // namespace tweenery
