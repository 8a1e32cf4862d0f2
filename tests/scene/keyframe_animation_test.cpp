#include "scene/keyframe_animation.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/errors.h"
#include "scene/layer_scene.h"

namespace tweenery::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// From 10 over 20 to 40 in two seconds; the second span takes three quarters of it.
KeyframeAnimation rising() {
    KeyframeAnimation animation;
    animation.keyTimes = {0, 0.25, 1};
    animation.values = {10, 20, 40};
    animation.timingFunctions = {{}, {}};
    animation.duration = 2;
    return animation;
}

TEST(KeyframeAnimation, RunsRepeatsReversesAndHolds) {
    struct Case {
        const char* what;
        double begin, repeat;
        bool autoreverses;
        std::vector<std::pair<double, double>> valueAt;  // by seconds
    };
    const Case cases[] = {
        {"once",
         0,
         0,
         false,
         {{-1, 10}, {0, 10}, {0.25, 15}, {0.5, 20}, {1.25, 30}, {2, 40}, {9, 40}}},
        {"begun later", 3, 1, false, {{0, 10}, {3, 10}, {3.25, 15}, {5, 40}, {6, 40}}},
        {"two and a half times",
         0,
         2.5,
         false,
         {{2.25, 15}, {4.25, 15}, {5, 80.0 / 3}, {99, 80.0 / 3}}},
        {"forever",
         0,
         kInfinity,
         false,
         {{1.999, 39.98}, {2, 10}, {2.25, 15}, {2000.25, 15}, {-5, 10}}},
        {"there and back", 0, 1, true, {{2, 40}, {2.75, 30}, {3.75, 15}, {4, 10}, {9, 10}}},
        {"to and fro forever", 0, kInfinity, true, {{2.75, 30}, {4, 10}, {4.25, 15}, {402.75, 30}}},
        {"there and half the way back", 0, 0.75, true, {{4, 10}, {5, 10}}},
    };
    for (const Case& row : cases) {
        KeyframeAnimation animation = rising();
        animation.beginTime = row.begin;
        animation.repeatCount = row.repeat;
        animation.autoreverses = row.autoreverses;
        for (const auto& [seconds, value] : row.valueAt) {
            EXPECT_NEAR(animation.valueAt(seconds), value, 1e-2) << row.what << " at " << seconds;
        }
    }
}

TEST(KeyframeAnimation, APassEndsWhereRoundedTimesSayThatItDoes) {
    KeyframeAnimation animation = rising();
    animation.repeatCount = kInfinity;
    for (int pass = 1; pass < 2000; pass += 7) {
        for (const int milliseconds : {800, 900, 1100, 3600}) {
            animation.duration = static_cast<double>(static_cast<float>(milliseconds) / 1000);
            const float end = static_cast<float>(milliseconds * pass) / 1000;
            EXPECT_EQ(animation.valueAt(static_cast<double>(end)), 10)
                << pass << " x " << milliseconds;
        }
    }
}

TEST(KeyframeAnimation, SpansFollowTheirTimingFunctions) {
    KeyframeAnimation animation = rising();
    animation.keyTimes = {0, 0.5, 1};
    animation.values = {0, 1, 0};
    animation.timingFunctions = {{0.42, 0, 1, 1}, {0.3, 1.6, 0.6, 1.4}};
    animation.duration = 1;
    for (const double progress : {0.1, 0.35, 0.5, 0.9}) {
        // The curve's height where it has come that far, found by halving.
        const auto height = [progress](const TimingFunction& f) {
            const auto at = [](double p1, double p2, double s) {
                return 3 * p1 * s * (1 - s) * (1 - s) + 3 * p2 * s * s * (1 - s) + s * s * s;
            };
            double low = 0;
            double high = 1;
            for (int i = 0; i < 60; ++i) {
                const double middle = (low + high) / 2;
                (at(f.x1, f.x2, middle) < progress ? low : high) = middle;
            }
            return at(f.y1, f.y2, low);
        };
        EXPECT_NEAR(animation.valueAt(progress / 2), height(animation.timingFunctions[0]), 1e-6);
        EXPECT_NEAR(animation.valueAt(0.5 + progress / 2), 1 - height(animation.timingFunctions[1]),
                    1e-6);
    }
    EXPECT_LT(animation.valueAt(0.9), 0) << "a curve may leave its range";
}

