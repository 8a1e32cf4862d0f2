#include "scene/display_list.h"

#include <algorithm>
#include <cmath>

#include "scene/parallelogram.h"
#include "scene/reduced_images.h"
#include "scene/touched_pixels.h"

namespace tweenery {
namespace {

// The pixels that a rectangle of device coordinates can touch, with one more on each side for what
// antialiasing and rounding take. Empty for numbers that are not finite.
QRect pixelsAround(const QRectF& rect, const QRect& limit) {
    const double left = std::max<double>(limit.left(), std::floor(rect.left()) - 1);
    const double top = std::max<double>(limit.top(), std::floor(rect.top()) - 1);
    const double right = std::min<double>(limit.right(), std::ceil(rect.right()));
    const double bottom = std::min<double>(limit.bottom(), std::ceil(rect.bottom()));
    const bool isFinite = std::isfinite(rect.x() + rect.y() + rect.width() + rect.height());
    if (!isFinite || left > right || top > bottom) { return {}; }
    return {QPoint(static_cast<int>(left), static_cast<int>(top)),
            QPoint(static_cast<int>(right), static_cast<int>(bottom))};
}

// Coordinates up to here are exact to far less than a pixel, in ours and in the raster engine's
// numbers.
constexpr double kFarthest = 1 << 20;

// The pixels that a cut at the rectangle leaves. Empty for numbers that are not finite.
QRect pixelsInside(const QRectF& rect, const QRect& limit) {
    const QRectF inside = rect & QRectF(limit);
    return inside.isEmpty() ? QRect() : touchedPixels(inside);
}

bool isNear(const QRectF& rect) {
    return std::max({-rect.left(), -rect.top(), rect.right(), rect.bottom()}) <= kFarthest;
}

bool isUpright(const Affine& affine) {
    return affine.linear.b == 0 && affine.linear.c == 0;
}

bool canBeSeenThrough(const Affine& affine) {
    return affine.isFinite() && std::isfinite(1 / affine.linear.determinant());
}

QRectF contentsRect(const Layer& layer, const LayerValues& values) {
    if (layer.contentsGravity() == ContentsGravity::Resize) { return values.bounds; }
    const QSizeF size = QSizeF(values.contents.size()) / values.contentsScale;
    const QPointF centre = values.bounds.center();
    return {centre.x() - size.width() / 2, centre.y() - size.height() / 2, size.width(),
            size.height()};
}

// The image, or a smaller one where it is drawn at half its size or less.
QImage drawnImage(const QImage& image, const QRectF& rect, const Affine& toDevice) {
    const Linear& linear = toDevice.linear;
    const double x = std::hypot(linear.a, linear.b) * rect.width() / image.width();
    const double y = std::hypot(linear.c, linear.d) * rect.height() / image.height();
    return ReducedImages::shared().imageFor(image, x, y);
}

bool isVisible(const QColor& color) {
    return color.isValid() && color.alpha() > 0;
}

bool isVisible(const QBrush& brush) {
    if (brush.style() == Qt::NoBrush) { return false; }
    return brush.style() == Qt::TexturePattern || brush.gradient() || isVisible(brush.color());
}

// Dashes far smaller than a pixel look like a solid line, but would be made one by one.
bool canShowDashes(const LayerShape& shape, double pixelsPerPoint) {
    constexpr double kLeastPeriodInPixels = 0.25;
    double period = 0;
    for (const double length : shape.lineDashPattern) {
        if (!(length >= 0)) { return false; }
        period += length;
    }
    return std::isfinite(period) && period * pixelsPerPoint >= kLeastPeriodInPixels;
}

// The dashes in line widths, as many as gaps.
QList<qreal> dashesOf(const LayerShape& shape) {
    QList<qreal> dashes;
    // A pattern of an odd count changes its dashes and gaps each time around.
    for (size_t rounds = shape.lineDashPattern.size() % 2 + 1; rounds > 0; --rounds) {
        for (const double length : shape.lineDashPattern) {
            dashes += length / shape.lineWidth;
        }
    }
    return dashes;
}

// The painter itself would begin dashes anew at the edge of what it paints.
QPainterPath strokeOf(const LayerShape& shape, const Affine& toDevice) {
    const double pixelsPerPoint = std::sqrt(std::abs(toDevice.linear.determinant()));
    QPainterPathStroker stroker;
    stroker.setWidth(shape.lineWidth);
    stroker.setCapStyle(Qt::FlatCap);
    stroker.setJoinStyle(Qt::MiterJoin);
    stroker.setMiterLimit(5);  // in line widths from the corner
    stroker.setCurveThreshold(0.25 / pixelsPerPoint);
    if (canShowDashes(shape, pixelsPerPoint)) {
        stroker.setDashPattern(dashesOf(shape));
        if (std::isfinite(shape.lineDashPhase)) {
            stroker.setDashOffset(shape.lineDashPhase / shape.lineWidth);
        }
    }
    return stroker.createStroke(shape.path);
}

// Rectangles compare fuzzily with ==.
bool same(const QRectF& a, const QRectF& b) {
    return a.x() == b.x() && a.y() == b.y() && a.width() == b.width() && a.height() == b.height();
}

bool same(const Linear& a, const Linear& b) {
    return a.a == b.a && a.b == b.b && a.c == b.c && a.d == b.d;
}

bool areNear(QPointF a, QPointF b, double tolerance) {
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

bool same(const ImageDrawing& a, const ImageDrawing& b) {
    return a.image.cacheKey() == b.image.cacheKey() && same(a.rect, b.rect);
}

bool same(const FillDrawing& a, const FillDrawing& b) {
    return a.brush == b.brush && same(a.rect, b.rect) && a.cornerRadius == b.cornerRadius;
}

bool same(const ShapeFill& a, const ShapeFill& b) {
    return a.path == b.path && a.color == b.color;
}

bool same(const ShapeStroke& a, const ShapeStroke& b) {
    return a.path == b.path && a.color == b.color;
}

bool same(const BorderDrawing& a, const BorderDrawing& b) {
    return a.color == b.color && a.width == b.width && same(a.rect, b.rect) &&
           a.cornerRadius == b.cornerRadius;
}

bool same(const MaskBegin& a, const MaskBegin& b) {
    return same(a.rect, b.rect) && a.cornerRadius == b.cornerRadius;
}

bool same(const MaskEnd& a, const MaskEnd& b) {
    return same(a.rect, b.rect) && a.cornerRadius == b.cornerRadius;
}

// The others are told by what each item has.
template <typename Mark>
bool same(const Mark&, const Mark&) {
    return true;
}

}  // namespace

QRect DisplayItem::pixelsIn(const QRect& area) const {
    const QRect part = pixels & area;
    if (part.isEmpty() || outline.isNull()) { return part; }
    const auto [left, right] =
        Parallelogram(toDevice, outline).columnsBetween(part.top() - 1, part.bottom() + 2);
    return pixelsAround(QRectF(left, part.top() + 1, right - left, part.height() - 1), part);
}

bool DisplayItem::looksLike(const DisplayItem& other, const QRect& area, double tolerance) const {
    if (opacity != other.opacity || (pixels & area) != (other.pixels & area) ||
        !same(toDevice.linear, other.toDevice.linear) ||
        !areNear(toDevice.offset, other.toDevice.offset, tolerance) ||
        drawing.index() != other.drawing.index()) {
        return false;
    }
    return std::visit(
        [&other](const auto& mine) {
            return same(mine, std::get<std::decay_t<decltype(mine)>>(other.drawing));
        },
        drawing);
}

// Walks the tree. `m_limit` is the part of the picture where anything can show.
class DisplayList::Builder {
 public:
    Builder(DisplayList& list, const QRect& limit) : m_list(list), m_limit(limit) {}

