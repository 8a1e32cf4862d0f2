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
    explicit KeyframeLists(const PCLanguageCodeProvider& provider) : m_provider(provider) {}

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
    const ListCuts& valueCuts() const { return m_valueCuts; }
    const ListCuts& timeCuts() const { return m_timeCuts; }
    const ListCuts& timingFunctionCuts() const { return m_timingFunctionCuts; }
    /// Those in all lists so far.
    EasingModes easingModesNeeded() const { return m_easingModesNeeded; }

 private:
    void clear();
    /// Completes an entry whose value has just been appended.
    void appendTime(float fraction, PCEasingMode easing, bool isLast);

    const PCLanguageCodeProvider& m_provider;
    std::string m_values;
    std::string m_times;
    std::string m_timingFunctions;
    ListCuts m_valueCuts;
    ListCuts m_timeCuts;
    ListCuts m_timingFunctionCuts;
    size_t m_entries = 0;
    EasingModes m_easingModesNeeded;
};

template <class AppendValue, class AppendStartValue>
void KeyframeLists::populate(const PCKeyedPropertyTimeline& timeline, AppendValue appendValue,
                             AppendStartValue appendStartValue) {
    clear();
    const size_t count = timeline.keyframesCount();
    const auto duration = static_cast<float>(timeline.durationInMS());
    const auto justBefore = [&](size_t i) {
        return static_cast<float>((timeline.timeOfKeyframe(i) - 0.5) /
                                  static_cast<double>(duration));
    };
    if (count > 0 && timeline.timeOfKeyframe(0) > 0) {
        appendStartValue();
        appendTime(0, PCEasingModeLinear, false);
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
        const auto time = static_cast<float>(timeline.timeOfKeyframe(i));
        appendTime(duration == 0 ? 0 : time / duration, easing, i + 1 == count);
    }
}

}  // namespace tweenery
