#include "certify/expected_track.h"

#include <algorithm>
#include <cmath>

#include "base/cubic_bezier.h"
#include "base/number_text.h"
#include "model/properties/property_value.h"

namespace tweenery {

namespace {

constexpr int kDecimals = 3;

double heightOf(PCEasingMode mode, double share) {
    const auto modes = easingModes();
    const auto index = static_cast<size_t>(mode);
    const EasingMode& easing = index < modes.size() ? modes[index] : modes[0];
    return cubicBezierHeight(easing.x1, easing.y1, easing.x2, easing.y2, share);
}

}  // namespace

double printedValue(double value, int decimals) {
    return std::stod(fixedText(value, decimals));
}

ExpectedTrack::ExpectedTrack(const PCKeyedPropertyTimeline& timeline, PrintedAs printed)
    : m_timeline(timeline), m_printed(printed) {
    for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
        const auto keyframe = static_cast<int>(i);
        const int32_t time = timeline.timeOfKeyframe(i);
        const PCEasingMode easing = timeline.easingModeOfKeyframe(i);
        if (i == 0 && time > 0) { addKey(0, kStart, PCEasingModeLinear); }
        if (timeline.keyframeIsInstant(i) && !m_keys.empty()) {
            addKey(time - 0.5, keyframe - 1, easing);
        }
        addKey(time, keyframe, easing);
    }
}

void ExpectedTrack::addKey(double timeInMS, int keyframe, PCEasingMode easing) {
    const double duration = m_timeline.durationInMS();
    double fraction = duration > 0 ? timeInMS / duration : 0;
    if (m_printed.roundsTimes) {
        fraction = printedValue(static_cast<double>(static_cast<float>(fraction)), kDecimals);
    }
    m_keys.push_back({fraction, keyframe, easing});
}

double ExpectedTrack::fractionAt(int32_t timeInMS) const {
    const double duration = m_timeline.durationInMS();
    const double time = timeInMS + kBehindInMS;
    if (!(duration > 0)) { return 1; }
    const double passes = time / duration;
    if (m_timeline.repeatBehavior() == PCRepeatBehaviorNever) { return std::min(passes, 1.0); }
    const double whole = std::floor(passes);
    const double share = passes - whole;
    const bool isBackward = m_timeline.repeatBehavior() == PCRepeatBehaviorForeverAutoreverse &&
                            std::fmod(whole, 2) != 0;
    return isBackward ? 1 - share : share;
}

// Of several at one time the last.
size_t ExpectedTrack::keyAtOrBefore(double fraction) const {
    const auto after =
        std::upper_bound(m_keys.begin(), m_keys.end(), fraction,
                         [](double wanted, const Key& key) { return wanted < key.fraction; });
    return after == m_keys.begin() ? 0 : static_cast<size_t>(after - m_keys.begin()) - 1;
}

int ExpectedTrack::keyframeAt(int32_t timeInMS) const {
    return m_keys.empty() ? kStart : m_keys[keyAtOrBefore(fractionAt(timeInMS))].keyframe;
}

double ExpectedTrack::valueOf(const Key& key) const {
    const float value =
        key.keyframe == kStart
            ? m_timeline.floatValueAtTimeInMS(0)
            : m_timeline.floatValueOfKeyframeAtIndex(static_cast<size_t>(key.keyframe));
    const auto exact = static_cast<double>(value);
    return m_printed.roundsValues ? printedValue(exact, kDecimals) : exact;
}

double ExpectedTrack::valueAt(int32_t timeInMS) const {
    const double fraction = fractionAt(timeInMS);
    const size_t at = keyAtOrBefore(fraction);
    const double start = valueOf(m_keys[at]);
    if (at + 1 == m_keys.size() || fraction < m_keys[at].fraction) { return start; }
    const Key& next = m_keys[at + 1];
    const double share = (fraction - m_keys[at].fraction) / (next.fraction - m_keys[at].fraction);
    return start + (valueOf(next) - start) * heightOf(next.easing, share);
}

}  // namespace tweenery
