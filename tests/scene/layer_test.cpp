#include "scene/layer.h"

#include <gtest/gtest.h>

#include <QTransform>
#include <deque>
#include <limits>
#include <numbers>
#include <random>

#include "base/errors.h"
#include "scene/layer_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

KeyframeAnimation animationOf(LayerProperty property, double from, double to, double duration = 1) {
    KeyframeAnimation animation;
    animation.property = property;
    animation.keyTimes = {0, 1};
    animation.values = {from, to};
    animation.timingFunctions = {{}};
    animation.duration = duration;
    return animation;
}

void expectNear(QPointF found, QPointF expected, const char* what = "") {
    EXPECT_NEAR(found.x(), expected.x(), 1e-6) << what;
    EXPECT_NEAR(found.y(), expected.y(), 1e-6) << what;
}

// The same placement by Qt's own matrices.
QTransform matrixOf(const Layer& layer) {
    QTransform matrix;
    matrix.translate(layer.position().x(), layer.position().y());
    matrix.rotateRadians(layer.transform().rotation);
    matrix.scale(layer.transform().scale.x(), layer.transform().scale.y());
    const QRectF bounds = layer.bounds();
    matrix.translate(-bounds.x() - layer.anchorPoint().x() * bounds.width(),
                     -bounds.y() - layer.anchorPoint().y() * bounds.height());
    return matrix;
}

TEST(LayerGeometry, ConvertsLikeTheProductOfAllMatrices) {
    std::mt19937 random(3);
    const auto uniform = [&random](double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random);
    };
    std::deque<Layer> layers(40);
    std::vector<QTransform> toRoot(layers.size());
    for (size_t i = 0; i < layers.size(); ++i) {
        Layer& layer = layers[i];
        layer.setPosition({uniform(-50, 50), uniform(-50, 50)});
        layer.setAnchorPoint({uniform(-1, 2), uniform(-1, 2)});
        layer.setBounds({uniform(-9, 9), uniform(-9, 9), uniform(1, 50), uniform(1, 50)});
        layer.setTransform(turned(uniform(-4, 4), {uniform(0.5, 2), uniform(-2, -0.5)}));
        toRoot[i] = matrixOf(layer);
        if (i == 0) { continue; }
        const size_t super = random() % i;
        layers[super].addSublayer(layer);
        toRoot[i] *= toRoot[super];
    }
    for (int i = 0; i < 200; ++i) {
        const size_t a = random() % layers.size();
        const size_t b = random() % layers.size();
        const QPointF point(uniform(-20, 20), uniform(-20, 20));
        const QPointF above = toRoot[a].map(point);
        const QPointF inOther = toRoot[b].inverted().map(above);
        expectNear(layers[a].convertPointTo(point, nullptr), above);
        expectNear(layers[a].convertPointTo(point, &layers[b]), inOther);
        expectNear(layers[b].convertPointFrom(point, &layers[a]), inOther);
        expectNear(layers[a].convertPointFrom(above, nullptr), point);
        const QRectF rect(point, QSizeF(5, 7));
        const QRectF expected = (toRoot[a] * toRoot[b].inverted()).mapRect(rect);
        const QRectF found = layers[a].convertRectTo(rect, &layers[b]);
        expectNear(found.topLeft(), expected.topLeft());
        expectNear(found.bottomRight(), expected.bottomRight());
    }
}

TEST(LayerGeometry, AFlattenedLayerIsThePlaceOfItsAnchor) {
    LayerScene scene;
    Layer root;
    Layer& flat = scene.add(root, {30, 40, 20, 10});
    for (const QPointF scale : {QPointF(0, 0), QPointF(1, 0), QPointF(kNaN, 1)}) {
        flat.setTransform(turned(0.3, scale));
        EXPECT_FALSE(flat.fromSuperlayer({30, 40}).has_value());
        expectNear(root.convertPointTo({99, 99}, &flat), {0, 0});
        EXPECT_EQ(root.hitTest({30, 40}), nullptr);
    }
    flat.setTransform(turned(0, {0, 2}));
    expectNear(flat.convertPointTo({5, 5}, nullptr), {30, 50});
}

