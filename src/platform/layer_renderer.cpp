#include "platform/layer_renderer.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "platform/display_list_changes.h"

namespace tweenery {
namespace {

void requireSize(QImage& picture, QSize size) {
    if (picture.size() == size && picture.format() == QImage::Format_ARGB32_Premultiplied) return;
    picture = QImage(size, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull() && !size.isEmpty()) throw std::bad_alloc();
}

// What the raster engine can paint on.
constexpr double kGreatestSide = 32767;

// Each open group of a strip has pixels of its own: many in one another make low strips.
int stripHeight(const DisplayList& list) {
    constexpr int kRowsOfAllGroups = 2048;
    constexpr int kLeast = 4;
    return std::clamp(kRowsOfAllGroups / std::max(list.groupDepth(), 1), kLeast,
                      DirtyArea::kStripHeight);
}

}  // namespace

const QImage& LayerRenderer::frame(Layer& root, const Affine& rootToDevice, QSize size) {
    m_next.build(root, rootToDevice, size);
    const bool isOfAnotherSize = m_picture.size() != size;
    requireSize(m_picture, size);
    m_dirty.reset(size, stripHeight(m_next));
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
    m_whole.reset(list.size(), stripHeight(list));
    m_whole.addAll();
    paintDirty(list, m_whole, picture);
}

void LayerRenderer::paintDirty(const DisplayList& list, const DirtyArea& dirty, QImage& picture) {
    if (dirty.isEmpty()) return;
    const std::vector<QRect>& areas = dirty.rectangles();
    uchar* const bits = picture.bits();
    const qsizetype bytesPerLine = picture.bytesPerLine();
    m_team.run(areas.size(), [&](size_t piece, int worker) {
        const QRect strip = dirty.stripOf(areas[piece]);
        QImage pixels(bits + strip.y() * bytesPerLine, strip.width(), strip.height(), bytesPerLine,
                      QImage::Format_ARGB32_Premultiplied);
        m_painters[static_cast<size_t>(worker)].paint(list, strip, areas[piece], pixels);
    });
}

QImage renderLayer(Layer& root, double scale) {
    const QRectF bounds = root.presented().bounds;
    const QSizeF exact = bounds.size() * scale;
    QImage picture;
    if (!(exact.width() > 0 && exact.height() > 0)) return picture;
    if (!(std::max(exact.width(), exact.height()) <= kGreatestSide)) throw std::bad_alloc();
    const QSize size(static_cast<int>(std::ceil(exact.width())),
                     static_cast<int>(std::ceil(exact.height())));
    DisplayList list;
    list.build(root, {{scale, 0, 0, scale}, -bounds.topLeft() * scale}, size);
    LayerRenderer().paint(list, picture);
    return picture;
}

}  // namespace tweenery
