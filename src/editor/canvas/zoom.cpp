#include "editor/canvas/zoom.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tweenery {
namespace {

constexpr std::array kZoomValues = {0.05, 0.1, 0.15, 0.2, 0.25, 0.5, 0.75, 1.0, 1.25, 1.5, 1.75,
                                    2.0,  2.5, 3.0,  3.5, 4.0,  5.0, 6.0,  7.0, 8.0,  9.0, 10.0};
constexpr auto kLastIndex = static_cast<int32_t>(kZoomValues.size()) - 1;

float zoomStep(int32_t index) {
    return static_cast<float>(kZoomValues[static_cast<size_t>(std::clamp(index, 0, kLastIndex))]);
}

}  // namespace

std::span<const double> zoomValues() {
    return kZoomValues;
}

int32_t indexInZoomScaleClosestToFloat(float factor) {
    int32_t closest = 0;
    for (int32_t i = 1; i <= kLastIndex; ++i) {
        if (std::abs(zoomStep(i) - factor) < std::abs(zoomStep(closest) - factor)) { closest = i; }
    }
    return closest;
}

float zoomStepAfter(float factor) {
    return zoomStep(indexInZoomScaleClosestToFloat(factor) + 1);
}

float zoomStepBefore(float factor) {
    return zoomStep(indexInZoomScaleClosestToFloat(factor) - 1);
}

double zoomToFill(QSizeF canvasSize, QSizeF viewSize) {
    constexpr double kFilledPart = 0.95;
    if (std::floor(canvasSize.width()) == 0 || std::floor(canvasSize.height()) == 0) { return 1; }
    return std::min(viewSize.width() / canvasSize.width(),
                    viewSize.height() / canvasSize.height()) *
           kFilledPart;
}

}  // namespace tweenery