struct Hits {
    LayerScene scene;
    Layer root;
    Layer& back = scene.add(root, {0, 0, 60, 60});
    Layer& front = scene.add(root, {40, 40, 60, 60});
    Layer& child = scene.add(back, {50, 0, 30, 10});
    Hits() { LayerScene::place(root, {0, 0, 100, 100}); }
};

TEST(LayerHits, FrontmostAndDeepestComesFirst) {
    struct Case {
        const char* what;
        void (*change)(Hits&);
        QPointF point;
        Layer* (*expected)(Hits&);
    };
    const auto back = [](Hits& s) { return &s.back; };
    const auto front = [](Hits& s) { return &s.front; };
    const auto child = [](Hits& s) { return &s.child; };
    const auto root = [](Hits& s) { return &s.root; };
    const auto none = [](Hits&) -> Layer* { return nullptr; };
    const auto asItIs = [](Hits&) {};
    const Case cases[] = {
        {"left and top edges belong to a layer", asItIs, {0, 0}, back},
        {"right and bottom edges do not", asItIs, {100, 50}, none},
        {"the later sibling is in front", asItIs, {50, 50}, front},
        {"unless zPosition says otherwise",
         [](Hits& s) { s.back.setZPosition(1); },
         {50, 50},
         back},
        {"equal ones keep their order",
         [](Hits& s) { s.back.setZPosition(1), s.front.setZPosition(1); },
         {50, 50},
         front},
        {"a sublayer sticks out", asItIs, {75, 5}, child},
        {"unless it is cut off", [](Hits& s) { s.back.setMasksToBounds(true); }, {75, 5}, root},
        {"hidden layers are passed over", [](Hits& s) { s.front.setHidden(true); }, {50, 50}, back},
        {"with what is below them", [](Hits& s) { s.back.setHidden(true); }, {55, 5}, root},
        {"transparent ones are not", [](Hits& s) { s.front.setOpacity(0); }, {50, 50}, front},
        {"not a number is nowhere", asItIs, {kNaN, 5}, none},
        {"not a number as a zPosition is 0",
         [](Hits& s) { s.back.setZPosition(kNaN); },
         {50, 50},
         front},
        {"turned about the anchor",
         [](Hits& s) { s.front.setTransform(turned(kPi)); },
         {39, 39},
         front},
    };
    for (const Case& row : cases) {
        Hits scene;
        row.change(scene);
        EXPECT_EQ(scene.root.hitTest(row.point), row.expected(scene)) << row.what;
    }
}

TEST(LayerHits, GoByWhatIsPresented) {
    Hits scene;
    scene.back.addAnimation(animationOf(LayerProperty::ZPosition, -1, 3), u"z"_s);
    scene.front.addAnimation(animationOf(LayerProperty::TranslationX, 0, 100), u"x"_s);
    scene.root.setSpeed(0);
    EXPECT_EQ(scene.root.hitTest({45, 45}), &scene.front);
    scene.root.setTimeOffset(0.01);
    EXPECT_EQ(scene.root.hitTest({45, 45}), &scene.front);
    scene.root.setTimeOffset(0.02);
    scene.front.setZPosition(-2);
    EXPECT_EQ(scene.root.hitTest({45, 45}), &scene.back);
    scene.root.setTimeOffset(0.5);
    EXPECT_EQ(scene.root.hitTest({85, 60}), &scene.root) << "front has moved on";
}

std::vector<Layer*> sublayersOf(const Layer& layer) {
    return {layer.sublayers().begin(), layer.sublayers().end()};
}

std::vector<Layer*> inDrawingOrder(const Layer& layer) {
    std::vector<Layer*> order;
    for (Layer* sublayer : layer.sublayersInDrawingOrder()) {
        order.push_back(sublayer);
    }
    return order;
}

