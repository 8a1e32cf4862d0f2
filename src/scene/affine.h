#pragma once

#include <QPointF>
#include <QRectF>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <optional>

namespace tweenery {

/// The part of a transform that turns and scales: (x, y) becomes (a x + c y, b x + d y).
struct Linear {
    double a = 1, b = 0, c = 0, d = 1;

    QPointF map(QPointF p) const { return {a * p.x() + c * p.y(), b * p.x() + d * p.y()}; }
    double determinant() const { return a * d - b * c; }
    /// The point that map() brings to `p`. Nothing where the transform flattens the plane or is
    /// not made of finite numbers.
    std::optional<QPointF> unmap(QPointF p) const {
        const double scale = 1 / determinant();
        if (!std::isfinite(scale)) { return std::nullopt; }
        return QPointF((d * p.x() - c * p.y()) * scale, (a * p.y() - b * p.x()) * scale);
    }
};

/// A map between two coordinate systems of the layer tree: turned and scaled first, then moved.
struct Affine {
    Linear linear;
    QPointF offset;

    static Affine scaling(double x, double y) { return {{x, 0, 0, y}, {}}; }

    QPointF map(QPointF p) const { return linear.map(p) + offset; }
    std::optional<QPointF> unmap(QPointF p) const { return linear.unmap(p - offset); }
    /// The map that does this one first and `outer` then.
    Affine then(const Affine& outer) const {
        const Linear& o = outer.linear;
        const Linear& i = linear;
        return {{o.a * i.a + o.c * i.b, o.b * i.a + o.d * i.b, o.a * i.c + o.c * i.d,
                 o.b * i.c + o.d * i.d},
                outer.map(offset)};
    }
    /// The smallest upright rectangle around the mapped one.
    QRectF mapRect(const QRectF& rect) const {
        const QPointF centre = map(rect.center());
        const double halfWidth =
            (std::abs(linear.a) * rect.width() + std::abs(linear.c) * rect.height()) / 2;
        const double halfHeight =
            (std::abs(linear.b) * rect.width() + std::abs(linear.d) * rect.height()) / 2;
        return {centre.x() - halfWidth, centre.y() - halfHeight, 2 * halfWidth, 2 * halfHeight};
    }
    /// The smallest upright rectangle around all that mapRect() brings into `rect`. Only for a
    /// transform that does not flatten the plane.
    QRectF unmapRect(const QRectF& rect) const {
        const double scale = 1 / linear.determinant();
        const Linear back{linear.d * scale, -linear.b * scale, -linear.c * scale, linear.a * scale};
        return Affine{back, {}}.mapRect(rect.translated(-offset));
    }
    bool isFinite() const {
        return std::isfinite(linear.a + linear.b + linear.c + linear.d + offset.x() + offset.y());
    }
    QTransform toQTransform() const {
        return {linear.a, linear.b, linear.c, linear.d, offset.x(), offset.y()};
    }
};

/// Scales and turns about `anchor`, which comes to stand at `position`.
inline QTransform placementTransform(QPointF anchor, QPointF scale, double radians,
                                     QPointF position) {
    QTransform transform;
    transform.translate(position.x(), position.y());
    transform.rotateRadians(radians);
    transform.scale(scale.x(), scale.y());
    transform.translate(-anchor.x(), -anchor.y());
    return transform;
}

/// Scales and turns about the origin.
inline QTransform scaleThenTurn(QPointF scale, double radians) {
    return placementTransform({}, scale, radians, {});
}

}  // namespace tweenery
