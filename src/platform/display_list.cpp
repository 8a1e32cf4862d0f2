#include "platform/display_list.h"

#include <algorithm>
#include <cmath>

namespace tweenery {
namespace {

// How far beyond its corner a mitred join may reach, in line widths.
constexpr double kMiterReach = 5;

// The pixels that a rectangle of device coordinates can touch, with one more on each side for what
// antialiasing and rounding take. Empty for numbers that are not finite.
QRect pixelsAround(const QRectF& rect, const QRect& limit) {
    const double left = std::max<double>(limit.left(), std::floor(rect.left()) - 1);
    const double top = std::max<double>(limit.top(), std::floor(rect.top()) - 1);
    const double right = std::min<double>(limit.right(), std::ceil(rect.right()));
    const double bottom = std::min<double>(limit.bottom(), std::ceil(rect.bottom()));
    const bool isFinite = std::isfinite(rect.x() + rect.y() + rect.width() + rect.height());
    if (!isFinite || left > right || top > bottom) return {};
    return {QPoint(static_cast<int>(left), static_cast<int>(top)),
            QPoint(static_cast<int>(right), static_cast<int>(bottom))};
}

bool isUpright(const Affine& affine) {
    return affine.linear.b == 0 && affine.linear.c == 0;
}

bool canBeSeenThrough(const Affine& affine) {
    return affine.isFinite() && std::isfinite(1 / affine.linear.determinant());
}

QRectF contentsRect(const Layer& layer, const LayerValues& values) {
    if (layer.contentsGravity() == ContentsGravity::Resize) return values.bounds;
    const QSizeF size = QSizeF(values.contents.size()) / layer.contentsScale();
    const QPointF centre = values.bounds.center();
    return {centre.x() - size.width() / 2, centre.y() - size.height() / 2, size.width(),
            size.height()};
}

bool isVisible(const QColor& color) {
    return color.isValid() && color.alpha() > 0;
}

bool isVisible(const QBrush& brush) {
    if (brush.style() == Qt::NoBrush) return false;
    return brush.style() == Qt::TexturePattern || brush.gradient() || isVisible(brush.color());
}

// Rectangles compare fuzzily with ==.
bool same(const QRectF& a, const QRectF& b) {
    return a.x() == b.x() && a.y() == b.y() && a.width() == b.width() && a.height() == b.height();
}

bool same(const Affine& a, const Affine& b) {
    return a.linear.a == b.linear.a && a.linear.b == b.linear.b && a.linear.c == b.linear.c &&
           a.linear.d == b.linear.d && a.offset.x() == b.offset.x() && a.offset.y() == b.offset.y();
}

bool same(const ImageDrawing& a, const ImageDrawing& b) {
    return a.image.cacheKey() == b.image.cacheKey() && same(a.rect, b.rect);
}

bool same(const FillDrawing& a, const FillDrawing& b) {
    return a.brush == b.brush && same(a.rect, b.rect) && a.cornerRadius == b.cornerRadius;
}

bool same(const ShapeDrawing& a, const ShapeDrawing& b) {
    return a.shape.path == b.shape.path && a.shape.fillColor == b.shape.fillColor &&
           a.shape.strokeColor == b.shape.strokeColor && a.shape.lineWidth == b.shape.lineWidth &&
           a.shape.lineDashPattern == b.shape.lineDashPattern &&
           a.shape.lineDashPhase == b.shape.lineDashPhase;
}

bool same(const BorderDrawing& a, const BorderDrawing& b) {
    return a.color == b.color && a.width == b.width && same(a.rect, b.rect) &&
           a.cornerRadius == b.cornerRadius;
}

bool same(const ClipBegin& a, const ClipBegin& b) {
    return same(a.rect, b.rect) && a.cornerRadius == b.cornerRadius;
}

bool same(const OpacityBegin&, const OpacityBegin&) {
    return true;
}

bool same(const OpacityEnd&, const OpacityEnd&) {
    return true;
}

bool same(const ClipEnd&, const ClipEnd&) {
    return true;
}

}  // namespace

bool DisplayItem::looksLike(const DisplayItem& other) const {
    if (opacity != other.opacity || pixels != other.pixels || !same(toDevice, other.toDevice) ||
        drawing.index() != other.drawing.index()) {
        return false;
    }
    return std::visit(
        [&other](const auto& mine) {
            return same(mine, std::get<std::decay_t<decltype(mine)>>(other.drawing));
        },
        drawing);
}

/// Walks the tree. `m_limit` is the part of the picture where anything can show.
class DisplayList::Builder {
 public:
    Builder(DisplayList& list, const QRect& limit) : m_list(list), m_limit(limit) {}

