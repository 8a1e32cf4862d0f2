#pragma once

#include <QImage>
#include <QStringView>
#include <cstddef>
#include <optional>
#include <vector>

namespace tweenery {

/// What of a layer an animation can change.
enum class LayerProperty {
    Contents,
    Opacity,
    ZPosition,
    ScaleX,
    ScaleY,
    RotationZ,
    TranslationX,
    TranslationY,
};

/// The property of a key path such as "transform.scale.x"; nothing for paths of none.
std::optional<LayerProperty> layerPropertyForKeyPath(QStringView keyPath);

/// How a value moves through one span: a cubic Bezier from (0, 0) to (1, 1) with these inner
/// control points. The default is linear.
struct TimingFunction {
    double x1 = 0, y1 = 0, x2 = 1, y2 = 1;

    bool isLinear() const { return x1 == y1 && x2 == y2; }
    /// `progress` runs from 0 to 1; the result may leave that range.
    double heightAt(double progress) const;
};

/// The values of one property of one layer over time, in seconds of the layer's own clock. Before
/// its beginning it shows its first value, after its end its last.
///
/// `keyTimes` rise from 0 to 1, in fractions of `duration`; there are as many as `values`, or as
/// `images` for contents; `timingFunctions` has one fewer, and entry i governs the span from key
/// i to key i + 1. Images hold until the next key. Of several keys at one time the last stands.
struct KeyframeAnimation {
    LayerProperty property = LayerProperty::Opacity;
    std::vector<double> keyTimes;
    std::vector<double> values;
    std::vector<QImage> images;
    /// Pixels a point of each image; empty where the layer's own scale is good for all.
    std::vector<double> imageScales;
    std::vector<TimingFunction> timingFunctions;
    double beginTime = 0;
    /// One pass. Zero shows the last value throughout.
    double duration = 0;
    /// Passes; 0 counts as one. May be infinite.
    double repeatCount = 0;
    /// Each pass is followed by one backward.
    bool autoreverses = false;

    /// Throws AssertionFailure when the lists do not fit each other.
    void check() const;
    /// The place within one pass, 0 to 1, at a time of the layer's clock.
    double fractionAt(double seconds) const;
    /// `seconds` in the layer's clock. Contents have no number: 0.
    double valueAt(double seconds) const;
    /// Null when there is no image.
    const QImage& imageAt(double seconds) const;
    /// Of that image; nothing without scales.
    std::optional<double> imageScaleAt(double seconds) const;

 private:
    size_t keyAtOrBefore(double fraction, double seconds) const;
};

}  // namespace tweenery