    // `time` is the layer's own.
    void add(Layer& layer, const Affine& toDevice, double time) {
        const LayerValues& values = layer.presentedAt(time);
        if (layer.isHidden() || !(values.opacity > 0) || !canBeSeenThrough(toDevice)) { return; }
        const Node node{layer, values, toDevice, time};
        if (values.opacity >= 1) {
            addParts(node);
            return;
        }
        const size_t begin = items().size();
        append(node, {m_limit}, OpacityBegin{});
        items().back().opacity = values.opacity;
        beginGroup();
        addParts(node);
        --m_groupDepth;
        endOpacity(node, begin);
    }

 private:
    struct Node {
        Layer& layer;
        const LayerValues& values;
        Affine toDevice;
        double time;
    };

    std::vector<DisplayItem>& items() { return m_list.m_items; }

    struct Extent {
        QRect pixels{};
        QRectF outline{};
    };

    template <typename Drawing>
    void append(const Node& node, const Extent& extent, Drawing&& drawing) {
        if (extent.pixels.isEmpty()) { return; }
        items().push_back({&node.layer, node.toDevice, 1.0, extent.pixels, extent.outline,
                           std::forward<Drawing>(drawing)});
    }

    Extent extentOf(const Node& node, const QRectF& rect) const {
        const QRectF box = node.toDevice.mapRect(rect);
        const bool hasSlopes = !isUpright(node.toDevice) && isNear(box);
        return {pixelsAround(box, m_limit), hasSlopes ? rect : QRectF()};
    }

    void addParts(const Node& node) {
        const LayerStyle& style = node.layer.style();
        const QRectF& bounds = node.values.bounds;
        const Extent extent = bounds.isEmpty() ? Extent() : extentOf(node, bounds);
        if (isVisible(style.background)) {
            append(node, extent, FillDrawing{style.background, bounds, style.cornerRadius});
        }
        if (node.layer.masksToBounds()) {
            addMaskedParts(node);
        } else {
            addInside(node);
        }
        if (style.borderWidth > 0 && isVisible(style.borderColor)) {
            append(node, extent,
                   BorderDrawing{style.borderColor, style.borderWidth, bounds, style.cornerRadius});
        }
    }

