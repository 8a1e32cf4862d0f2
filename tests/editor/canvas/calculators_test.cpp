#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "editor/canvas/opacity_calculator.h"
#include "editor/canvas/position_calculator.h"
#include "editor/canvas/rotation_calculator.h"
#include "editor/canvas/scale_calculator.h"
#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

constexpr double pi = std::numbers::pi;
constexpr int32_t kTime = 100;

/// A project in setup mode, or with an animation selected. Values are read where edits go: from the
/// elements' own fields, or at kTime.
struct Scene {
    bool setup;
    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr canvas = project->canvas();

    explicit Scene(bool isSetup) : setup(isSetup) {
        if (!setup) { selectNewAnimation(*project, u"Bounce"_s); }
    }
    QPointF position(const PCElement& e) const {
        return setup ? e.position() : e.positionAtTimeInMS(kTime);
    }
    EditTime when() const { return setup ? EditTime::setup() : EditTime::at(kTime); }
    QPointF scale(const PCElement& e) const { return setup ? e.scale() : e.scaleAtTimeInMS(kTime); }
    double rotation(const PCElement& e) const {
        return setup ? e.zRotation() : static_cast<double>(e.zRotationAtTimeInMS(kTime));
    }
    double opacity(const PCElement& e) const {
        return setup ? e.opacity() : static_cast<double>(e.opacityAtTimeInMS(kTime));
    }
    std::array<double, 6> state(const PCElement& e) const {
        return {position(e).x(), position(e).y(), scale(e).x(),
                scale(e).y(),    rotation(e),     opacity(e)};
    }
    /// Where a unit point of an element below the canvas is shown.
    QPointF shown(const PCElement& e, QPointF unit) const {
        QTransform transform;
        transform.translate(position(e).x(), position(e).y());
        transform.rotateRadians(rotation(e));
        transform.scale(scale(e).x(), scale(e).y());
        return transform.map(QPointF(unit.x() * e.size().width(), unit.y() * e.size().height()) -
                             e.anchorPointInPts());
    }
};

#define EXPECT_NEAR_POINT(a, b, tolerance)              \
    do {                                                \
        EXPECT_NEAR((a).x(), (b).x(), tolerance) << #a; \
        EXPECT_NEAR((a).y(), (b).y(), tolerance) << #a; \
    } while (false)