TEST(LayerTree, KeepsOrderAndOwnership) {
    Layer root;
    Layer other;
    const auto parts = std::make_unique<std::array<Layer, 3>>();
    auto& [a, b, c] = *parts;
    root.addSublayer(a);
    root.addSublayer(b);
    root.insertSublayer(c, 0);
    EXPECT_EQ(sublayersOf(root), (std::vector<Layer*>{&c, &a, &b}));
    root.insertSublayer(c, 99);
    EXPECT_EQ(sublayersOf(root), (std::vector<Layer*>{&a, &b, &c}));
    other.addSublayer(b);
    EXPECT_EQ(sublayersOf(root), (std::vector<Layer*>{&a, &c}));
    EXPECT_EQ(b.superlayer(), &other);
    a.setZPosition(5);
    EXPECT_EQ(inDrawingOrder(root), (std::vector<Layer*>{&c, &a}));
    EXPECT_EQ(sublayersOf(root), (std::vector<Layer*>{&a, &c}));
    a.addSublayer(c);
    EXPECT_THROW(c.addSublayer(a), AssertionFailure);
    EXPECT_THROW(a.addSublayer(a), AssertionFailure);
    {
        Layer brief;
        root.addSublayer(brief);
        brief.addSublayer(a);
    }
    EXPECT_EQ(a.superlayer(), nullptr) << "its superlayer has gone";
    EXPECT_TRUE(sublayersOf(root).empty());
}

TEST(LayerTime, RunsThroughAllClocks) {
    struct Clock {
        double speed, offset, begin;
    };
    struct Case {
        const char* what;
        Clock root, child;
        double rootTime, childTime;
    };
    const Case cases[] = {
        {"as it is", {1, 0, 0}, {1, 0, 0}, 7, 7},
        {"faster below", {1, 0, 0}, {2, 0, 0}, 7, 14},
        {"begun later and shifted", {1, 0, 0}, {2, 1, 3}, 7, 9},
        {"through both", {0.5, 1, 2}, {2, 0.5, 1}, 10, 8.5},
        {"frozen above", {0, 4, 0}, {1, 0, 0}, 7, 4},
        {"frozen above and shifted below", {0, 4, 9}, {3, 1, 2}, 7, 7},
        {"frozen itself", {1, 0, 0}, {0, 2.5, 1}, 7, 2.5},
        {"backward", {-1, 0, 0}, {1, 0, 0}, 7, -7},
    };
    for (const Case& row : cases) {
        Layer root;
        Layer child;
        root.addSublayer(child);
        for (const auto& [layer, clock] : {std::pair{&root, row.root}, {&child, row.child}}) {
            layer->setSpeed(clock.speed);
            layer->setTimeOffset(clock.offset);
            layer->setBeginTime(clock.begin);
        }
        root.setRootTime(row.rootTime);
        EXPECT_EQ(child.localTime(), row.childTime) << row.what;
        child.addAnimation(animationOf(LayerProperty::Opacity, -100, 100, 200), u"o"_s);
        const double seconds = std::max(0.0, row.childTime);
        EXPECT_NEAR(child.presented().opacity, seconds - 100, 1e-9) << row.what;
        EXPECT_EQ(child.opacity(), 1) << "the layer itself stays as it was";
    }
}

TEST(LayerTime, OfSeveralAnimationsOfOnePropertyTheLastAddedCounts) {
    Layer layer;
    const auto add = [&layer](double value, const QString& key) {
        layer.addAnimation(animationOf(LayerProperty::Opacity, value, value), key);
    };
    add(0.1, u"a"_s);
    add(0.2, u"b"_s);
    EXPECT_EQ(layer.presented().opacity, 0.2);
    add(0.3, u"a"_s);
    EXPECT_EQ(layer.presented().opacity, 0.3) << "replaced, and added last";
    EXPECT_EQ(layer.animationKeys(), (std::vector<QString>{u"b"_s, u"a"_s}));
    layer.removeAnimationForKey(u"a"_s);
    EXPECT_EQ(layer.presented().opacity, 0.2);
    layer.removeAnimationForKey(u"none"_s);
    layer.removeAllAnimations();
    EXPECT_EQ(layer.presented().opacity, 1);
    EXPECT_THROW(layer.addAnimation({}, u"a"_s), AssertionFailure);
}

