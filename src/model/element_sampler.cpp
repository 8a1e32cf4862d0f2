#include "model/element_sampler.h"

#include "model/keyed_property_timeline.h"

namespace tweenery {
namespace {

// The number spans; what each is of; its slot among the element's timelines.
enum NumberIndex : size_t {
    kOpacity,
    kRotation,
    kScaleX,
    kScaleY,
    kTranslationX,
    kTranslationY,
    kNumbersCount
};
constexpr std::array<PCPropertyType, kNumbersCount> kNumberTypes{
    PCPropertyTypeOpacity, PCPropertyTypeZRotation,    PCPropertyTypeScaleX,
    PCPropertyTypeScaleY,  PCPropertyTypeTranslationX, PCPropertyTypeTranslationY};
constexpr std::array<size_t, kNumbersCount> kNumberSlots{1, 2, 4, 5, 6, 7};
constexpr size_t kImageSlot = 0;
constexpr size_t kChildrenSlot = 3;

QPointF pointOf(float x, float y) {
    return {static_cast<double>(x), static_cast<double>(y)};
}

}  // namespace

ElementSampler::ElementSampler(const TimelineOwner& element, const Timelines& attached)
    : m_element(element) {
    for (size_t slot = 0; slot < m_tracks.size(); ++slot) {
        const PCPropertyType type = elementTimelineTypes()[slot];
        const PCKeyedPropertyTimeline* timeline = attached[slot];
        if (!timeline) { continue; }
        m_tracks[slot] = {timeline, timeline->packedKeyframes()};
        const auto bit = static_cast<uint8_t>(1U << slot);
        const bool isForeign = timeline->owner() != &element || timeline->propertyType() != type;
        if (isForeign) { m_foreign |= bit; }
        if (timeline->repeatBehavior() != PCRepeatBehaviorNever) { m_repeating |= bit; }
    }
    const auto objectsOf = [this](size_t slot) {
        const PCKeyedPropertyTimeline* timeline = m_tracks[slot].timeline;
        return timeline && !has(m_foreign, slot) ? timeline->valueObjects() : nullptr;
    };
    m_image.objects = objectsOf(kImageSlot);
    m_children.objects = objectsOf(kChildrenSlot);
}

inline int32_t ElementSampler::effectiveTime(size_t slot, int32_t timeInMS) const {
    if (has(m_repeating, slot)) {
        return m_tracks[slot].timeline->effectiveMillisecondsForTimeInMS(timeInMS);
    }
    return PCKeyedPropertyTimeline::wholeMilliseconds(static_cast<float>(timeInMS));
}

inline float ElementSampler::number(size_t index, int32_t timeInMS) {
    const int32_t time = effectiveTime(kNumberSlots[index], timeInMS);
    const NumberSpan& span = m_numbers[index];
    if (span.holds(time)) { return span.valueAt(time); }
    const Track& track = m_tracks[kNumberSlots[index]];
    if (!track.timeline) { return 0; }
    if (has(m_foreign, kNumberSlots[index])) {
        return track.timeline->floatValueAtTimeInMS(timeInMS);
    }
    moveNumber(index, track.keyframes.indexAtOrBefore(time));
    return span.valueAt(time);
}

void ElementSampler::moveNumber(size_t index, size_t keyframe) {
    const Track& track = m_tracks[kNumberSlots[index]];
    if (!track.timeline || has(m_foreign, kNumberSlots[index])) { return; }
    m_numbers[index].moveTo(track.keyframes, keyframe, kNumberTypes[index],
                            m_element.setupNumberForPropertyType(kNumberTypes[index]));
}

template <typename Value>
inline const Value& ElementSampler::held(size_t slot, HeldSpan<Value>& span, int32_t timeInMS) {
    const int32_t time = effectiveTime(slot, timeInMS);
    if (span.holds(time)) { return span.value; }
    const Track& track = m_tracks[slot];
    moveHeld(slot, span, track.keyframes.indexAtOrBefore(time));
    if (span.holds(time)) { return span.value; }
    // No keyframe holds such a value: the timeline knows what to answer.
    const PropertyValue value =
        track.timeline ? track.timeline->valueAtTimeInMS(timeInMS) : PropertyValue();
    const Value* known = std::get_if<Value>(&value);
    span.from = span.until = 0;
    span.value = known ? *known : Value();
    return span.value;
}

template <typename Value>
void ElementSampler::moveHeld(size_t slot, HeldSpan<Value>& span, size_t keyframe) const {
    const PackedKeyframes& keyframes = m_tracks[slot].keyframes;
    if (!span.objects || keyframe >= keyframes.count) { return; }
    if (const Value* value = std::get_if<Value>(&span.objects[keyframe])) {
        span.from = keyframes.times[keyframe];
        span.until = keyframes.timeAfter(keyframe);
        span.value = *value;
    }
}

float ElementSampler::opacityAt(int32_t timeInMS) {
    return number(kOpacity, timeInMS);
}

float ElementSampler::rotationAt(int32_t timeInMS) {
    return number(kRotation, timeInMS);
}

QPointF ElementSampler::scaleAt(int32_t timeInMS) {
    return pointOf(number(kScaleX, timeInMS), number(kScaleY, timeInMS));
}

QPointF ElementSampler::translationAt(int32_t timeInMS) {
    return pointOf(number(kTranslationX, timeInMS), number(kTranslationY, timeInMS));
}

const QString& ElementSampler::imageAt(int32_t timeInMS) {
    return held(kImageSlot, m_image, timeInMS);
}

const QStringList& ElementSampler::childrenAt(int32_t timeInMS) {
    return held(kChildrenSlot, m_children, timeInMS);
}

ElementValues ElementSampler::valuesAt(int32_t timeInMS) {
    if (!m_numbers[0].holds(effectiveTime(kNumberSlots[0], timeInMS))) { moveTo(timeInMS); }
    return {.opacity = opacityAt(timeInMS),
            .rotation = rotationAt(timeInMS),
            .scale = scaleAt(timeInMS),
            .translation = translationAt(timeInMS),
            .image = &imageAt(timeInMS),
            .children = &childrenAt(timeInMS)};
}

// A time far from the last one waits for memory: for the times to search, then for the keyframes
// found. Each is fetched for all timelines together.
void ElementSampler::moveTo(int32_t timeInMS) {
    for (const Track& track : m_tracks) {
        track.keyframes.prefetchForSearch();
    }
    std::array<size_t, kElementTimelineCount> found{};
    for (size_t slot = 0; slot < found.size(); ++slot) {
        const PackedKeyframes& keyframes = m_tracks[slot].keyframes;
        found[slot] = keyframes.indexAtOrBefore(effectiveTime(slot, timeInMS));
        if (found[slot] < keyframes.count) { __builtin_prefetch(&keyframes.keys[found[slot]]); }
    }
    const auto prefetchObject = [&](size_t slot, const PropertyValue* objects) {
        const bool isThere = objects && found[slot] < m_tracks[slot].keyframes.count;
        if (isThere) { __builtin_prefetch(&objects[found[slot]]); }
    };
    prefetchObject(kImageSlot, m_image.objects);
    prefetchObject(kChildrenSlot, m_children.objects);
    for (size_t i = 0; i < kNumbersCount; ++i) {
        moveNumber(i, found[kNumberSlots[i]]);
    }
    moveHeld(kImageSlot, m_image, found[kImageSlot]);
    moveHeld(kChildrenSlot, m_children, found[kChildrenSlot]);
}

}  // namespace tweenery
