#include "platform/item_painter.h"

#include <QPen>
#include <algorithm>
#include <cmath>

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

void draw(QPainter& painter, const ImageDrawing& drawing) {
    painter.drawImage(drawing.rect, drawing.image);
}

void draw(QPainter& painter, const FillDrawing& drawing) {
    painter.setBrushOrigin(drawing.rect.topLeft());
    if (drawing.cornerRadius > 0) {
        painter.fillPath(roundedRect(drawing.rect, drawing.cornerRadius), drawing.brush);
    } else {
        painter.fillRect(drawing.rect, drawing.brush);
    }
}

// Dashes far smaller than a pixel look like a solid line, but would be drawn one by one.
bool canShowDashes(const LayerShape& shape, const QTransform& transform) {
    const auto& pattern = shape.lineDashPattern;
    const bool isSound = std::all_of(pattern.begin(), pattern.end(), [](double length) {
        return std::isfinite(length) && length >= 0;
    });
    if (!isSound || pattern.empty()) return false;
    double period = 0;
    for (const double length : pattern) {
        period += length;
    }
    constexpr double kLeastPeriodInPixels = 0.25;
    return period * std::sqrt(std::abs(transform.determinant())) >= kLeastPeriodInPixels;
}

QPen penFor(const LayerShape& shape, const QTransform& transform) {
    QPen pen(shape.strokeColor, shape.lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(5);  // in line widths from the corner
    if (!canShowDashes(shape, transform)) return pen;
    QList<qreal> dashes;  // in line widths
    // A pattern of an odd count changes its dashes and gaps each time around.
    const size_t count = shape.lineDashPattern.size() * (shape.lineDashPattern.size() % 2 + 1);
    for (size_t i = 0; i < count; ++i) {
        dashes += shape.lineDashPattern[i % shape.lineDashPattern.size()] / shape.lineWidth;
    }
    pen.setDashPattern(dashes);
    if (std::isfinite(shape.lineDashPhase))
        pen.setDashOffset(shape.lineDashPhase / shape.lineWidth);
    return pen;
}

void draw(QPainter& painter, const ShapeDrawing& drawing) {
    const LayerShape& shape = drawing.shape;
    if (shape.fillColor.alpha() > 0) painter.fillPath(shape.path, shape.fillColor);
    if (shape.lineWidth > 0 && shape.strokeColor.alpha() > 0) {
        painter.strokePath(shape.path, penFor(shape, painter.transform()));
    }
}

void draw(QPainter& painter, const BorderDrawing& drawing) {
    QPainterPath path = roundedRect(drawing.rect, drawing.cornerRadius);
    const double w = drawing.width;
    const QRectF inside = drawing.rect.adjusted(w, w, -w, -w);
    if (inside.isValid()) path.addPath(roundedRect(inside, drawing.cornerRadius - w));
    painter.fillPath(path, drawing.color);
}

// Groups and clips are not painted but change what is painted on.
template <typename Mark>
void draw(QPainter&, const Mark&) {}

}  // namespace

ItemPainter::Surface& ItemPainter::push() {
    if (m_depth == m_surfaces.size()) m_surfaces.push_back(std::make_unique<Surface>());
    return *m_surfaces[m_depth++];
}

void ItemPainter::start(Surface& surface) {
    surface.pixels.fill(Qt::transparent);
    surface.painter.begin(&surface.pixels);
    surface.painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

void ItemPainter::pushGroup(const DisplayItem& item) {
    const QRect area = item.pixels & top().area;
    Surface& surface = push();
    surface.area = area;
    surface.opacity = item.opacity;
    const auto size = static_cast<size_t>(area.width()) * static_cast<size_t>(area.height());
    if (surface.memory.size() < size) surface.memory.resize(size);
    surface.pixels = QImage(reinterpret_cast<uchar*>(surface.memory.data()), area.width(),
                            area.height(), area.width() * 4, QImage::Format_ARGB32_Premultiplied);
    start(surface);
}

void ItemPainter::popGroup() {
    Surface& group = top();
    group.painter.end();
    --m_depth;
    QPainter& painter = top().painter;
    painter.resetTransform();
    painter.setOpacity(group.opacity);
    painter.drawImage(group.area.topLeft() - top().area.topLeft(), group.pixels);
}

void ItemPainter::clip(const DisplayItem& item, const ClipBegin& mask) {
    QPainter& painter = top().painter;
    painter.save();
    painter.setTransform(transformOf(item, top().area.topLeft()));
    if (mask.cornerRadius > 0) {
        painter.setClipPath(roundedRect(mask.rect, mask.cornerRadius), Qt::IntersectClip);
    } else {
        painter.setClipRect(mask.rect, Qt::IntersectClip);
    }
}

void ItemPainter::paintItem(const DisplayItem& item) {
    QPainter& painter = top().painter;
    painter.setTransform(transformOf(item, top().area.topLeft()));
    painter.setOpacity(item.opacity);
    std::visit([&painter](const auto& drawing) { draw(painter, drawing); }, item.drawing);
}

void ItemPainter::paint(const DisplayList& list, const QRect& area, QImage& pixels) {
    Surface& picture = push();
    picture.area = area;
    picture.pixels = QImage(pixels.bits(), pixels.width(), pixels.height(), pixels.bytesPerLine(),
                            QImage::Format_ARGB32_Premultiplied);
    start(picture);
    const std::vector<DisplayItem>& items = list.items();
    for (size_t i = 0; i < items.size(); ++i) {
        const DisplayItem& item = items[i];
        const auto* group = std::get_if<OpacityBegin>(&item.drawing);
        const auto* mask = std::get_if<ClipBegin>(&item.drawing);
        if (!item.pixels.intersects(top().area)) {
            if (group) i = group->end;
            if (mask) i = mask->end;
        } else if (group) {
            pushGroup(item);
        } else if (mask) {
            clip(item, *mask);
        } else if (std::holds_alternative<OpacityEnd>(item.drawing)) {
            popGroup();
        } else if (std::holds_alternative<ClipEnd>(item.drawing)) {
            top().painter.restore();
        } else {
            paintItem(item);
        }
    }
    picture.painter.end();
    --m_depth;
}

}  // namespace tweenery