// While something else is animated, what is set shows at once, and each property reaches its own.
TEST(LayerTime, AnimatedAndPlainPropertiesLiveSideBySide) {
    Layer layer;
    layer.addAnimation(animationOf(LayerProperty::ScaleX, 2, 2), u"x"_s);
    layer.addAnimation(animationOf(LayerProperty::ScaleY, 3, 3), u"y"_s);
    layer.addAnimation(animationOf(LayerProperty::RotationZ, kPi / 2, kPi / 2), u"r"_s);
    layer.addAnimation(animationOf(LayerProperty::TranslationX, 5, 5), u"tx"_s);
    layer.addAnimation(animationOf(LayerProperty::TranslationY, 7, 7), u"ty"_s);
    expectNear(layer.toSuperlayer().map({1, 1}), {5 - 3, 7 + 2});
    layer.setPosition({100, 200});
    expectNear(layer.toSuperlayer().map({1, 1}), {102, 209});
    layer.setOpacity(0.5);
    EXPECT_EQ(layer.presented().opacity, 0.5);
    layer.setContents(imageFilled(2, 2, Qt::red));
    EXPECT_EQ(layer.presented().contents.cacheKey(), layer.contents().cacheKey());
    layer.setBounds({0, 0, 4, 4});
    layer.setAnchorPoint({1, 1});
    expectNear(layer.toSuperlayer().map({4, 4}), {105, 207});
    layer.removeAllAnimations();
    expectNear(layer.toSuperlayer().map({4, 4}), {100, 200});
}

TEST(LayerTime, AnimatedStackingIsAnOrderEvenOfNumbersThatAreNone) {
    LayerScene scene;
    Layer root;
    std::vector<Layer*> layers;
    for (int i = 0; i < 40; ++i) {
        layers.push_back(&scene.add(root, {0, 0, 1, 1}));
        const double from = i % 3 == 0 ? kNaN : -i;
        layers.back()->addAnimation(animationOf(LayerProperty::ZPosition, from, i), u"z"_s);
    }
    root.setSpeed(0);
    const std::vector<Layer*> order = inDrawingOrder(root);
    EXPECT_TRUE(std::is_permutation(order.begin(), order.end(), layers.begin(), layers.end()));
    const auto place = [&](int i) { return std::find(order.begin(), order.end(), layers[i]); };
    EXPECT_LT(place(38), place(37));
    EXPECT_LT(place(1), place(0)) << "not a number counts as 0";
    EXPECT_LT(place(0), place(3));
}

TEST(LayerLayout, HappensOnceWhereItWasAskedFor) {
    struct Counting : Layer {
        int count = 0;
        void layoutSublayers() override { ++count; }
    };
    Layer root;
    Layer middle;
    Counting leaf;
    Counting other;
    middle.addSublayer(leaf);
    leaf.setNeedsLayout();
    root.addSublayer(middle);  // after it was asked
    root.addSublayer(other);
    root.layoutIfNeeded();
    root.layoutIfNeeded();
    EXPECT_EQ(leaf.count, 1);
    EXPECT_EQ(other.count, 0);
    leaf.setNeedsLayout();
    leaf.setNeedsLayout();
    middle.removeFromSuperlayer();
    root.layoutIfNeeded();
    EXPECT_EQ(leaf.count, 1) << "no longer in the tree";
    other.addSublayer(middle);
    root.layoutIfNeeded();
    EXPECT_EQ(leaf.count, 2);
}

TEST(LayerTree, DepthAndBreadthAreOrdinary) {
    std::deque<Layer> chain(1000);
    for (size_t i = 0; i < chain.size(); ++i) {
        LayerScene::place(chain[i], {0.5, 0, 2000, 1});
        if (i > 0) { chain[i - 1].addSublayer(chain[i]); }
    }
    expectNear(chain.back().convertPointTo({0, 0}, nullptr), {500, 0});
    EXPECT_EQ(chain.front().hitTest({500.25, 0.5}), &chain.back());

    Layer root;
    std::deque<Layer> many(10'000);
    for (Layer& layer : many) {
        root.addSublayer(layer);
    }
    many.front().setZPosition(1);
    EXPECT_EQ(inDrawingOrder(root).back(), &many.front());
}

}  // namespace
}  // namespace tweenery::test
