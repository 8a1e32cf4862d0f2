// What a renderer paints again after a change, against the picture painted whole.

#include <gtest/gtest.h>

#include <numbers>
#include <random>

#include "scene/layer_renderer.h"
#include "scene/layer_scene.h"

namespace tweenery::test {
namespace {

const QColor kRed(255, 0, 0);
const QColor kGreen(0, 255, 0);

// A tree of many layers with all that can be drawn, whose edits a test chooses.
class RandomScene {
 public:
    explicit RandomScene(unsigned seed) : m_random(seed) {
        LayerScene::place(m_root, {0, 0, 300, 200});
        m_layers.push_back(&m_root);
        for (int i = 0; i < 60; ++i) {
            Layer& super = *m_layers[number(m_layers.size())];
            const QRectF frame(uniform(-20, 200), uniform(-20, 150), uniform(5, 80),
                               uniform(5, 80));
            Layer& layer = i % 5 == 0 ? m_scene.addShape(super, frame) : m_scene.add(super, frame);
            layer.setAnchorPoint({0.5, 0.5});
            m_layers.push_back(&layer);
            for (int edits = 0; edits < 4; ++edits) {
                editOne(layer);
            }
        }
    }

    Layer& root() { return m_root; }

    void edit() { editOne(*m_layers[1 + number(m_layers.size() - 1)]); }

 private:
    void editOne(Layer& layer) {
        switch (number(11)) {
            case 0:
                layer.setPosition({uniform(-20, 300), uniform(-20, 200)});
                return;
            case 1:
                layer.setTransform(turned(uniform(0, 6), {uniform(0.2, 1.5), uniform(0.2, 1.5)}));
                return;
            case 2:
                layer.setOpacity(uniform(-0.2, 1.4));
                return;
            case 3:
                layer.setZPosition(static_cast<double>(number(3)));
                return;
            case 4:
                layer.setStyle({.background = color(),
                                .borderColor = color(),
                                .borderWidth = uniform(0, 5),
                                .cornerRadius = uniform(-10, 20)});
                return;
            case 5:
                layer.setContents(striped(color()));
                return;
            case 6:
                layer.setHidden(number(4) == 0);
                return;
            case 7:
                layer.setMasksToBounds(number(3) == 0);
                return;
            case 8:
                moveInTree(layer);
                return;
            case 9:
                layer.setContentsGravity(number(2) == 0 ? ContentsGravity::Center
                                                        : ContentsGravity::Resize);
                return;
            default:
                if (auto* shape = dynamic_cast<ShapeLayer*>(&layer)) {
                    editShape(shape->editShape());
                }
        }
    }

    void editShape(LayerShape& shape) {
        shape.path.clear();
        shape.path.addEllipse(QRectF(0, 0, uniform(5, 60), uniform(5, 60)));
        shape.fillColor = color();
        shape.strokeColor = color();
        shape.lineWidth = uniform(0, 6);
        shape.lineDashPattern = {4, 3};
    }

    void moveInTree(Layer& layer) {
        Layer& super = *m_layers[number(m_layers.size())];
        for (const Layer* above = &super; above; above = above->superlayer()) {
            if (above == &layer) { return; }
        }
        super.insertSublayer(layer, number(super.sublayers().size() + 1));
    }

    static QImage striped(const QColor& color) {
        QImage image = imageFilled(23, 31, color);
        for (int x = 0; x < image.width(); x += 3) {
            for (int y = 0; y < image.height(); ++y) {
                image.setPixelColor(x, y, Qt::white);
            }
        }
        return image;
    }

    size_t number(size_t limit) { return m_random() % limit; }
    double uniform(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(m_random);
    }
    QColor color() {
        return QColor::fromHsv(static_cast<int>(number(360)), 200, 220, number(2) == 0 ? 255 : 120);
    }

