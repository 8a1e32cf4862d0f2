#pragma once

#include <string>

#include "codegen/language/language_code_provider.h"
#include "codegen/timing_function_code.h"
#include "model/keyed_property_timeline.h"

namespace tweenery {

/// The three comma-separated lists of a generated keyframe animation: exactly the keyframes of a
/// timeline, with a value for time 0 when the first comes later. An instant keyframe repeats the
/// value before it, half a millisecond before its time. Used again for one timeline after another.
class KeyframeLists {
 public:
    KeyframeLists(const PCLanguageCodeProvider& provider, NumberDigits digits)
        : m_provider(provider), m_digits(digits) {}

    /// Lists the keyframes of `timeline`. `appendValue(index)` puts a keyframe's value into
    /// values(), `appendStartValue()` the value at time 0.
    template <class AppendValue, class AppendStartValue>
    void populate(const PCKeyedPropertyTimeline& timeline, AppendValue appendValue,
                  AppendStartValue appendStartValue);

    std::string& values() { return m_values; }
    const std::string& values() const { return m_values; }
    const std::string& times() const { return m_times; }
    /// One fewer than values.
    const std::string& timingFunctions() const { return m_timingFunctions; }
    /// Those in all lists so far.
    EasingModes easingModesNeeded() const { return m_easingModesNeeded; }

 private:
    /// Where a key lies in a timeline: as 32-bit numbers give it, which fixed digits are printed
    /// from, and as it is.
    struct Fraction {
        float single = 0;
        double precise = 0;
    };
    /// Completes an entry whose value has just been appended.
    void appendTime(Fraction fraction, PCEasingMode easing, bool isLast);

    const PCLanguageCodeProvider& m_provider;
    const NumberDigits m_digits;
    std::string m_values;
    std::string m_times;
    std::string m_timingFunctions;
    EasingModes m_easingModesNeeded;
};

template <class AppendValue, class AppendStartValue>
void KeyframeLists::populate(const PCKeyedPropertyTimeline& timeline, AppendValue appendValue,
                             AppendStartValue appendStartValue) {
    m_values.clear();
    m_times.clear();
    m_timingFunctions.clear();
    const size_t count = timeline.keyframesCount();
    const auto duration = static_cast<float>(timeline.durationInMS());
    const auto justBefore = [&](size_t i) {
        const double start = timeline.timeOfKeyframe(i) - 0.5;
        return Fraction{static_cast<float>(start / static_cast<double>(duration)),
                        start / timeline.durationInMS()};
    };
    const auto at = [&](size_t i) {
        if (duration == 0) { return Fraction(); }
        const int32_t time = timeline.timeOfKeyframe(i);
        return Fraction{static_cast<float>(time) / duration,
                        static_cast<double>(time) / timeline.durationInMS()};
    };
    if (count > 0 && timeline.timeOfKeyframe(0) > 0) {
        appendStartValue();
        appendTime({}, PCEasingModeLinear, false);
        if (timeline.keyframeIsInstant(0)) {
            appendStartValue();
            appendTime(justBefore(0), timeline.easingModeOfKeyframe(0), false);
        }
    }
    for (size_t i = 0; i < count; ++i) {
        const PCEasingMode easing = timeline.easingModeOfKeyframe(i);
        if (i > 0 && timeline.keyframeIsInstant(i)) {
            appendValue(i - 1);
            appendTime(justBefore(i), easing, false);
        }
        appendValue(i);
        appendTime(at(i), easing, i + 1 == count);
    }
}

}  // namespace tweenery
