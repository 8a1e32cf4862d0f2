#include "scene/reduced_images.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <thread>

#include "scene/layer_renderer.h"
#include "scene/layer_scene.h"

namespace tweenery::test {
namespace {

constexpr qsizetype kAmple = 1 << 20;

TEST(ReducedImages, AreNearlyOfTheSizeThatIsDrawn) {
    const QImage image = imageFilled(100, 62, QColor(200, 40, 90, 120));
    struct Case {
        double scaleX, scaleY;
        QSize size;
    };
    const Case cases[] = {
        {1, 1, {100, 62}},    {7, 0.51, {100, 62}},   {0.5000000001, 0.49, {50, 31}},
        {0.4, 0.4, {36, 22}}, {0.28, 0.28, {25, 16}}, {0.1, 1, {9, 62}},
        {1, 0.001, {100, 1}}, {1e-9, 1e-300, {1, 1}}, {0, 0, {1, 1}},
    };
    ReducedImages reduced(kAmple);
    for (const Case& row : cases) {
        const QImage found = reduced.imageFor(image, row.scaleX, row.scaleY);
        EXPECT_EQ(found.size(), row.size) << row.scaleX << ", " << row.scaleY;
        EXPECT_EQ(found, imageFilled(row.size.width(), row.size.height(), image.pixelColor(0, 0)))
            << "one colour stays that colour";
    }
    EXPECT_EQ(reduced.imageFor(image, 0.6, 0.6).constBits(), image.constBits());
}

TEST(ReducedImages, AverageAllPixelsAlsoOfOddSizes) {
    ReducedImages reduced(kAmple);
    for (const QSize size : {QSize(64, 64), QSize(63, 64), QSize(65, 31), QSize(7, 3)}) {
        QImage chequered = imageFilled(size.width(), size.height(), Qt::black);
        double sum = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = y % 2; x < size.width(); x += 2) {
                chequered.setPixelColor(x, y, Qt::white);
                sum += 255;
            }
        }
        const QImage half = reduced.imageFor(chequered, 0.3, 0.3);
        double sumOfHalf = 0;
        for (int y = 0; y < half.height(); ++y) {
            for (int x = 0; x < half.width(); ++x) {
                sumOfHalf += qGreen(half.pixel(x, y));
            }
        }
        EXPECT_NEAR(sumOfHalf / (half.width() * half.height()),
                    sum / (size.width() * size.height()), 3)
            << size.width() << " by " << size.height();
    }
}

TEST(ReducedImages, AreMadeOnceForAllThreads) {
    ReducedImages reduced(kAmple);
    QImage image = imageFilled(100, 100, Qt::red);
    std::vector<qint64> keys(4);
    std::vector<std::thread> threads;
    for (qint64& key : keys) {
        threads.emplace_back([&] { key = reduced.imageFor(image, 0.1, 0.3).cacheKey(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(keys, std::vector<qint64>(4, keys[0]));
    image.setPixelColor(0, 0, Qt::blue);
    EXPECT_NE(reduced.imageFor(image, 0.1, 0.3).cacheKey(), keys[0]) << "another image by now";
}

TEST(ReducedImages, KeepNoMoreThanTheirBudget) {
    constexpr qsizetype kBudget = 50 * 50 * 4 * 3;
    ReducedImages reduced(kBudget);
    std::vector<QImage> images;
    for (int i = 0; i < 10; ++i) {
        images.push_back(imageFilled(100, 100, Qt::red));
        EXPECT_EQ(reduced.imageFor(images.back(), 0.5, 0.5).size(), QSize(50, 50));
    }
    EXPECT_LE(reduced.keptBytes(), kBudget);
    EXPECT_GT(reduced.keptBytes(), 0);
    EXPECT_EQ(reduced.imageFor(imageFilled(4000, 4, Qt::red), 0.5, 0.5).size(), QSize(2000, 2))
        << "beyond the budget by itself";
}

// Each line is one pixel of the artwork: at 28 % all of them show about as strongly.
TEST(ReducedImages, FineLinesOfASmallPictureAreWhole) {
    constexpr double kScale = 0.28;
    constexpr int kEach = 23;  // pixels from line to line
    QImage image = imageFilled(500, 100, Qt::transparent);
    for (int x = 10; x < image.width(); x += kEach) {
        QPainter(&image).fillRect(x, 0, 1, image.height(), Qt::black);
    }
    for (const double angle : {0.0, 0.05}) {
        Scene lines;
        LayerScene::place(lines.root, {0, 0, 500, 100});
        lines.addImage(lines.root, {0, 0}, image).setTransform(turned(angle));
        const QImage picture = renderLayer(lines.root, kScale);
        const int row = picture.height() / 2;
        for (int line = 2; line < 20; ++line) {
            double ink = 0;
            const double middle = (10.5 + line * kEach - 50 * std::sin(angle)) * kScale;
            for (int x = int(middle) - 2; x <= int(middle) + 2; ++x) {
                ink += qAlpha(picture.pixel(x, row)) / 255.0;
            }
            EXPECT_NEAR(ink, kScale, 0.09) << "line " << line << ", turned by " << angle;
        }
    }
}

}  // namespace
}  // namespace tweenery::test
