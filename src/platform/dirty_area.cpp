#include "platform/dirty_area.h"

#include <algorithm>

namespace tweenery {
namespace {

// Rectangles nearer than that are painted as one: beginning another one costs about as much as
// painting that many columns of a strip.
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

}  // namespace

void DirtyArea::reset(QSize size, int stripHeight) {
    m_size = size;
    m_stripHeight = stripHeight;
    m_isEmpty = true;
    m_strips.resize(static_cast<size_t>((size.height() + stripHeight - 1) / stripHeight));
    for (std::vector<QRect>& strip : m_strips) {
        strip.clear();
    }
}

void DirtyArea::add(const QRect& pixels) {
    const QRect rect = pixels & QRect(QPoint(0, 0), m_size);
    if (rect.isEmpty()) return;
    m_isEmpty = false;
    for (int strip = rect.top() / m_stripHeight; strip <= rect.bottom() / m_stripHeight; ++strip) {
        const QRect rows(0, strip * m_stripHeight, m_size.width(), m_stripHeight);
        addTo(m_strips[static_cast<size_t>(strip)], rect & rows);
    }
}

const std::vector<QRect>& DirtyArea::rectangles() const {
    m_rectangles.clear();
    for (const std::vector<QRect>& strip : m_strips) {
        m_rectangles.insert(m_rectangles.end(), strip.begin(), strip.end());
    }
    return m_rectangles;
}

QRect DirtyArea::stripOf(const QRect& rectangle) const {
    const int top = rectangle.top() - rectangle.top() % m_stripHeight;
    return {0, top, m_size.width(), std::min(m_stripHeight, m_size.height() - top)};
}

}  // namespace tweenery