TEST(KeyframeAnimation, InstantSpansHoldAndOfKeysAtOneTimeTheLastStands) {
    KeyframeAnimation held = rising();
    held.keyTimes = {0, 0.4995, 0.5, 1};
    held.values = {1, 1, 2, 3};
    held.timingFunctions = {{}, {}, {}};
    held.duration = 1;
    EXPECT_EQ(held.valueAt(0.499), 1);
    EXPECT_NEAR(held.valueAt(0.49975), 1.5, 1e-9);
    EXPECT_EQ(held.valueAt(0.5), 2);

    held.keyTimes = {0, 0.5, 0.5, 1};
    EXPECT_EQ(held.valueAt(0.49999), 1);
    EXPECT_EQ(held.valueAt(0.5), 2);
}

TEST(KeyframeAnimation, ImagesHoldUntilTheNextKey) {
    KeyframeAnimation animation;
    animation.property = LayerProperty::Contents;
    const QImage first = imageFilled(1, 1, Qt::red);
    const QImage second = imageFilled(1, 1, Qt::blue);
    animation.keyTimes = {0, 0.5, 1};
    animation.images = {first, second, QImage()};
    animation.timingFunctions = {{}, {}};
    animation.duration = 1;
    EXPECT_EQ(animation.imageAt(-1).cacheKey(), first.cacheKey());
    EXPECT_EQ(animation.imageAt(0.4999).cacheKey(), first.cacheKey());
    EXPECT_EQ(animation.imageAt(0.5).cacheKey(), second.cacheKey());
    EXPECT_TRUE(animation.imageAt(1).isNull());
}

TEST(KeyframeAnimation, DegenerateOnesShowAValue) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    KeyframeAnimation animation;
    animation.keyTimes = {0};
    animation.values = {7};
    for (const double duration : {0.0, -1.0, nan, kInfinity}) {
        animation.duration = duration;
        for (const double repeat : {0.0, 3.0, kInfinity}) {
            animation.repeatCount = repeat;
            for (const double seconds : {-kInfinity, -1.0, 0.0, 5.0, kInfinity, nan}) {
                EXPECT_EQ(animation.valueAt(seconds), 7);
            }
        }
    }
    animation = rising();
    for (const bool autoreverses : {false, true}) {
        animation.autoreverses = autoreverses;
        animation.repeatCount = kInfinity;
        EXPECT_TRUE(std::isfinite(animation.valueAt(kInfinity)));
        EXPECT_EQ(animation.valueAt(nan), 10);
    }
    animation.duration = 0;
    EXPECT_EQ(animation.valueAt(0), 40);
}

TEST(KeyframeAnimation, ListsHaveToFit) {
    const auto isSound = [](const auto& change) {
        KeyframeAnimation animation = rising();
        change(animation);
        try {
            animation.check();
        } catch (const AssertionFailure&) { return false; }
        return true;
    };
    EXPECT_TRUE(isSound([](KeyframeAnimation&) {}));
    EXPECT_FALSE(isSound([](KeyframeAnimation& a) { a.values.pop_back(); }));
    EXPECT_FALSE(isSound([](KeyframeAnimation& a) { a.timingFunctions.pop_back(); }));
    EXPECT_FALSE(isSound([](KeyframeAnimation& a) { a.keyTimes = {0, 0.9, 0.8}; }));
    EXPECT_FALSE(isSound([](KeyframeAnimation& a) { a.property = LayerProperty::Contents; }));
    EXPECT_FALSE(isSound([](KeyframeAnimation& a) { a = {}; }));
}

}  // namespace
}  // namespace tweenery::test
