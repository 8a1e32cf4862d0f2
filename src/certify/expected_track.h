#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "model/keyed_property_timeline.h"

namespace tweenery {

/// The clock is set so far behind each millisecond, so that it does not come to lie before it.
inline constexpr double kBehindInMS = 1e-6;

/// With how many decimals an export has its values and its key times.
struct PrintedAs {
    bool roundsValues = false;
    bool roundsTimes = false;
};

/// `value` as it reads once it was printed with so many decimals.
double printedValue(double value, int decimals);

/// What the platform makes of a timeline that is exported: the same keyframes, each span by its
/// exact curve. What is left between this and the preview are the preview's own steps.
class ExpectedTrack {
 public:
    /// The timeline outlives it.
    ExpectedTrack(const PCKeyedPropertyTimeline& timeline, PrintedAs printed);

    /// Of a timeline of numbers that has keyframes; absolute.
    double valueAt(int32_t timeInMS) const;
    /// The keyframe whose value shows where values only jump; kStart for that before the first.
    static constexpr int kStart = -1;
    int keyframeAt(int32_t timeInMS) const;

 private:
    struct Key {
        double fraction;
        int keyframe;         // whose value it has
        PCEasingMode easing;  // of the span that leads to it
    };

    const PCKeyedPropertyTimeline& m_timeline;
    const PrintedAs m_printed;
    std::vector<Key> m_keys;

    void addKey(double timeInMS, int keyframe, PCEasingMode easing);
    double fractionAt(int32_t timeInMS) const;
    size_t keyAtOrBefore(double fraction) const;
    double valueOf(const Key& key) const;
};

}  // namespace tweenery