    std::mt19937 m_random;
    LayerScene m_scene;
    Layer m_root;
    std::vector<Layer*> m_layers;
};

QImage paintedWhole(Layer& root, const Affine& toDevice, QSize size) {
    DisplayList list;
    list.build(root, toDevice, size);
    QImage whole;
    LayerRenderer(1).paint(list, whole);
    return whole;
}

TEST(LayerRepaint, PaintingWhatChangedGivesTheWholePicture) {
    const Affine toDevice{{1.25, 0, 0, 1.25}, {7, 3.5}};
    const QSize size(380, 260);
    for (unsigned seed = 1; seed <= 12; ++seed) {
        RandomScene scene(seed);
        LayerRenderer renderer(seed % 2 == 0 ? 1 : 2);
        renderer.frame(scene.root(), toDevice, size);
        for (unsigned frame = 0; frame < 40; ++frame) {
            for (unsigned edits = 0; edits < 1 + frame % 4; ++edits) {
                scene.edit();
            }
            const QImage updated = renderer.frame(scene.root(), toDevice, size);
            const QImage whole = paintedWhole(scene.root(), toDevice, size);
            ASSERT_LE(difference(updated, whole), kSpanTolerance)
                << "seed " << seed << ", frame " << frame;
        }
    }
}

// Also what changes meanwhile, and what comes into sight.
TEST(LayerRepaint, ScrollingGivesTheWholePicture) {
    const QSize size(200, 150);
    for (unsigned seed = 1; seed <= 8; ++seed) {
        RandomScene scene(seed);
        std::mt19937 random(seed);
        const auto step = [&random](int most) {
            return static_cast<int>(random() % static_cast<unsigned>(2 * most)) - most;
        };
        LayerRenderer renderer(1 + seed % 2);
        Affine toDevice{{1.5, 0, 0, 1.5}, {-40.3, -30.6}};
        renderer.frame(scene.root(), toDevice, size);
        for (int frame = 0; frame < 60; ++frame) {
            const bool isFar = frame % 10 == 9;
            toDevice.offset += isFar ? QPointF(step(400), step(300)) : QPointF(step(20), step(15));
            if (frame % 7 == 6) { toDevice.offset += QPointF(0.4, 0); }
            if (frame % 3 == 2) { scene.edit(); }
            const QImage updated = renderer.frame(scene.root(), toDevice, size);
            const QImage whole = paintedWhole(scene.root(), toDevice, size);
            ASSERT_LE(difference(updated, whole), kSpanTolerance)
                << "seed " << seed << ", frame " << frame;
            if (isFar) { toDevice.offset = {-40.3, -30.6}; }
        }
    }
}

TEST(LayerRepaint, ScrollingPaintsWhatComesIntoSight) {
    Scene scene;
    LayerScene::place(scene.root, {0, 0, 1000, 600});
    for (int i = 0; i < 20; ++i) {
        scene.add(scene.root, {i * 48.0, i * 28.0, 40, 20}, kRed);
    }
    LayerRenderer renderer;
    renderer.frame(scene.root, Affine(), {500, 300});
    renderer.frame(scene.root, {{}, {-10, -20}}, {500, 300});
    int painted = 0;
    for (const QRect& rect : renderer.repainted()) {
        painted += rect.width() * rect.height();
    }
    EXPECT_LE(painted, 500 * 24 + 10 * 300);
    EXPECT_EQ(renderer.changed(), std::vector{QRect(0, 0, 500, 300)});
}

// Images that are turned and scaled, some of them in fading groups, drift as in an animation.
TEST(LayerRepaint, TurnedImagesThatMoveArePaintedAlongTheirEdges) {
    const QSize size(400, 320);
    const Affine toDevice = Affine::scaling(4, 4);
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        const auto uniform = [&random](double least, double most) {
            return std::uniform_real_distribution<double>(least, most)(random);
        };
        Scene scene;
        std::vector<Layer*> layers;
        for (int i = 0; i < 30; ++i) {
            Layer& super = i % 3 == 2 ? *layers[random() % layers.size()] : scene.root;
            const QPointF place(uniform(0, 100), uniform(0, 80));
            Layer& layer = scene.addImage(super, place, imageFilled(24, 16, kGreen));
            layer.setTransform(turned(uniform(0, 7), {uniform(0.2, 1.5), uniform(0.2, 1.5)}));
            layer.setOpacity(uniform(0.3, 1.2));
            layers.push_back(&layer);
        }
        LayerRenderer renderer(1 + seed % 3);
        renderer.frame(scene.root, toDevice, size);
        for (int frame = 0; frame < 30; ++frame) {
            Layer& moved = *layers[random() % layers.size()];
            moved.setPosition(moved.position() + QPointF(uniform(-1, 1), uniform(-1, 1)));
            const QImage updated = renderer.frame(scene.root, toDevice, size);
            const QImage whole = paintedWhole(scene.root, toDevice, size);
            ASSERT_LE(difference(updated, whole), kSpanTolerance)
                << "seed " << seed << ", frame " << frame;
        }
    }
}

TEST(LayerRepaint, ThreadsMakeNoDifference) {
    RandomScene scene(99);
    DisplayList list;
    list.build(scene.root(), Affine(), {300, 200});
    QImage alone;
    QImage together;
    LayerRenderer(1).paint(list, alone);
    LayerRenderer(3).paint(list, together);
    EXPECT_EQ(alone, together);
}

TEST(LayerRepaint, PaintsOnlyAroundWhatMoved) {
    Scene scene;
    LayerScene::place(scene.root, {0, 0, 1000, 600});
    std::vector<Layer*> layers;
    layers.reserve(20);
    for (int i = 0; i < 20; ++i) {
        layers.push_back(&scene.add(scene.root, {i * 48.0, i * 28.0, 40, 20}, kRed));
    }
    LayerRenderer renderer;
    const QSize size(1000, 600);
    const auto paintedPixels = [&] {
        renderer.frame(scene.root, Affine(), size);
        int sum = 0;
        for (const QRect& rect : renderer.repainted()) {
            sum += rect.width() * rect.height();
        }
        return sum;
    };
    EXPECT_EQ(paintedPixels(), 600000) << "the first frame";
    EXPECT_EQ(paintedPixels(), 0);
    layers[3]->setPosition({150, 90});
    EXPECT_LE(paintedPixels(), 60 * 40);
    layers[3]->setContents(QImage());
    EXPECT_EQ(paintedPixels(), 0) << "nothing that shows has changed";
    layers[7]->removeFromSuperlayer();
    EXPECT_LE(paintedPixels(), 44 * 24);
    scene.root.insertSublayer(*layers[19], 0);
    EXPECT_LE(paintedPixels(), 44 * 24) << "only what passed the others";
}

TEST(LayerRepaint, PaintsLessThanTheBoxOfWhatIsTurned) {
    Scene scene;
    Layer& layer = scene.addImage(scene.root, {50, 30}, imageFilled(40, 40, kRed));
    layer.setTransform(turned(std::numbers::pi / 4));
    LayerRenderer renderer;
    const Affine toDevice = Affine::scaling(10, 10);
    renderer.frame(scene.root, toDevice, {1000, 800});
    layer.setPosition({50.1, 30});
    renderer.frame(scene.root, toDevice, {1000, 800});
    double painted = 0;
    for (const QRect& rect : renderer.repainted()) {
        painted += rect.width() * rect.height();
    }
    EXPECT_LE(painted, 400 * 400 * 1.1) << "the square stands on a corner, half its box is empty";
}

}  // namespace
}  // namespace tweenery::test
