#include "scene/layer_renderer.h"

#include <algorithm>
#include <new>
#include <utility>

#include "scene/display_list_changes.h"
#include "scene/touched_pixels.h"

namespace tweenery {
namespace {

void requireSize(QImage& picture, QSize size) {
    if (picture.size() == size && picture.format() == QImage::Format_ARGB32_Premultiplied) {
        return;
    }
    picture = QImage(size, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull() && !size.isEmpty()) { throw std::bad_alloc(); }
}

// What the raster engine can paint on.
constexpr double kGreatestSide = 32767;

// For each strip the raster engine walks the outline of an item anew: low strips cost more. High
// ones overflow its memory, so that it walks again, and leave threads without work at the end. Each
// open group of a strip has pixels of its own: many in one another make low strips.
int stripHeight(const DisplayList& list) {
    constexpr int kRowsOfAllGroups = 2048;
    constexpr int kMostBands = 4;
    const int bands = kRowsOfAllGroups / std::max(list.groupDepth(), 1) / DirtyArea::kBandHeight;
    return std::clamp(bands, 1, kMostBands) * DirtyArea::kBandHeight;
}

}  // namespace

const QImage& LayerRenderer::frame(Layer& root, const Affine& rootToDevice, QSize size) {
    m_next.build(root, rootToDevice, size);
    const bool isOfAnotherSize = m_picture.size() != size;
    requireSize(m_picture, size);
    m_dirty.reset(size);
    if (isOfAnotherSize) {
        m_dirty.addAll();
    } else {
        addChanges(m_shown, m_next, m_dirty);
    }
    paintDirty(m_next, m_dirty, m_picture);
    std::swap(m_shown, m_next);
    return m_picture;
}

void LayerRenderer::paint(const DisplayList& list, QImage& picture) {
    requireSize(picture, list.size());
    m_whole.reset(list.size());
    m_whole.addAll();
    paintDirty(list, m_whole, picture);
}

void LayerRenderer::paintDirty(const DisplayList& list, const DirtyArea& dirty, QImage& picture) {
    if (dirty.isEmpty()) { return; }
    uchar* const bits = picture.bits();
    const qsizetype bytesPerLine = picture.bytesPerLine();
    const int rows = stripHeight(list);
    const int strips = (picture.height() + rows - 1) / rows;
    m_team.run(static_cast<size_t>(strips), [&](size_t index, int worker) {
        const int top = static_cast<int>(index) * rows;
        const QRect strip(0, top, picture.width(), std::min(rows, picture.height() - top));
        const QRegion part = dirty.partOf(strip);
        if (part.isEmpty()) { return; }
        QImage pixels(bits + top * bytesPerLine, strip.width(), strip.height(), bytesPerLine,
                      QImage::Format_ARGB32_Premultiplied);
        m_painters[static_cast<size_t>(worker)].paint(list, strip, part, pixels);
    });
}

QImage renderLayer(Layer& root, double scale) {
    const QRectF bounds = root.presented().bounds;
    const QSizeF exact = bounds.size() * scale;
    QImage picture;
    if (!(exact.width() > 0 && exact.height() > 0)) { return picture; }
    if (!(std::max(exact.width(), exact.height()) <= kGreatestSide)) { throw std::bad_alloc(); }
    const QSize size = touchedPixels({QPointF(), exact}).size();
    if (size.isEmpty()) { return picture; }
    DisplayList list;
    list.build(root, {{scale, 0, 0, scale}, -bounds.topLeft() * scale}, size);
    LayerRenderer().paint(list, picture);
    return picture;
}

}  // namespace tweenery