    /// `time` is the layer's own.
    void add(Layer& layer, const Affine& toDevice, double time) {
        const LayerValues& values = layer.presentedAt(time);
        if (layer.isHidden() || !(values.opacity > 0) || !canBeSeenThrough(toDevice)) return;
        const Node node{layer, values, toDevice, time};
        if (values.opacity >= 1) {
            addParts(node);
            return;
        }
        const size_t begin = items().size();
        append(node, m_limit, OpacityBegin{});
        items().back().opacity = values.opacity;
        m_list.m_groupDepth = std::max(m_list.m_groupDepth, ++m_groupDepth);
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

    template <typename Drawing>
    void append(const Node& node, const QRect& pixels, Drawing&& drawing) {
        if (pixels.isEmpty()) return;
        items().push_back(
            {&node.layer, node.toDevice, 1.0, pixels, std::forward<Drawing>(drawing)});
    }

    QRect pixelsOf(const Node& node, const QRectF& rect) const {
        return pixelsAround(node.toDevice.mapRect(rect), m_limit);
    }

    void addParts(const Node& node) {
        const LayerStyle& style = node.layer.style();
        const QRectF& bounds = node.values.bounds;
        const QRect pixels = bounds.isEmpty() ? QRect() : pixelsOf(node, bounds);
        if (isVisible(style.background)) {
            append(node, pixels, FillDrawing{style.background, bounds, style.cornerRadius});
        }
        if (cuts(node, pixels)) {
            addClippedParts(node, pixels);
        } else {
            addInside(node);
        }
        if (style.borderWidth > 0 && isVisible(style.borderColor)) {
            append(node, pixels,
                   BorderDrawing{style.borderColor, style.borderWidth, bounds, style.cornerRadius});
        }
    }

    // Whether the layer's mask takes anything away inside the limit.
    bool cuts(const Node& node, const QRect& pixels) const {
        if (!node.layer.masksToBounds()) return false;
        if (pixels != m_limit || node.layer.style().cornerRadius > 0 || !isUpright(node.toDevice)) {
            return true;
        }
        const QRectF limit(m_limit);
        return !node.toDevice.mapRect(node.values.bounds).contains(limit);
    }

    void addClippedParts(const Node& node, const QRect& pixels) {
        if (pixels.isEmpty()) return;
        const size_t begin = items().size();
        append(node, pixels, ClipBegin{node.values.bounds, node.layer.style().cornerRadius, 0});
        const QRect limit = std::exchange(m_limit, pixels);
        addInside(node);
        m_limit = limit;
        if (items().size() == begin + 1) {
            items().pop_back();
            return;
        }
        std::get<ClipBegin>(items()[begin].drawing).end = items().size();
        append(node, pixels, ClipEnd{});
    }

    void addInside(const Node& node) {
        const LayerValues& values = node.values;
        if (!values.contents.isNull()) {
            const QRectF rect = contentsRect(node.layer, values);
            append(node, rect.isEmpty() ? QRect() : pixelsOf(node, rect),
                   ImageDrawing{values.contents, rect});
        }
        if (const LayerShape* shape = node.layer.shape()) addShape(node, *shape);
        for (Layer* sublayer : node.layer.sublayersInDrawingOrderAt(node.time)) {
            const double time = sublayer->localTimeAt(node.time);
            add(*sublayer, sublayer->toSuperlayerAt(time).then(node.toDevice), time);
        }
    }

    void addShape(const Node& node, const LayerShape& shape) {
        const bool isStroked = shape.lineWidth > 0 && isVisible(shape.strokeColor);
        if (shape.path.isEmpty() || (!isStroked && !isVisible(shape.fillColor))) return;
        const double reach = isStroked ? shape.lineWidth * kMiterReach : 0;
        const QRectF rect = shape.path.controlPointRect().adjusted(-reach, -reach, reach, reach);
        append(node, pixelsOf(node, rect), ShapeDrawing{shape});
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
        append(node, pixels, OpacityEnd{});
    }

    DisplayList& m_list;
    QRect m_limit;
    int m_groupDepth = 0;
};

void DisplayList::build(Layer& root, const Affine& rootToDevice, QSize size) {
    m_items.clear();
    m_size = size;
    m_groupDepth = 0;
    if (size.isEmpty()) return;
    root.layoutIfNeeded();
    Builder(*this, QRect(QPoint(0, 0), size)).add(root, rootToDevice, root.localTime());
}

}  // namespace tweenery