class Calculators : public testing::TestWithParam<bool> {
 protected:
    Scene scene{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Mode, Calculators, testing::Bool(),
                         [](const auto& run) { return run.param ? "Setup" : "Keyed"; });

TEST_P(Calculators, APositionDeltaIsInCanvasPoints) {
    struct Case {
        const char* what;
        Look outer, inner;
        QPointF delta, moved;
    };
    const QPointF place(100, 50);
    const std::vector<Case> cases = {
        {"as it is", {place}, {place}, {10, 4}, {10, 4}},
        {"a quarter turn", {place, {1, 1}, pi / 2}, {place}, {10, 0}, {0, -10}},
        {"scaled by 2", {place, {2, 2}}, {place}, {10, 4}, {5, 2}},
        {"unequal and mirrored", {place, {2, -4}}, {place}, {10, 4}, {5, -1}},
        {"through two groups", {place, {2, 2}, pi / 2}, {place, {1, 5}, pi / 2}, {10, 0}, {-5, 0}},
        {"scaled to nothing", {place, {0, 1}}, {place}, {10, 4}, {0, 0}},
        {"in the outermost", {place}, {place, {0, 0}}, {10, 4}, {0, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto outer = addGroup(scene.canvas, u"outer"_s, c.outer);
        const auto inner = addGroup(outer, u"inner"_s, c.inner);
        const auto leaf = addElement(inner, u"leaf"_s, {{7, 9}});
        PCPositionCalculator::updateElements({leaf}, false, c.delta, scene.when());
        EXPECT_NEAR_POINT(scene.position(*leaf), QPointF(7, 9) + c.moved, 1e-5);
    }
    PCPositionCalculator::updateElements({scene.canvas}, false, {5, 5}, scene.when());
    EXPECT_EQ(scene.position(*scene.canvas).x(), 0);
}

// Three elements get these shares of each kind of change.
TEST_P(Calculators, SharesGrowInAdditiveMode) {
    const auto expectShares = [this](bool additive, std::array<double, 3> shares) {
        PCElement::Elements targets;
        for (int i = 0; i < 3; ++i) {
            targets.push_back(addElement(scene.canvas, u"leaf"_s, {{0, 0}, {1, 1}, 1}));
            targets.back()->setOpacity(0.25);
        }
        const QPointF anchor(5, 5);
        PCPositionCalculator::updateElements(targets, additive, {10, 4}, scene.when());
        PCScaleCalculator::updateElements(targets, additive, {0.25, 0}, scene.when(), anchor);
        PCRotationCalculator::updateElements(targets, additive, 0.25, scene.when(), anchor);
        PCOpacityCalculator::updateElementsWithDelta(targets, additive, 0.125, scene.when(),
                                                     anchor);
        for (size_t i = 0; i < 3; ++i) {
            SCOPED_TRACE(i);
            const PCElement& target = *targets[i];
            EXPECT_NEAR(scene.scale(target).x(), 1 + shares[i] * 0.25, 1e-6);
            EXPECT_NEAR(scene.rotation(target), 1 - shares[i] * 0.25, 1e-6);
            EXPECT_NEAR(scene.opacity(target), 0.25 + shares[i] * 0.125, 1e-6);
            if (!additive) { EXPECT_NEAR_POINT(scene.position(target), QPointF(10, 4), 1e-5); }
        }
        PCOpacityCalculator::updateElementsWithValue(targets, additive, 0.75, scene.when(), anchor);
        for (size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(scene.opacity(*targets[i]), 0.75 / shares[i], 1e-6) << i;
        }
    };
    expectShares(false, {1, 1, 1});
    expectShares(true, {1, 2, 3});

    const PCElement::Elements moved{addElement(scene.canvas, u"a"_s),
                                    addElement(scene.canvas, u"b"_s)};
    PCPositionCalculator::updateElements(moved, true, {10, 4}, scene.when());
    EXPECT_NEAR_POINT(scene.position(*moved[1]), QPointF(20, 8), 1e-5);
}

TEST_P(Calculators, AScaleDeltaTakesItsLargerAxis) {
    struct Case {
        QPointF scale, delta;
        bool locked;
        QPointF scaled;
    };
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<Case> cases = {
        {{1, 1}, {0.1, 0.05}, false, {1.1, 1}}, {{1, 1}, {0.05, 0.1}, false, {1, 1.1}},
        {{1, 1}, {0.1, -0.1}, false, {1.1, 1}}, {{1, 1}, {0.05, -0.1}, false, {1, 0.9}},
        {{2, 1}, {0.2, 0}, true, {2.2, 1.1}},   {{2, 1}, {0, 0.5}, true, {3, 1.5}},
        {{2, -1}, {1, 0}, true, {3, -1.5}},     {{1, 1}, {nan, 0.1}, false, {1, 1.1}},
        {{1, 1}, {nan, nan}, false, {1, 1}},    {{1, 1}, {nan, 0.1}, true, {1.1, 1.1}},
    };
    for (const Case& c : cases) {
        const auto leaf = addElement(scene.canvas, u"leaf"_s, {{30, 20}, c.scale, 1});
        leaf->setScalesLocked(c.locked);
        PCScaleCalculator::updateElements({leaf}, false, c.delta, scene.when(), {});
        SCOPED_TRACE(testing::Message() << c.scale.x() << ' ' << c.delta.x() << ' ' << c.delta.y());
        EXPECT_NEAR_POINT(scene.scale(*leaf), c.scaled, 1e-6);
        EXPECT_EQ(scene.position(*leaf).x(), 30);
    }
}

// The point of the element that lies under the additive anchor point stays there.
TEST_P(Calculators, AdditiveEditsTurnAboutTheAdditiveAnchor) {
    const Look look{{300, 200}, {2, 0.5}, 0.75, {40, 60}, {0.25, 1}};
    const QPointF anchor(330, 150);
    const auto expectPivot = [&](const auto& edit) {
        const auto leaf = addElement(scene.canvas, u"leaf"_s, look);
        const QPointF inPoints = leaf->convertToElement(anchor);
        const QPointF unit(inPoints.x() / 40, inPoints.y() / 60);
        edit(PCElement::Elements{leaf});
        EXPECT_NEAR_POINT(scene.shown(*leaf, unit), anchor, 1e-4);
        EXPECT_GT(QLineF(scene.shown(*leaf, {0, 0}), leaf->position()).length(), 1);
        EXPECT_EQ(leaf->anchorPoint().x(), 0.25);
        EXPECT_EQ(leaf->anchorPoint().y(), 1);
        if (!scene.setup) { EXPECT_NEAR_POINT(leaf->position(), look.position, 1e-9); }
    };
    expectPivot([&](const PCElement::Elements& targets) {
        PCScaleCalculator::updateElements(targets, true, {0.5, 0}, scene.when(), anchor);
        EXPECT_NEAR(scene.scale(*targets[0]).x(), 2.5, 1e-6);
    });
    expectPivot([&](const PCElement::Elements& targets) {
        PCRotationCalculator::updateElements(targets, true, 0.5, scene.when(), anchor);
        EXPECT_NEAR(scene.rotation(*targets[0]), 0.25, 1e-6);
    });
}

// Without an area, or a ratio, there is nothing to compute with.
TEST_P(Calculators, TargetsOfNoAreaKeepTheirValues) {
    const auto additive = [this](const PCElement::Elements& targets) {
        PCScaleCalculator::updateElements(targets, true, {0.5, 0}, scene.when(), {5, 5});
        PCRotationCalculator::updateElements(targets, true, 0.5, scene.when(), {5, 5});
    };
    const auto locked = [this](const PCElement::Elements& targets) {
        targets[0]->setScalesLocked(true);
        PCScaleCalculator::updateElements(targets, false, {0.5, 0}, scene.when(), {});
        PCScaleCalculator::updateElements(targets, false, {1e300, 0}, scene.when(), {});
    };
    struct Case {
        const char* what;
        Look look;
        std::function<void(const PCElement::Elements&)> edit;
    };
    const std::vector<Case> cases = {
        {"no size", {{3, 4}, {1, 1}, 1, {0, 0}}, additive},
        {"no width", {{3, 4}, {1, 1}, 1, {0, 8}}, additive},
        {"no scale", {{3, 4}, {0, 0}, 1}, additive},
        {"no scale along y", {{3, 4}, {2, 0}, 1}, additive},
        {"no ratio", {{3, 4}, {2, 0}, 1}, locked},
        {"a ratio of 0", {{3, 4}, {0, 2}, 1}, locked},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto leaf = addElement(scene.canvas, u"leaf"_s, c.look);
        const auto before = scene.state(*leaf);
        c.edit({leaf});
        EXPECT_EQ(scene.state(*leaf), before);
    }
    // One that is locked to nothing can still be scaled up along one axis.
    const auto flat = addElement(scene.canvas, u"flat"_s, {{3, 4}, {0, 2}});
    PCScaleCalculator::updateElements({flat}, false, {0.5, 0}, EditTime::setup(), {});
    EXPECT_EQ(flat->scale().x(), 0.5);
}

TEST_P(Calculators, SetOneValueOfAll) {
    const bool setup = scene.setup;
    const auto group = addGroup(scene.canvas, u"group"_s, {{100, 50}, {2, 2}, 1});
    const auto leaf = addElement(group, u"leaf"_s, {{7, 9}, {1, 2}, 0.5});
    const auto other = addElement(group, u"other"_s, {{1, 1}});
    leaf->setScalesLocked(true);
    const PCElement::Elements targets{leaf, other};
    PCPositionCalculator::setXPosition(20, targets, scene.when());
    PCPositionCalculator::setYPosition(30, {leaf}, scene.when());
    PCScaleCalculator::setXScale(3, targets, scene.when());
    PCScaleCalculator::setYScale(5, {leaf}, scene.when());
    PCRotationCalculator::setRotation(0.25, targets, scene.when());
    PCOpacityCalculator::updateElementsWithValue(targets, false, 7, scene.when(), {});
    // Outside setup mode the value is the translation.
    const QPointF from = setup ? QPointF() : QPointF(7, 9);
    EXPECT_NEAR_POINT(scene.position(*leaf), from + QPointF(20, 30), 1e-5);
    EXPECT_NEAR_POINT(scene.scale(*leaf), QPointF(3, 5), 1e-6);
    EXPECT_NEAR(scene.rotation(*leaf), 0.25, 1e-7);
    EXPECT_EQ(scene.opacity(*leaf), 1);
    EXPECT_NEAR_POINT(scene.position(*other), QPointF(setup ? 20 : 21, 1), 1e-5);
    EXPECT_NEAR_POINT(scene.scale(*other), QPointF(3, 1), 1e-6);
}

// An edit keys what it changes, and nothing beside it.
TEST(KeyedEdits, TouchOnlyTheTimelinesThatChange) {
    Scene scene(false);
    const auto outer = addGroup(scene.canvas, u"outer"_s, {{0.1, 123.4}, {0.3, 0.7}});
    const auto leaf = addElement(outer, u"leaf"_s, {{7.7, 9.1}, {1, 1}, 0.3, {10, 30}, {0.3, 0.9}});
    const auto keys = [&leaf] {
        std::string text;
        for (const PCPropertyType type :
             {PCPropertyTypeTranslationX, PCPropertyTypeTranslationY, PCPropertyTypeScaleX,
              PCPropertyTypeScaleY, PCPropertyTypeZRotation, PCPropertyTypeOpacity}) {
            text += std::to_string(leaf->timeline(type)->keyframesCount());
        }
        return text;
    };
    PCPositionCalculator::updateElements({leaf}, false, {0.7, 0}, EditTime::at(10));
    EXPECT_EQ(keys(), "100000");
    PCPositionCalculator::updateElements({leaf}, false, {0, 0.7}, EditTime::at(20));
    EXPECT_EQ(keys(), "110000");
    PCRotationCalculator::updateElements({leaf}, false, 0.7, EditTime::at(30), {});
    EXPECT_EQ(keys(), "110010");
    PCScaleCalculator::updateElements({leaf}, false, {0.7, 0}, EditTime::at(40), {});
    EXPECT_EQ(keys(), "111010");
    PCOpacityCalculator::updateElementsWithDelta({leaf}, false, -0.25, EditTime::at(50), {});
    EXPECT_EQ(keys(), "111011");
}

TEST(Rotations, AreBroughtIntoATurn) {
    Scene scene(true);
    const auto leaf = addElement(scene.canvas, u"leaf"_s);
    PCRotationCalculator::updateElements({leaf}, false, 0.1, EditTime::setup(), {});
    EXPECT_NEAR(leaf->zRotation(), 2 * pi - 0.1, 1e-12);
}

TEST(Rotations, AnglesTakeTheShortWay) {
    struct Case {
        QPointF start, end, center;
        double radians;
    };
    for (const Case& c :
         {Case{{1, 0}, {0, 1}, {0, 0}, pi / 2}, Case{{0, 1}, {1, 0}, {0, 0}, -pi / 2},
          Case{{-1, 0.001}, {-1, -0.001}, {0, 0}, 0.002},
          Case{{-1, -0.001}, {-1, 0.001}, {0, 0}, -0.002}, Case{{6, 5}, {4, 5}, {5, 5}, pi},
          Case{{6, 5}, {5, 6}, {5, 5}, pi / 2}, Case{{5, 5}, {5, 5}, {5, 5}, 0}}) {
        const double radians =
            PCRotationCalculator::radiansBetweenStartPoint(c.start, c.end, c.center);
        EXPECT_NEAR(radians, c.radians, 1e-8) << c.start.x() << ' ' << c.start.y();
    }
}

TEST(ResizeTracking, GivesFactorsIn32Bits) {
    PCScaleCalculator resize({10, 20}, {40, 20});
    EXPECT_EQ(resize.scaleForLocation({70, 80}).x(), 2);
    EXPECT_EQ(resize.scaleForLocation({70, 80}).y(), 1) << "began at the point that stays put";
    resize.scaleForDelta(3, 0);
    EXPECT_EQ(resize.scaleForDelta(7, 1).x(), static_cast<double>(40.0F / 30.0F));
}

}  // namespace
}  // namespace tweenery::test
