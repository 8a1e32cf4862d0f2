#include "base/cubic_bezier.h"

#include <cmath>

namespace tweenery {
namespace {

double bezier(double p1, double p2, double s) {
    const double r = 1 - s;
    return 3 * r * r * s * p1 + 3 * r * s * s * p2 + s * s * s;
}

double slope(double p1, double p2, double s) {
    const double r = 1 - s;
    return 3 * r * r * p1 + 6 * r * s * (p2 - p1) + 3 * s * s * (1 - p2);
}

// Newton's steps, and halves where they leave the bracket: x(s) rises monotonically.
double parameterAt(double x1, double x2, double x) {
    double low = 0;
    double high = 1;
    double s = x;
    for (int step = 0; step < 60; ++step) {
        const double error = bezier(x1, x2, s) - x;
        if (std::abs(error) < 1e-12) { break; }
        (error < 0 ? low : high) = s;
        const double next = s - error / slope(x1, x2, s);
        s = next > low && next < high ? next : (low + high) / 2;
    }
    return s;
}

}  // namespace

double cubicBezierHeight(double x1, double y1, double x2, double y2, double x) {
    return bezier(y1, y2, parameterAt(x1, x2, x));
}

}  // namespace tweenery
