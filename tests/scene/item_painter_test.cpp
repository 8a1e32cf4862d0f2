// Where images lie to the part of a pixel.

#include "scene/item_painter.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>

#include "scene/layer_renderer.h"
#include "scene/layer_scene.h"

namespace tweenery::test {
namespace {

// The centre of all that is painted, by its alpha.
QPointF centreOf(const QImage& picture) {
    QPointF sum;
    double weight = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int alpha = qAlpha(picture.pixel(x, y));
            sum += QPointF(x, y) * alpha;
            weight += alpha;
        }
    }
    return sum / weight;
}

QImage lineOnNothing() {
    QImage image = imageFilled(21, 40, Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        image.setPixelColor(9, y, Qt::white);
    }
    return image;
}

TEST(ItemPainter, AnImageThatMovesSlowlyMovesByPartsOfAPixel) {
    struct Case {
        const char* what;
        QImage image;
        void (*change)(Layer&);
        double scale;
    };
    const Case cases[] = {
        {"as it is", imageFilled(20, 40, Qt::white), [](Layer&) {}, 1},
        {"a line within", lineOnNothing(), [](Layer&) {}, 1},
        {"in the middle of its bounds", lineOnNothing(),
         [](Layer& layer) { layer.setContentsGravity(ContentsGravity::Center); }, 1},
        {"of the density of the screen", lineOnNothing(),
         [](Layer& layer) {
             layer.setContentsScale(2);
             layer.setContentsGravity(ContentsGravity::Center);
         },
         2},
        {"half transparent", imageFilled(20, 40, Qt::white),
         [](Layer& layer) { layer.setOpacity(0.5); }, 1},
        {"turned by a right angle", lineOnNothing(),
         [](Layer& layer) { layer.setTransform(turned(std::numbers::pi / 2)); }, 1},
        {"half its size", lineOnNothing(),
         [](Layer& layer) { layer.setTransform(turned(0, QPointF(0.5, 0.5))); }, 1},
        {"a quarter of its size", imageFilled(20, 40, Qt::white),
         [](Layer& layer) { layer.setTransform(turned(0, QPointF(0.25, 0.25))); }, 1},
    };
    for (const Case& row : cases) {
        Scene scene;
        Layer& layer = scene.addImage(scene.root, {50, 20}, row.image);
        row.change(layer);
        const QPointF atRest = centreOf(renderLayer(scene.root, row.scale));
        for (int step = 1; step <= 10; ++step) {
            const QPointF way(step / 10.0, step / 25.0);
            layer.setPosition(QPointF(50, 20) + way);
            const QPointF moved = centreOf(renderLayer(scene.root, row.scale)) - atRest;
            EXPECT_NEAR(moved.x(), way.x() * row.scale, 0.1) << row.what << ", step " << step;
            EXPECT_NEAR(moved.y(), way.y() * row.scale, 0.1) << row.what << ", step " << step;
        }
    }
}

TEST(ItemPainter, AnImageOnWholePixelsStaysSharp) {
    QImage noise(30, 20, QImage::Format_ARGB32_Premultiplied);
    std::mt19937 random(3);
    for (int y = 0; y < noise.height(); ++y) {
        for (int x = 0; x < noise.width(); ++x) {
            noise.setPixel(x, y, static_cast<uint>(random()) | 0xff000000U);
        }
    }
    // The last ones are what sums of coordinates leave of whole numbers.
    for (const QPointF place :
         {QPointF(3, 5), QPointF(40 + 1e-13, 30 - 1e-13), QPointF(7.0001, 9)}) {
        Scene scene;
        scene.addImage(scene.root, place, noise);
        const QImage picture = renderLayer(scene.root, 1);
        EXPECT_EQ(picture.copy({place.toPoint(), noise.size()}), noise) << place.x();
        Scene dense;
        dense.addImage(dense.root, place, noise).setBounds({0, 0, 15, 10});
        EXPECT_EQ(renderLayer(dense.root, 2).copy({(place * 2).toPoint(), noise.size()}), noise);
    }
}

}  // namespace
}  // namespace tweenery::test
