#pragma once

#include <array>
#include <cstdint>

#include "model/properties/element_values.h"
#include "model/properties/packed_keyframes.h"
#include "model/properties/property_type.h"
#include "model/properties/property_value.h"

namespace tweenery {

class PCKeyedPropertyTimeline;
class TimelineOwner;

/// Answers an element's timelines at a time from memory that lies together: where their keyframes
/// are, and the spans around the time last asked for, where the next one mostly lies too. The
/// element drops it when its setup state, a timeline, or what is attached changes. Main thread
/// only.
class ElementSampler {
 public:
    /// The element outlives it, and keeps the timelines that are attached to it.
    using Timelines = std::array<const PCKeyedPropertyTimeline*, kElementTimelineCount>;
    ElementSampler(const TimelineOwner& element, const Timelines& attached);

    ElementValues valuesAt(int32_t timeInMS);
    /// Absolute; 0 without a timeline.
    float opacityAt(int32_t timeInMS);
    float rotationAt(int32_t timeInMS);
    QPointF scaleAt(int32_t timeInMS);
    QPointF translationAt(int32_t timeInMS);
    /// Null or empty without a timeline. Good until the next call.
    const QString& imageAt(int32_t timeInMS);
    const QStringList& childrenAt(int32_t timeInMS);

 private:
    struct Track {
        const PCKeyedPropertyTimeline* timeline = nullptr;
        PackedKeyframes keyframes;
    };
    /// What a keyframe of a property that only jumps holds from its time until the next.
    template <typename Value>
    struct HeldSpan {
        int32_t from = 0;
        int32_t until = 0;
        Value value;
        const PropertyValue* objects = nullptr;  // beside the keyframes, where any is no number
        bool holds(int32_t timeInMS) const { return timeInMS >= from && timeInMS < until; }
    };

    // What playback touches comes first, in few cache lines.
    std::array<NumberSpan, 6> m_numbers;
    HeldSpan<QString> m_image;
    HeldSpan<QStringList> m_children;
    // A bit for each slot: whose timeline repeats; whose is of another element or property, so that
    // only the timeline itself knows.
    uint8_t m_repeating = 0;
    uint8_t m_foreign = 0;
    const TimelineOwner& m_element;
    std::array<Track, kElementTimelineCount> m_tracks;

    static bool has(uint8_t bits, size_t slot) { return (bits >> slot & 1) != 0; }
    int32_t effectiveTime(size_t slot, int32_t timeInMS) const;
    float number(size_t index, int32_t timeInMS);
    template <typename Value>
    const Value& held(size_t slot, HeldSpan<Value>& span, int32_t timeInMS);
    void moveTo(int32_t timeInMS);
    void moveNumber(size_t index, size_t keyframe);
    template <typename Value>
    void moveHeld(size_t slot, HeldSpan<Value>& span, size_t keyframe) const;
};

}  // namespace tweenery