    // An upright edge is cut at whole pixels, any other one smoothly.
    void addMaskedParts(const Node& node) {
        const QRectF& bounds = node.values.bounds;
        const double cornerRadius = node.layer.style().cornerRadius;
        if (bounds.isEmpty()) { return; }
        if (cornerRadius > 0 || !isUpright(node.toDevice)) {
            beginGroup();
            addCut(node, extentOf(node, bounds), MaskBegin{bounds, cornerRadius, 0},
                   MaskEnd{bounds, cornerRadius});
            --m_groupDepth;
            return;
        }
        const QRect pixels = pixelsInside(node.toDevice.mapRect(bounds), m_limit);
        if (pixels == m_limit) {
            addInside(node);
        } else {
            addCut(node, {pixels}, ClipBegin{0}, ClipEnd{});
        }
    }

    template <typename Begin, typename End>
    void addCut(const Node& node, const Extent& extent, const Begin& begin, const End& end) {
        if (extent.pixels.isEmpty()) { return; }
        const size_t place = items().size();
        append(node, extent, begin);
        const QRect limit = std::exchange(m_limit, extent.pixels);
        addInside(node);
        m_limit = limit;
        if (items().size() == place + 1) {
            items().pop_back();
            return;
        }
        std::get<Begin>(items()[place].drawing).end = items().size();
        append(node, extent, end);
    }

    void beginGroup() { m_list.m_groupDepth = std::max(m_list.m_groupDepth, ++m_groupDepth); }

    void addInside(const Node& node) {
        const LayerValues& values = node.values;
        if (!values.contents.isNull()) { addImage(node, contentsRect(node.layer, values)); }
        if (const LayerShape* shape = node.layer.shape()) { addShape(node, *shape); }
        for (Layer* sublayer : node.layer.sublayersInDrawingOrderAt(node.time)) {
            const double time = sublayer->localTimeAt(node.time);
            add(*sublayer, sublayer->toSuperlayerAt(time).then(node.toDevice), time);
        }
    }

    void addImage(const Node& node, const QRectF& rect) {
        const Extent extent = rect.isEmpty() ? Extent() : extentOf(node, rect);
        if (extent.pixels.isEmpty()) { return; }
        append(node, extent,
               ImageDrawing{drawnImage(node.values.contents, rect, node.toDevice), rect});
    }

    void addShape(const Node& node, const LayerShape& shape) {
        if (shape.path.isEmpty()) { return; }
        if (isVisible(shape.fillColor)) {
            append(node, extentOf(node, shape.path.controlPointRect()),
                   ShapeFill{shape.path, shape.fillColor});
        }
        if (shape.lineWidth > 0 && isVisible(shape.strokeColor)) {
            const QPainterPath stroke = strokeOf(shape, node.toDevice);
            append(node, extentOf(node, stroke.controlPointRect()),
                   ShapeStroke{stroke, shape.strokeColor});
        }
    }

    // One thing alone needs no group: it can be drawn with the opacity.
    void endOpacity(const Node& node, size_t begin) {
        const size_t count = items().size() - begin - 1;
        if (count == 1) {
            items()[begin + 1].opacity *= items()[begin].opacity;
            std::swap(items()[begin], items()[begin + 1]);
        }
        if (count <= 1) {
            items().pop_back();
            return;
        }
        QRect pixels;
        for (size_t i = begin + 1; i < items().size(); ++i) {
            pixels |= items()[i].pixels;
        }
        items()[begin].pixels = pixels;
        std::get<OpacityBegin>(items()[begin].drawing).end = items().size();
        append(node, {pixels}, OpacityEnd{});
        items().back().opacity = items()[begin].opacity;
    }

    DisplayList& m_list;
    QRect m_limit;
    int m_groupDepth = 0;
};

void DisplayList::scroll(QPoint pixels) {
    const QRect picture(QPoint(), m_size);
    for (DisplayItem& item : m_items) {
        item.toDevice.offset += pixels;
        item.pixels = item.pixels.translated(pixels) & picture;
    }
    std::erase_if(m_items, [](const DisplayItem& item) { return item.pixels.isEmpty(); });
}

void DisplayList::build(Layer& root, const Affine& rootToDevice, QSize size) {
    m_items.clear();
    m_size = size;
    m_groupDepth = 0;
    if (size.isEmpty()) { return; }
    root.layoutIfNeeded();
    Builder(*this, QRect(QPoint(0, 0), size)).add(root, rootToDevice, root.localTime());
}

}  // namespace tweenery
