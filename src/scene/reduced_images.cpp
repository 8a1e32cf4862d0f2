#include "scene/reduced_images.h"

#include <algorithm>
#include <cmath>

namespace tweenery {
namespace {

// Two steps make half of a side: of whole halves the one nearest to a scale may be as much as 1.4
// times too large, and lines would still come out uneven.
constexpr int kStepsToHalf = 2;

int stepsFor(double scale, int side) {
    constexpr double kLargestScale = 0.5 + 1e-6;  // half, with a rounding error
    if (!(scale <= kLargestScale)) { return 0; }
    const double stepsToOnePixel = kStepsToHalf * std::ceil(std::log2(side));
    return static_cast<int>(
        std::round(std::min(-kStepsToHalf * std::log2(scale), stepsToOnePixel)));
}

int sideAfter(int steps, int side) {
    return static_cast<int>(std::ceil(side * std::exp2(-steps / double{kStepsToHalf})));
}

// What the next smaller side is made from.
int stepsBefore(int steps) {
    return std::max(steps - (steps % kStepsToHalf == 0 ? kStepsToHalf : 1), 0);
}

}  // namespace

ReducedImages& ReducedImages::shared() {
    static ReducedImages images(qsizetype{128} << 20);
    return images;
}

QImage ReducedImages::imageFor(const QImage& image, double scaleX, double scaleY) {
    const int stepsX = stepsFor(scaleX, image.width());
    const int stepsY = stepsFor(scaleY, image.height());
    if (stepsX == 0 && stepsY == 0) { return image; }
    const std::lock_guard lock(m_mutex);
    return reduced(image, stepsX, stepsY);
}

QImage ReducedImages::reduced(const QImage& image, int stepsX, int stepsY) {
    if (stepsX == 0 && stepsY == 0) { return image; }
    const Key key{image.cacheKey(), stepsX, stepsY};
    if (const QImage* kept = m_kept.object(key)) { return *kept; }
    const QImage larger = reduced(image, stepsBefore(stepsX), stepsBefore(stepsY));
    const QSize size(sideAfter(stepsX, image.width()), sideAfter(stepsY, image.height()));
    // Downwards this averages over the area that each pixel takes.
    QImage smaller = larger.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (smaller.isNull()) { return larger; }
    m_kept.insert(key, new QImage(smaller), smaller.sizeInBytes());
    return smaller;
}

qsizetype ReducedImages::keptBytes() const {
    const std::lock_guard lock(m_mutex);
    return m_kept.totalCost();
}

}  // namespace tweenery
