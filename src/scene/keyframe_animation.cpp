#include "scene/keyframe_animation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/cubic_bezier.h"
#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr std::array kKeyPaths = {
    std::pair{LayerProperty::Contents, u"contents"},
    std::pair{LayerProperty::Opacity, u"opacity"},
    std::pair{LayerProperty::ZPosition, u"zPosition"},
    std::pair{LayerProperty::ScaleX, u"transform.scale.x"},
    std::pair{LayerProperty::ScaleY, u"transform.scale.y"},
    std::pair{LayerProperty::RotationZ, u"transform.rotation.z"},
    std::pair{LayerProperty::TranslationX, u"transform.translation.x"},
    std::pair{LayerProperty::TranslationY, u"transform.translation.y"},
};

// Clock times and durations come rounded to 32 bits, each by at most 2^-24 of its value: what is
// nearer to the end of a pass than that is the end.
constexpr double kClockRounding = 1.0 / (1 << 23);

}  // namespace

std::optional<LayerProperty> layerPropertyForKeyPath(QStringView keyPath) {
    for (const auto& [property, path] : kKeyPaths) {
        if (keyPath == QStringView(path)) { return property; }
    }
    return std::nullopt;
}

double TimingFunction::heightAt(double progress) const {
    return isLinear() ? progress : cubicBezierHeight(x1, y1, x2, y2, progress);
}

void KeyframeAnimation::check() const {
    const size_t count = property == LayerProperty::Contents ? images.size() : values.size();
    const bool scalesFit = imageScales.empty() || imageScales.size() == images.size();
    const bool fits = scalesFit && count > 0 && keyTimes.size() == count &&
                      timingFunctions.size() == count - 1 &&
                      std::is_sorted(keyTimes.begin(), keyTimes.end());
    assertContract(fits, u"an animation's lists do not fit each other"_s);
}

double KeyframeAnimation::fractionAt(double seconds) const {
    const double elapsed = seconds - beginTime;
    if (!(duration > 0)) { return 1; }
    if (!(elapsed > 0)) { return 0; }
    double passes = elapsed / duration;
    const double nearest = std::round(passes);
    if (std::abs(passes - nearest) <= nearest * kClockRounding) { passes = nearest; }
    const double passesInAll = std::max(repeatCount, 1.0) * (autoreverses ? 2 : 1);
    if (!(passes < passesInAll)) {
        // Held at the end of the last pass.
        const double rest = std::fmod(passesInAll, autoreverses ? 2.0 : 1.0);
        return autoreverses ? (rest > 1 ? 2 - rest : rest) : (rest == 0 ? 1 : rest);
    }
    const double phase = std::fmod(passes, autoreverses ? 2.0 : 1.0);
    return phase > 1 ? 2 - phase : phase;
}

// Key times, too, come rounded to 32 bits: what is nearer to a key than the clock, the duration and
// the key time can tell is at the key. Else an instant key that lies at a whole millisecond would
// show a frame late about half of the time.
size_t KeyframeAnimation::keyAtOrBefore(double fraction, double seconds) const {
    const double passes = duration > 0 ? std::max(0.0, (seconds - beginTime) / duration) : 0;
    const double rounding = 1.5 * kClockRounding * passes;
    const auto after = std::upper_bound(keyTimes.begin(), keyTimes.end(), fraction + rounding);
    return after == keyTimes.begin() ? 0 : static_cast<size_t>(after - keyTimes.begin()) - 1;
}

double KeyframeAnimation::valueAt(double seconds) const {
    if (values.empty()) { return 0; }
    const double fraction = fractionAt(seconds);
    const size_t key = keyAtOrBefore(fraction, seconds);
    if (key + 1 >= values.size() || fraction <= keyTimes[key]) { return values[key]; }
    const double progress = (fraction - keyTimes[key]) / (keyTimes[key + 1] - keyTimes[key]);
    const double height = timingFunctions[key].heightAt(progress);
    return values[key] + (values[key + 1] - values[key]) * height;
}

const QImage& KeyframeAnimation::imageAt(double seconds) const {
    static const QImage none;
    return images.empty() ? none : images[keyAtOrBefore(fractionAt(seconds), seconds)];
}

std::optional<double> KeyframeAnimation::imageScaleAt(double seconds) const {
    if (imageScales.empty()) { return std::nullopt; }
    return imageScales[keyAtOrBefore(fractionAt(seconds), seconds)];
}

}  // namespace tweenery
