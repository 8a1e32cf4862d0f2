#pragma once

#include <QImage>
#include <QPainter>
#include <QRect>
#include <QRegion>
#include <cstdint>
#include <memory>
#include <vector>

#include "scene/display_list.h"

namespace tweenery {

/// Paints parts of pictures on one thread, with memory that it keeps from one to the next.
class ItemPainter {
 public:
    /// Paints what the list shows in `dirty`, a part of `strip`, onto `pixels`, an
    /// ARGB32_Premultiplied image that shows that strip, rows of the picture in their whole width.
    /// Whatever stood there before is gone; other pixels are neither read nor written. Edges
    /// depend on `strip`, and those of turned images on `dirty`, by what a fixed-point number
    /// rounds.
    void paint(const DisplayList& list, const QRect& strip, const QRegion& dirty, QImage& pixels);

 private:
    // What is painted on: the picture, or a group that is composed by itself.
    struct Surface {
        QRect area;                   // of the picture
        std::vector<QRegion> cuts{};  // of that, each in the one before; the last one is painted
        QImage pixels;
        QPainter painter;
        std::vector<uint32_t> memory;  // of a group's pixels
    };

    Surface& top() { return *m_surfaces[m_depth - 1]; }
    const QRegion& dirty() { return top().cuts.back(); }
    void push(const QRect& area, const QRegion& dirty);
    void start(Surface& surface);
    void pushGroup(const DisplayItem& item);
    void popGroup(double opacity);
    void setCut();
    void mask(const DisplayItem& item, const MaskEnd& mask);

    void step(const DisplayItem& item, const OpacityBegin&) { pushGroup(item); }
    void step(const DisplayItem& item, const OpacityEnd&) { popGroup(item.opacity); }
    void step(const DisplayItem& item, const MaskBegin&) { pushGroup(item); }
    void step(const DisplayItem& item, const MaskEnd& end) { mask(item, end), popGroup(1); }
    void step(const DisplayItem& item, const ClipBegin&);
    void step(const DisplayItem& item, const ClipEnd&);
    template <typename Drawing>
    void step(const DisplayItem& item, const Drawing& drawing);

    std::vector<std::unique_ptr<Surface>> m_surfaces;  // of which the first m_depth are in use
    size_t m_depth = 0;
};

}  // namespace tweenery
