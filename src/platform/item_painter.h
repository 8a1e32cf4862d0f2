#pragma once

#include <QImage>
#include <QPainter>
#include <QRect>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/display_list.h"

namespace tweenery {

/// Paints parts of pictures on one thread, with memory that it keeps from one to the next.
class ItemPainter {
 public:
    /// Paints what the list shows in `area` onto `pixels`, an ARGB32_Premultiplied image of the
    /// area's size. Whatever stood there before is gone.
    void paint(const DisplayList& list, const QRect& area, QImage& pixels);

 private:
    // What is painted on: the picture, or a group that is composed by itself.
    struct Surface {
        QRect area;
        QImage pixels;
        QPainter painter;
        double opacity = 1;
        std::vector<uint32_t> memory;  // of a group's pixels
    };

    Surface& top() { return *m_surfaces[m_depth - 1]; }
    Surface& push();
    void start(Surface& surface);
    void pushGroup(const DisplayItem& item);
    void popGroup();
    void paintItem(const DisplayItem& item);
    void clip(const DisplayItem& item, const ClipBegin& mask);

    std::vector<std::unique_ptr<Surface>> m_surfaces;  // of which the first m_depth are in use
    size_t m_depth = 0;
};

}  // namespace tweenery
