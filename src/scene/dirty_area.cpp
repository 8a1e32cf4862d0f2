#include "scene/dirty_area.h"

#include <algorithm>

namespace tweenery {
namespace {

// Rectangles nearer than that are painted as one: to cut each line between them costs about as much
// as to paint some pixels more.
constexpr int kGap = 16;

bool areClose(const QRect& a, const QRect& b) {
    return a.left() <= b.right() + kGap && b.left() <= a.right() + kGap;
}

// `rectangles` keep away from each other; `added` is united with those that it is close to.
void addTo(std::vector<QRect>& rectangles, QRect added) {
    for (size_t i = 0; i < rectangles.size();) {
        if (!areClose(rectangles[i], added)) {
            ++i;
            continue;
        }
        added |= rectangles[i];
        rectangles[i] = rectangles.back();
        rectangles.pop_back();
        i = 0;
    }
    rectangles.push_back(added);
}

size_t bandOf(int row) {
    return static_cast<size_t>(row / DirtyArea::kBandHeight);
}

}  // namespace

void DirtyArea::reset(QSize size) {
    m_size = size;
    m_bands.resize(bandOf(size.height() + kBandHeight - 1));
    for (std::vector<QRect>& band : m_bands) {
        band.clear();
    }
}

void DirtyArea::add(const DisplayItem& item) {
    for (size_t i = bandOf(item.pixels.top()); i <= bandOf(item.pixels.bottom()); ++i) {
        const QRect part = item.pixelsIn(band(i));
        if (!part.isEmpty()) { addTo(m_bands[i], part); }
    }
}

void DirtyArea::addAll() {
    for (size_t i = 0; i < m_bands.size(); ++i) {
        m_bands[i].assign(1, band(i));
    }
}

void DirtyArea::addOutside(const QRect& rect) {
    for (size_t i = 0; i < m_bands.size(); ++i) {
        for (const QRect& part : QRegion(band(i)) - rect) {
            addTo(m_bands[i], part);
        }
    }
}

QRect DirtyArea::band(size_t index) const {
    const int top = static_cast<int>(index) * kBandHeight;
    return {0, top, m_size.width(), std::min(kBandHeight, m_size.height() - top)};
}

bool DirtyArea::isEmpty() const {
    return std::all_of(m_bands.begin(), m_bands.end(),
                       [](const std::vector<QRect>& band) { return band.empty(); });
}

double DirtyArea::share() const {
    double pixels = 0;
    for (const std::vector<QRect>& band : m_bands) {
        for (const QRect& rectangle : band) {
            pixels += static_cast<double>(rectangle.width()) * rectangle.height();
        }
    }
    return pixels / std::max(1.0, static_cast<double>(m_size.width()) * m_size.height());
}

std::vector<QRect> DirtyArea::rectangles() const {
    std::vector<QRect> rectangles;
    for (const std::vector<QRect>& band : m_bands) {
        rectangles.insert(rectangles.end(), band.begin(), band.end());
    }
    return rectangles;
}

QRegion DirtyArea::partOf(const QRect& strip) const {
    QRegion part;
    for (size_t i = bandOf(strip.top()); i <= bandOf(strip.bottom()); ++i) {
        for (const QRect& rectangle : m_bands[i]) {
            part |= rectangle;
        }
    }
    return part;
}

}  // namespace tweenery
