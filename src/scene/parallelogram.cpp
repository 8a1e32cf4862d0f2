#include "scene/parallelogram.h"

#include <algorithm>
#include <limits>

namespace tweenery {

Parallelogram::Parallelogram(const Affine& map, const QRectF& rect) {
    const QPointF corner = map.map(rect.topLeft());
    const QPointF along = map.linear.map({rect.width(), 0});
    const QPointF down = map.linear.map({0, rect.height()});
    m_corners[0] = corner;
    m_corners[1] = corner + along;
    m_corners[2] = corner + along + down;
    m_corners[3] = corner + down;
}

Parallelogram::Columns Parallelogram::columnsBetween(double top, double bottom) const {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Columns columns{kInfinity, -kInfinity};
    const auto include = [&columns](double x) {
        columns.left = std::min(columns.left, x);
        columns.right = std::max(columns.right, x);
    };
    for (size_t i = 0; i < 4; ++i) {
        const QPointF& from = m_corners[i];
        const QPointF& to = m_corners[(i + 1) % 4];
        const double begin = std::max(top, std::min(from.y(), to.y()));
        const double end = std::min(bottom, std::max(from.y(), to.y()));
        if (begin > end) { continue; }
        if (from.y() == to.y()) {
            include(from.x());
            include(to.x());
            continue;
        }
        const double slope = (to.x() - from.x()) / (to.y() - from.y());
        include(from.x() + slope * (begin - from.y()));
        include(from.x() + slope * (end - from.y()));
    }
    return columns;
}

}  // namespace tweenery
