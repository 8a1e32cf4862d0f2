#include "editor/layers/quadrilateral.h"

#include <algorithm>
#include <utility>

namespace tweenery {
namespace {

std::pair<double, double> projection(const Quadrilateral& outline, QPointF axis) {
    double least = QPointF::dotProduct(outline[0], axis);
    double greatest = least;
    for (const QPointF corner : outline) {
        const double place = QPointF::dotProduct(corner, axis);
        least = std::min(least, place);
        greatest = std::max(greatest, place);
    }
    return {least, greatest};
}

bool edgeSeparates(const Quadrilateral& edges, const Quadrilateral& other) {
    for (size_t i = 0; i < edges.size(); ++i) {
        const QPointF edge = edges[(i + 1) % edges.size()] - edges[i];
        const QPointF axis(-edge.y(), edge.x());
        const auto [ownLeast, ownGreatest] = projection(edges, axis);
        const auto [otherLeast, otherGreatest] = projection(other, axis);
        if (ownGreatest < otherLeast || otherGreatest < ownLeast) { return true; }
    }
    return false;
}

}  // namespace

Quadrilateral cornersOf(const QRectF& rect) {
    return {rect.topLeft(), rect.topRight(), rect.bottomRight(), rect.bottomLeft()};
}

bool touch(const Quadrilateral& a, const Quadrilateral& b) {
    return !edgeSeparates(a, b) && !edgeSeparates(b, a);
}

bool rectHolds(const QRectF& rect, QPointF point) {
    return point.x() >= rect.x() && point.x() < rect.x() + rect.width() && point.y() >= rect.y() &&
           point.y() < rect.y() + rect.height();
}

}  // namespace tweenery
