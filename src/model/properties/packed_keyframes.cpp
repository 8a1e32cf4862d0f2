#include "model/properties/packed_keyframes.h"

#include <algorithm>

namespace tweenery {
namespace {

// So few keyframes are searched by counting through them, in a few cache lines.
constexpr size_t kCounted = 32;

}  // namespace

// Without branches on the data: with random times a wrong guess would cost more than the search.
// Once a few cache lines are left, they are fetched together by counting through them, where
// halving on would wait for one after the other.
size_t PackedKeyframes::indexAtOrBefore(int32_t timeInMS) const {
    const int32_t* first = times;
    size_t length = count;
    while (length > kCounted) {
        const size_t half = length / 2;
        first += half * static_cast<size_t>(first[half] <= timeInMS);
        length -= half;
    }
    size_t atOrBefore = 0;
    for (size_t i = 0; i < length; ++i) {
        atOrBefore += static_cast<size_t>(first[i] <= timeInMS);
    }
    return static_cast<size_t>(first - times) + atOrBefore - 1;
}

void PackedKeyframes::prefetchForSearch() const {
    constexpr size_t kTimesInCacheLine = 64 / sizeof(int32_t);
    const size_t searched = std::min(size_t{count}, kCounted);
    for (size_t i = 0; i < searched; i += kTimesInCacheLine) {
        __builtin_prefetch(&times[i]);
    }
}

void NumberSpan::moveTo(const PackedKeyframes& keyframes, size_t start, int32_t propertyType,
                        float setup) {
    const PackedKeyframe* keys = keyframes.keys;
    const size_t end = start + 1;  // 0 before the first
    const bool hasStart = end > 0;
    const FactorAndOffset toAbsolute = factorAndOffset(propertyType, setup);
    m_from = hasStart ? keyframes.times[start] : 0;
    m_until = keyframes.timeAfter(start);
    m_atFrom = hasStart ? toAbsolute.absolute(keys[start].number) : setup;
    const bool stays = end == keyframes.count || keys[end].has(PackedKeyframe::kInstant);
    m_length = stays ? 0 : static_cast<float>(int64_t{m_until} - m_from);
    if (stays) { return; }

    float endValue = toAbsolute.absolute(keys[end].number);
    m_start = m_atFrom;
    if (propertyType == PCPropertyTypeOpacity) {
        m_start = std::clamp(m_start, 0.0F, 1.0F);
        endValue = std::clamp(endValue, 0.0F, 1.0F);
    }
    m_change = endValue - m_start;
    m_curve = singlePrecisionTimingTable(static_cast<PCEasingMode>(keys[end].easingMode));
    if (!hasStart) { m_atFrom = m_start + m_change * easedProgress(0, m_length, m_curve); }
}

}  // namespace tweenery
