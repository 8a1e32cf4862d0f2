#pragma once

#include <cstddef>
#include <cstdint>

#include "model/properties/property_type.h"
#include "model/properties/timing_tables.h"

namespace tweenery {

/// What evaluation touches of a keyframe beside its time, eight bytes.
struct PackedKeyframe {
    enum Flag : uint8_t {
        kInstant = 1,
        kKeyall = 2,
        kRecorded = 4,
        kRecordedStart = 8,
        kRecordedEnd = 16
    };
    enum class Held : uint8_t { Nothing, Number, Other };

    float number = 0;  // 0 unless held is Number
    int16_t easingMode = 0;
    uint8_t flags = 0;
    Held held = Held::Nothing;

    bool has(Flag flag) const { return (flags & flag) != 0; }
};

/// A view of a timeline's keyframes. The times, in ms, lie by themselves, so that a search reads
/// few cache lines.
struct PackedKeyframes {
    const int32_t* times = nullptr;  // sorted
    const PackedKeyframe* keys = nullptr;
    uint32_t count = 0;

    /// The last keyframe, also of several at one time, at or before the time; the platform's
    /// not-found index (-1) before the first.
    size_t indexAtOrBefore(int32_t timeInMS) const;
    /// When the keyframe after the one at `index` is; the end of all times after the last.
    int32_t timeAfter(size_t index) const {
        return index + 1 < count ? times[index + 1] : INT32_MAX;
    }
    /// Begins to fetch what a search will read. Does nothing else.
    void prefetchForSearch() const;
};

/// How stored numbers become absolute: number x factor + offset.
struct FactorAndOffset {
    float factor = 1;
    float offset = 0;
    float absolute(float stored) const { return stored * factor + offset; }
};
/// Values nearer to 0 than 0.05 become 0.05 with their sign (0 itself becomes 0.05), so that ratios
/// to them stay finite.
inline float parsedByThreshold(float value) {
    constexpr float kNear = 0.05F;
    if (value > -kNear && value < 0) { return -kNear; }
    if (value >= 0 && value < kNear) { return kNear; }
    return value;
}
/// Of a float property with that setup value.
inline FactorAndOffset factorAndOffset(int32_t propertyType, float setup) {
    switch (propertyType) {
        case PCPropertyTypeOpacity:
        case PCPropertyTypeScaleX:
        case PCPropertyTypeScaleY:
            return {parsedByThreshold(setup), 0};
        case PCPropertyTypeZRotation:
            return {1, parsedByThreshold(setup)};
        default:
            return {1, 0};
    }
}

/// The eased share, 0 to 1 and beyond for curves that overshoot, of a segment of `length` ms of
/// which `elapsed` ms are over. From 0.9995 on a segment has ended; its curve is the nearest of the
/// table's entries, null for linear.
inline float easedProgress(float elapsed, float length, const SinglePrecisionTable* curve) {
    const float progress = elapsed / length;
    const double frame = static_cast<double>(1000.0F * progress) + 0.5;
    if (!(frame < 1000)) { return 1; }
    if (!curve) { return progress; }
    return (*curve)[frame > 0 ? static_cast<size_t>(frame) : 0];
}

/// The stretch of time around a time asked for in which one formula gives a number property's
/// absolute value: between two keyframes, before the first, or after the last. A new one holds for
/// no time.
class NumberSpan {
 public:
    /// Moves to between the keyframe at `start`, the not-found index before the first, and the
    /// next, of a float property whose `setup` value holds where no keyframe does.
    void moveTo(const PackedKeyframes& keyframes, size_t start, int32_t propertyType, float setup);

    /// True for the times, in ms, that this span answers.
    bool holds(int32_t timeInMS) const { return timeInMS >= m_from && timeInMS < m_until; }
    float valueAt(int32_t timeInMS) const {
        if (timeInMS == m_from || m_length == 0) { return m_atFrom; }
        const auto elapsed = static_cast<float>(int64_t{timeInMS} - m_from);
        return m_start + m_change * easedProgress(elapsed, m_length, m_curve);
    }

 private:
    int32_t m_from = 0;
    int32_t m_until = 0;
    float m_atFrom = 0;  // what is keyed there, which may lie beyond a share's range
    float m_start = 0;
    float m_change = 0;
    float m_length = 0;  // in ms; 0 where the value stays
    const SinglePrecisionTable* m_curve = nullptr;
};

}  // namespace tweenery
