#include "scene/layer_renderer.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <functional>
#include <limits>
#include <numbers>
#include <random>

#include "scene/layer_scene.h"

namespace tweenery::test {
namespace {

constexpr double kPi = std::numbers::pi;
const QColor kRed(255, 0, 0);
const QColor kGreen(0, 255, 0);
const QColor kBlue(0, 0, 255);

// Eight bits hold neither half an opacity nor its products exactly.
bool areAlike(const QColor& a, const QColor& b) {
    if (a.alpha() == 0 || b.alpha() == 0) { return a.alpha() == b.alpha(); }
    return std::abs(a.alpha() - b.alpha()) <= 2 && std::abs(a.red() - b.red()) <= 2 &&
           std::abs(a.green() - b.green()) <= 2 && std::abs(a.blue() - b.blue()) <= 2;
}

QString nameOf(const QColor& color) {
    return color.alpha() == 0 ? QStringLiteral("none") : color.name(QColor::HexArgb);
}

struct Picture {
    const char* what;
    std::function<void(Scene&)> build;
    struct Pixel {
        int x, y;
        QColor color;
    };
    std::vector<Pixel> pixels;
};

const QColor kNone(Qt::transparent);

const Picture kPictures[] = {
    {"siblings lie in their order",
     [](Scene& s) {
         s.add(s.root, {10, 10, 30, 30}, kRed);
         s.add(s.root, {20, 20, 30, 30}, kGreen);
     },
     {{15, 15, kRed}, {30, 30, kGreen}, {5, 5, kNone}, {50, 49, kNone}, {49, 49, kGreen}}},
    {"zPosition decides, and equal ones keep their order",
     [](Scene& s) {
         s.add(s.root, {0, 0, 30, 30}, kRed).setZPosition(1);
         s.add(s.root, {0, 0, 30, 30}, kGreen).setZPosition(1);
         s.add(s.root, {0, 0, 40, 40}, kBlue);
     },
     {{5, 5, kGreen}, {35, 35, kBlue}}},
    {"a group fades as a whole",
     [](Scene& s) {
         Layer& group = s.add(s.root, {0, 0, 100, 80});
         group.setOpacity(0.5);
         s.add(group, {0, 0, 40, 40}, kRed);
         s.add(group, {20, 20, 40, 40}, kGreen);
     },
     {{5, 5, QColor(255, 0, 0, 128)}, {30, 30, QColor(0, 255, 0, 128)}, {70, 70, kNone}}},
    {"groups in groups multiply",
     [](Scene& s) {
         Layer& outer = s.add(s.root, {0, 0, 100, 80}, kBlue);
         outer.setOpacity(0.5);
         Layer& inner = s.add(outer, {0, 0, 50, 50});
         inner.setOpacity(0.5);
         s.add(inner, {0, 0, 50, 50}, kRed);
         s.add(inner, {0, 0, 10, 10}, kGreen);
     },
     {{70, 70, QColor(0, 0, 255, 128)},
      {30, 30, QColor(128, 0, 127, 128)},
      {5, 5, QColor(0, 128, 127, 128)}}},
    {"hidden and fully transparent ones take all below with them",
     [](Scene& s) {
         Layer& hidden = s.add(s.root, {0, 0, 50, 50}, kRed);
         hidden.setHidden(true);
         s.add(hidden, {0, 0, 50, 50}, kRed);
         Layer& clear = s.add(s.root, {50, 0, 50, 50}, kRed);
         clear.setOpacity(0);
         s.add(clear, {0, 0, 50, 50}, kRed);
     },
     {{25, 25, kNone}, {75, 25, kNone}}},
    {"sublayers stick out, unless the layer masks",
     [](Scene& s) {
         Layer& open = s.add(s.root, {10, 10, 20, 20});
         s.add(open, {-5, -5, 30, 30}, kRed);
         Layer& mask = s.add(s.root, {50, 10, 20, 20});
         mask.setMasksToBounds(true);
         s.add(mask, {-5, -5, 30, 30}, kGreen);
         s.add(s.root, {50, 50, 10, 10}, kBlue);
     },
     {{6, 6, kRed},
      {34, 34, kRed},
      {50, 10, kGreen},
      {69, 29, kGreen},
      {49, 20, kNone},
      {60, 31, kNone},
      {55, 55, kBlue}}},
    {"a mask has the corners of its layer",
     [](Scene& s) {
         Layer& mask = s.add(s.root, {0, 0, 40, 40});
         mask.setMasksToBounds(true);
         mask.setStyle({.background = Qt::NoBrush, .borderColor = {}, .cornerRadius = 20});
         s.add(mask, {0, 0, 40, 40}, kRed);
     },
     {{1, 1, kNone}, {38, 38, kNone}, {20, 20, kRed}, {20, 1, kRed}}},
    {"masks in turned layers cut along the turned edge",
     [](Scene& s) {
         Layer& mask = s.add(s.root, {50, 40, 40, 20});
         mask.setAnchorPoint(QPointF(0.5, 0.5));
         mask.setTransform(turned(kPi / 2));
         mask.setMasksToBounds(true);
         s.add(mask, {-50, -50, 200, 200}, kRed);
     },
     {{50, 25, kRed}, {50, 55, kRed}, {35, 40, kNone}, {65, 40, kNone}, {50, 15, kNone}}},
    {"contents fill the bounds, or lie in the middle at their own size",
     [](Scene& s) {
         s.add(s.root, {0, 0, 40, 40}).setContents(imageFilled(10, 10, kRed));
         Layer& centred = s.add(s.root, {50, 0, 40, 40});
         centred.setContents(imageFilled(20, 10, kGreen));
         centred.setContentsGravity(ContentsGravity::Center);
     },
     {{2, 2, kRed},
      {37, 37, kRed},
      {60, 15, kGreen},
      {79, 24, kGreen},
      {59, 20, kNone},
      {70, 14, kNone},
      {70, 25, kNone}}},
    {"contents of twice the density take half the room",
     [](Scene& s) {
         Layer& layer = s.add(s.root, {0, 0, 40, 40});
         layer.setContents(imageFilled(40, 20, kRed));
         layer.setContentsScale(2);
         layer.setContentsGravity(ContentsGravity::Center);
     },
     {{12, 17, kRed}, {27, 22, kRed}, {8, 20, kNone}, {31, 20, kNone}, {20, 13, kNone}}},
    {"the border lies inside the bounds, over the sublayers, under later siblings",
     [](Scene& s) {
         Layer& layer = s.add(s.root, {10, 10, 40, 40});
         layer.setStyle({.background = kBlue, .borderColor = kRed, .borderWidth = 4});
         s.add(layer, {-5, 10, 50, 10}, kGreen);
         s.add(s.root, {0, 40, 20, 5}, kGreen);
     },
     {{9, 12, kNone},
      {10, 10, kRed},
      {13, 13, kRed},
      {14, 14, kBlue},
      {11, 25, kRed},
      {7, 25, kGreen},
      {20, 25, kGreen},
      {12, 42, kGreen},
      {49, 49, kRed},
      {50, 30, kNone}}},
    {"a border wider than its layer covers it",
     [](Scene& s) {
         s.add(s.root, {10, 10, 20, 6})
             .setStyle({.background = kBlue, .borderColor = kRed, .borderWidth = 4});
     },
     {{20, 12, kRed}, {20, 13, kRed}, {20, 9, kNone}}},
    {"rounded corners of background and border",
     [](Scene& s) {
         s.add(s.root, {10, 10, 40, 40})
             .setStyle(
                 {.background = kBlue, .borderColor = kRed, .borderWidth = 2, .cornerRadius = 20});
     },
     {{11, 11, kNone}, {30, 11, kRed}, {30, 13, kBlue}, {30, 30, kBlue}, {48, 48, kNone}}},
    {"a texture begins at the corner of the bounds and is as large as the layer shows it",
     [](Scene& s) {
         QImage tile = imageFilled(8, 8, kRed);
         QPainter(&tile).fillRect(0, 0, 4, 4, kGreen);
         QBrush texture;
         texture.setTextureImage(tile);
         s.add(s.root, {3, 5, 40, 40}).setStyle({.background = texture, .borderColor = {}});
         Layer& doubled = s.add(s.root, {50, 5, 20, 20});
         doubled.setStyle({.background = texture, .borderColor = {}});
         doubled.setTransform(turned(0, QPointF(2, 2)));
         // Bounds that do not begin at zero.
         Layer& shifted = s.add(s.root, {0, 60, 20, 20});
         shifted.setBounds({5, 5, 16, 16});
         shifted.setStyle({.background = texture, .borderColor = {}});
     },
     {{3, 5, kGreen},
      {11, 13, kGreen},
      {8, 5, kRed},
      {0, 60, kGreen},
      {8, 68, kGreen},
      {12, 66, kRed},
      {70, 25, kGreen},
      {62, 25, kRed}}},
    {"dashes run along the outline from its phase on",
     [](Scene& s) {
         ShapeLayer& layer = s.addShape(s.root, {0, 0, 100, 80});
         LayerShape& shape = layer.editShape();
         shape.path.moveTo(0, 10);
         shape.path.lineTo(60, 10);
         shape.strokeColor = kRed;
         shape.lineWidth = 4;
         shape.lineDashPattern = {10, 5};
         shape.lineDashPhase = 3;
     },
     {{0, 10, kRed},
      {6, 8, kRed},
      {7, 10, kNone},
      {11, 10, kNone},
      {12, 10, kRed},
      {21, 11, kRed},
      {22, 10, kNone},
      {3, 7, kNone},
      {3, 12, kNone}}},
    {"the fill rule of a path counts",
     [](Scene& s) {
         for (const auto rule : {Qt::OddEvenFill, Qt::WindingFill}) {
             const double x = rule == Qt::OddEvenFill ? 0 : 50;
             LayerShape& shape = s.addShape(s.root, {x, 0, 40, 40}).editShape();
             shape.path.setFillRule(rule);
             shape.path.addRect(0, 0, 40, 40);
             shape.path.addRect(10, 10, 20, 20);
             shape.fillColor = kRed;
         }
     },
     {{5, 5, kRed}, {20, 20, kNone}, {55, 5, kRed}, {70, 20, kRed}}},
    {"a shape is not bound to its layer's bounds, and lies over the contents",
     [](Scene& s) {
         ShapeLayer& layer = s.addShape(s.root, {50, 40, 0, 0});
         layer.editShape().path.addRect(-20, -20, 40, 40);
         layer.editShape().fillColor = kRed;
         ShapeLayer& over = s.addShape(s.root, {0, 0, 10, 10});
         over.setContents(imageFilled(10, 10, kBlue));
         over.editShape().path.addRect(0, 0, 5, 5);
         over.editShape().fillColor = kGreen;
     },
     {{31, 21, kRed}, {69, 59, kRed}, {2, 2, kGreen}, {7, 7, kBlue}}},
    {"a line of no width is not drawn",
     [](Scene& s) {
         LayerShape& shape = s.addShape(s.root, {0, 0, 40, 40}).editShape();
         shape.path.addRect(0.5, 0.5, 40, 40);
         shape.strokeColor = kRed;
         shape.lineWidth = 0;
     },
     {{0, 0, kNone}, {20, 0, kNone}}},
    {"a rotation turns x towards y, about the anchor point, after the scale",
     [](Scene& s) {
         Layer& layer = s.add(s.root, {50, 40, 20, 4}, kRed);
         layer.setTransform(turned(kPi / 2, QPointF(2, 1)));
     },
     {{48, 42, kRed}, {48, 78, kRed}, {52, 42, kNone}, {60, 41, kNone}}},
};

TEST(LayerRenderer, PaintsSmallScenes) {
    for (const Picture& row : kPictures) {
        Scene scene;
        row.build(scene);
        const QImage picture = renderLayer(scene.root, 1);
        ASSERT_EQ(picture.size(), QSize(100, 80));
        for (const auto& [x, y, color] : row.pixels) {
            const QColor found = picture.pixelColor(x, y);
            EXPECT_TRUE(areAlike(found, color))
                << row.what << ", at " << x << ", " << y << ": " << nameOf(found).toStdString();
        }
    }
}

TEST(LayerRenderer, DegenerateNumbersShowNothingAndHarmNothing) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::function<void(Layer&)> cases[] = {
        [](Layer& layer) { layer.setTransform(turned(0, QPointF(0, 1))); },
        [](Layer& layer) { layer.setTransform(turned(nan)); },
        [](Layer& layer) { layer.setTransform(turned(0, QPointF(infinity, 1))); },
        [](Layer& layer) { layer.setPosition(QPointF(nan, 0)); },
        [](Layer& layer) { layer.setPosition(QPointF(0, -infinity)); },
        [](Layer& layer) { layer.setPosition(QPointF(1e300, 0)); },
        [](Layer& layer) { layer.setAnchorPoint(QPointF(nan, nan)); },
        [](Layer& layer) { layer.setOpacity(nan); },
        [](Layer& layer) { layer.setOpacity(-1); },
        [](Layer& layer) { layer.setTransform(turned(1, QPointF(1e-170, 1e-170))); },
    };
    for (const auto& spoil : cases) {
        Scene scene;
        Layer& layer = scene.add(scene.root, {0, 0, 50, 50}, kRed);
        layer.setContents(imageFilled(5, 5, kRed));
        scene.add(layer, {0, 0, 50, 50}, kRed);
        scene.add(scene.root, {60, 60, 10, 10}, kGreen);
        spoil(layer);
        const QImage picture = renderLayer(scene.root, 1);
        EXPECT_EQ(nameOf(picture.pixelColor(25, 25)), nameOf(kNone)) << (&spoil - cases);
        EXPECT_EQ(nameOf(picture.pixelColor(65, 65)), nameOf(kGreen)) << (&spoil - cases);
    }
    Scene scene;
    scene.add(scene.root, {}).setBounds({0, 0, nan, 5});
    scene.add(scene.root, {-1, -1, 5, 5}, kRed).setTransform(turned(0, QPointF(1e9, 1e9)));
    ShapeLayer& dashed = scene.addShape(scene.root, {0, 0, 1, 1});
    dashed.editShape().path.addRect(0, 0, 1e6, 1e6);
    dashed.editShape().strokeColor = kGreen;
    dashed.editShape().lineDashPattern = {1e-9, 1e-9};
    const QImage picture = renderLayer(scene.root, 1);
    EXPECT_EQ(nameOf(picture.pixelColor(50, 50)), nameOf(kRed)) << "covered by the giant";
}

TEST(LayerRenderer, LeavesPicturesThatWereTakenAlone) {
    Scene scene;
    Layer& layer = scene.add(scene.root, {0, 0, 50, 50}, kRed);
    LayerRenderer renderer;
    const QImage first = renderer.frame(scene.root, Affine(), {100, 80});
    layer.setStyle({.background = kGreen, .borderColor = {}});
    const QImage second = renderer.frame(scene.root, Affine(), {100, 80});
    EXPECT_EQ(nameOf(first.pixelColor(25, 25)), nameOf(kRed));
    EXPECT_EQ(nameOf(second.pixelColor(25, 25)), nameOf(kGreen));
    EXPECT_EQ(renderer.frame(scene.root, Affine::scaling(0.5, 0.5), {50, 40}).size(),
              QSize(50, 40));
}

TEST(LayerRenderer, AgreesWithOnePainterOnTheWholePicture) {
    Scene scene;
    const QImage artwork = imageFilled(20, 14, kRed);
    std::mt19937 random(5);
    const auto uniform = [&random](double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random);
    };
    for (int i = 0; i < 30; ++i) {
        Layer& layer = scene.addImage(scene.root, {uniform(0, 100), uniform(0, 80)}, artwork);
        layer.setTransform(turned(uniform(0, 6), {uniform(0.3, 2), uniform(0.3, 2)}));
        layer.setOpacity(uniform(0.2, 1));
    }
    QImage expected(200, 160, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (const Layer* layer : scene.root.sublayers()) {
        painter.resetTransform();
        painter.scale(2, 2);
        painter.translate(layer->position());
        painter.rotate(layer->transform().rotation * 180 / kPi);
        painter.scale(layer->transform().scale.x(), layer->transform().scale.y());
        painter.setOpacity(layer->opacity());
        painter.drawImage(layer->bounds(), artwork);
    }
    painter.end();
    EXPECT_LE(difference(renderLayer(scene.root, 2), expected), kSpanTolerance);
}

// A chain of that many layers with a green one at its end, each half a point further in.
Layer& addChain(Scene& scene, int depth, double opacity) {
    Layer* layer = &scene.root;
    for (int i = 0; i < depth; ++i) {
        layer = &scene.add(*layer, {0.02, 0.02, 40, 40}, kBlue);
        layer->setOpacity(opacity);
    }
    return scene.add(*layer, {0, 0, 20, 20}, kGreen);
}

TEST(LayerRenderer, GoesAsDeepAsTheTree) {
    Scene opaque;
    addChain(opaque, 1000, 1);
    EXPECT_EQ(nameOf(renderLayer(opaque.root, 1).pixelColor(30, 30)), nameOf(kGreen));

    Scene fading;
    addChain(fading, 1000, 0.9999);
    const QColor color = renderLayer(fading.root, 1).pixelColor(30, 30);
    EXPECT_GT(color.green(), 100) << "each group rounds its own opacity";
}

}  // namespace
}  // namespace tweenery::test
