#pragma once

#include <QRect>
#include <QRectF>
#include <algorithm>
#include <cmath>

namespace tweenery {

/// The pixels that a rectangle of device coordinates reaches into, by more than a rounding error.
/// What is cut at a rectangle and the picture that holds it agree when both ask here. Beyond 2^28
/// pixels from the origin, where no picture reaches, coordinates count as 2^28,
/// and so do those that are no numbers.
inline QRect touchedPixels(const QRectF& rect) {
    constexpr double kRoundingError = 1e-6;
    const auto pixel = [](double x) {
        constexpr double kFarthest = 1 << 28;
        return static_cast<int>(std::max(-kFarthest, std::min(kFarthest, x)));
    };
    return {QPoint(pixel(std::floor(rect.left() + kRoundingError)),
                   pixel(std::floor(rect.top() + kRoundingError))),
            QPoint(pixel(std::ceil(rect.right() - kRoundingError)) - 1,
                   pixel(std::ceil(rect.bottom() - kRoundingError)) - 1)};
}

}  // namespace tweenery
