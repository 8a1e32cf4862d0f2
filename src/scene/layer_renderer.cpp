#include "scene/layer_renderer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
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

constexpr qsizetype kBytesPerPixel = 4;

// Places that were found by way of another origin differ by what numbers round, far less than the
// raster engine can tell.
constexpr double kPlaceTolerance = 1e-6;

// To move a picture and paint more than that of it would cost as much as to paint all.
constexpr double kLargestShareToScroll = 0.6;

// Null unless the second transform is the first one moved by whole pixels.
QPoint scrolledPixels(const Affine& before, const Affine& after) {
    const Linear& a = before.linear;
    const Linear& b = after.linear;
    const QPointF distance = after.offset - before.offset;
    const bool isTurned = a.a != b.a || a.b != b.b || a.c != b.c || a.d != b.d;
    const bool isFar = !(std::max(std::abs(distance.x()), std::abs(distance.y())) < kGreatestSide);
    if (isTurned || isFar) { return {}; }
    const QPoint pixels = distance.toPoint();
    const QPointF rest = distance - pixels;
    return std::max(std::abs(rest.x()), std::abs(rest.y())) <= kPlaceTolerance ? pixels : QPoint();
}

}  // namespace

const QImage& LayerRenderer::frame(Layer& root, const Affine& rootToDevice, QSize size) {
    m_next.build(root, rootToDevice, size);
    const bool isOfAnotherSize = m_picture.size() != size;
    requireSize(m_picture, size);
    m_dirty.reset(size);
    m_isScrolled = false;
    if (isOfAnotherSize) {
        m_dirty.addAll();
    } else {
        findDirty(rootToDevice);
    }
    paintDirty(m_next, m_dirty, m_picture);
    std::swap(m_shown, m_next);
    m_shownAt = rootToDevice;
    return m_picture;
}

std::vector<QRect> LayerRenderer::changed() const {
    return m_isScrolled ? std::vector{m_picture.rect()} : repainted();
}

// What was scrolled by whole pixels is moved where most of it stays in sight.
void LayerRenderer::findDirty(const Affine& rootToDevice) {
    const QRect picture = m_picture.rect();
    const QPoint distance = scrolledPixels(m_shownAt, rootToDevice);
    const QRect kept = picture & picture.translated(distance);
    if (distance.isNull()) { return addChanges(m_shown, m_next, {picture}, m_dirty); }
    m_shown.scroll(distance);
    addChanges(m_shown, m_next, {kept, kPlaceTolerance}, m_dirty);
    m_dirty.addOutside(kept);
    m_isScrolled = m_dirty.share() < kLargestShareToScroll;
    if (m_isScrolled) {
        scrollPicture(distance);
    } else {
        m_dirty.addAll();
    }
}

void LayerRenderer::scrollPicture(QPoint pixels) {
    uchar* const bits = m_picture.bits();
    const qsizetype bytesPerLine = m_picture.bytesPerLine();
    const qsizetype from = std::max(0, -pixels.x()) * kBytesPerPixel;
    const qsizetype to = std::max(0, pixels.x()) * kBytesPerPixel;
    const auto count =
        static_cast<size_t>((m_picture.width() - std::abs(pixels.x())) * kBytesPerPixel);
    const int rows = m_picture.height() - std::abs(pixels.y());
    for (int i = 0; i < rows; ++i) {
        // No row is overwritten before it is moved.
        const int target = pixels.y() > 0 ? m_picture.height() - 1 - i : i;
        std::memmove(bits + target * bytesPerLine + to,
                     bits + (target - pixels.y()) * bytesPerLine + from, count);
    }
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
