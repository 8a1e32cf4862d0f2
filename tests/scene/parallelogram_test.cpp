#include "scene/parallelogram.h"

#include <gtest/gtest.h>

#include <random>

namespace tweenery {
namespace {

// The outline as many points, of which those between the heights are looked for.
TEST(Parallelogram, ColumnsReachAsFarAsThePointsOfTheOutline) {
    std::mt19937 random(20260103);
    const auto uniform = [&random](double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random);
    };
    constexpr int kPoints = 4000;  // on each edge
    for (int round = 0; round < 300; ++round) {
        // Every third one is upright, so that two of its edges are level.
        const double angle = round % 3 == 0 ? 0 : uniform(0, 7);
        const double width = uniform(-2, 2);
        const double height = uniform(-2, 2);
        const Affine map{{width * std::cos(angle), width * std::sin(angle),
                          -height * std::sin(angle), height * std::cos(angle)},
                         {uniform(-50, 50), uniform(-50, 50)}};
        const QRectF rect(uniform(-20, 20), uniform(-20, 20), uniform(1, 40), uniform(1, 40));
        const double top = uniform(-100, 60);
        const double bottom = top + uniform(1, 40);
        double left = 1e9;
        double right = -1e9;
        const auto look = [&](double x, double y) {
            const QPointF point =
                map.map({rect.x() + x * rect.width(), rect.y() + y * rect.height()});
            if (point.y() < top || point.y() > bottom) { return; }
            left = std::min(left, point.x());
            right = std::max(right, point.x());
        };
        for (int i = 0; i <= kPoints; ++i) {
            const double part = double(i) / kPoints;
            look(part, 0), look(part, 1), look(0, part), look(1, part);
        }
        const auto columns = Parallelogram(map, rect).columnsBetween(top, bottom);
        if (left > right) {
            EXPECT_LE(columns.right - columns.left, 0.1) << "at most a corner, round " << round;
        } else {
            EXPECT_NEAR(columns.left, left, 0.1) << round;
            EXPECT_NEAR(columns.right, right, 0.1) << round;
        }
    }
}

}  // namespace
}  // namespace tweenery
