#include "model/element_placement.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "model/element.h"

namespace tweenery {
namespace {

// What a point on an element's x axis and on its y axis, one point from its anchor, becomes.
struct Axes {
    QPointF x;
    QPointF y;

    explicit Axes(const QTransform& t) : x(t.m11(), t.m12()), y(t.m21(), t.m22()) {}
    Axes(double rotation, QPointF scale)
        : x(scale.x() * std::cos(rotation), scale.x() * std::sin(rotation)),
          y(-scale.y() * std::sin(rotation), scale.y() * std::cos(rotation)) {}
};

// Far above rounding, and less than a millionth of a point on an element of thousands.
constexpr double kTolerance = 1e-10;

bool areEqual(const Axes& a, const Axes& b) {
    const double size = std::max(a.x.manhattanLength(), a.y.manhattanLength());
    return (a.x - b.x).manhattanLength() <= kTolerance * size &&
           (a.y - b.y).manhattanLength() <= kTolerance * size;
}

bool areOrthogonal(const Axes& axes) {
    const double lengths = std::hypot(axes.x.x(), axes.x.y()) * std::hypot(axes.y.x(), axes.y.y());
    return lengths > 0 && std::abs(QPointF::dotProduct(axes.x, axes.y)) <= kTolerance * lengths;
}

// An axis scaled to nothing leaves nothing to make up for.
QPointF dividedBy(QPointF a, QPointF b) {
    return {b.x() == 0 ? a.x() : a.x() / b.x(), b.y() == 0 ? a.y() : a.y() / b.y()};
}

// Of the two ways to show orthogonal axes, half a turn apart, the one with the sign of `signX`.
void showAs(const Axes& axes, double signX, ElementPlacement& placement) {
    const double length = std::copysign(std::hypot(axes.x.x(), axes.x.y()), signX);
    const QPointF direction = axes.x / length;
    placement.rotation = std::atan2(direction.y(), direction.x());
    placement.scale = {length, axes.y.y() * direction.x() - axes.y.x() * direction.y()};
}

}  // namespace

ElementPlacement placementUnder(const PCElement& item, const PCElement& parent) {
    ElementPlacement placement{parent.convertToElement(item.canvasPosition()),
                               item.unroundedCanvasRotation() - parent.unroundedCanvasRotation(),
                               dividedBy(item.scaleOnCanvas(), parent.scaleOnCanvas())};
    const QPointF parentScale = parent.scaleOnCanvas();
    if (parentScale.x() == 0 || parentScale.y() == 0) { return placement; }
    const Axes wanted(item.elementToCanvasTransform() * parent.canvasToElementTransform());
    const bool isAsWanted = areEqual(wanted, Axes(placement.rotation, placement.scale));
    if (!isAsWanted && areOrthogonal(wanted)) { showAs(wanted, placement.scale.x(), placement); }
    return placement;
}

}  // namespace tweenery
