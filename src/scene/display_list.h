#pragma once

#include <QBrush>
#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <cstddef>
#include <variant>
#include <vector>

#include "scene/affine.h"
#include "scene/layer.h"

namespace tweenery {

/// Contents of a layer, stretched to `rect`. The pixels are the layer's own or, drawn at half
/// their size or less, those of ReducedImages.
struct ImageDrawing {
    QImage image;
    QRectF rect;
};

/// The background of a layer. A texture starts at the corner of `rect`.
struct FillDrawing {
    QBrush brush;
    QRectF rect;
    double cornerRadius;
};

/// The inside of a shape's outline.
struct ShapeFill {
    QPainterPath path;
    QColor color;
};

/// The line along a shape's outline, with its dashes, as an area.
struct ShapeStroke {
    QPainterPath path;
    QColor color;
};

/// A frame of that width along the inside of `rect`.
struct BorderDrawing {
    QColor color;
    double width;
    QRectF rect;
    double cornerRadius;
};

/// What follows up to the end is composed by itself and then drawn with the item's opacity.
struct OpacityBegin {
    size_t end;  // index of the OpacityEnd
};
struct OpacityEnd {};

/// What follows up to the end is cut at the item's pixels.
struct ClipBegin {
    size_t end;  // index of the ClipEnd
};
struct ClipEnd {};

/// What follows up to the end is composed by itself and then cut along the edge of `rect`.
struct MaskBegin {
    QRectF rect;
    double cornerRadius;
    size_t end;  // index of the MaskEnd
};
struct MaskEnd {
    QRectF rect;
    double cornerRadius;
};

/// One step of drawing a picture. It holds all that it shows, so that it stays good when layers
/// change or go.
struct DisplayItem {
    using Drawing = std::variant<ImageDrawing, FillDrawing, ShapeFill, ShapeStroke, BorderDrawing,
                                 OpacityBegin, OpacityEnd, ClipBegin, ClipEnd, MaskBegin, MaskEnd>;

    const Layer* layer;  // whose it is. Never followed: the layer may be gone
    Affine toDevice;     // from the coordinates of `drawing` to pixels
    double opacity;      // above 0, at most 1
    QRect pixels;        // all that it can touch inside the picture; never empty
    QRectF outline;      // around all of a turned `drawing`, in its coordinates; null for others
    Drawing drawing;

    /// A rectangle around what it can touch in `area`: in few rows far less of a turned item than
    /// `pixels` has there. May be empty.
    QRect pixelsIn(const QRect& area) const;

    /// Both stand for the same part of the same layer.
    bool isSamePartAs(const DisplayItem& other) const {
        return layer == other.layer && drawing.index() == other.drawing.index();
    }
    /// Both paint the same pixels in `area`. The places may differ by so much, in pixels.
    bool looksLike(const DisplayItem& other, const QRect& area, double tolerance) const;
};

/// A layer tree flattened to what has to be painted, back to front, for one picture. Items that
/// would not show are left out: outside the picture, hidden, transparent, flattened to a line,
/// placed by numbers that are not finite.
///
/// A list is kept and built anew for each frame: its memory is used again.
class DisplayList {
 public:
    /// Lists `root`, as presented at its time, with all below it, after a layout where one is
    /// needed. `rootToDevice` leads from the root's own coordinates to pixels; the place of the
    /// root in its superlayer does not count. `size` is that of the picture in pixels.
    void build(Layer& root, const Affine& rootToDevice, QSize size);

    /// Moves everything by whole pixels, and leaves out what is no longer in the picture: to be
    /// compared with the list of a picture that was scrolled, not to be painted.
    void scroll(QPoint pixels);

    const std::vector<DisplayItem>& items() const { return m_items; }
    QSize size() const { return m_size; }
    /// How many groups that are composed by themselves lie in one another at most.
    int groupDepth() const { return m_groupDepth; }

 private:
    class Builder;

    std::vector<DisplayItem> m_items;
    QSize m_size;
    int m_groupDepth = 0;
};

}  // namespace tweenery
