#include "codegen/printed_key_times.h"

#include <algorithm>
#include <cmath>

#include "model/properties/easing.h"
#include "model/properties/timing_tables.h"

namespace tweenery {

namespace {

// No easing mode rises faster than this.
constexpr double kSteepestEasing = 2.5;
// 32-bit fractions are no closer to a time.
constexpr double kUnnoticeableShiftInMS = 1e-3;

// As the text has it: of a tie, the even one. What is added leaves no bits behind the point.
double printed(float keyTime) {
    constexpr double wholeNumbersOnly = 0x1p52;
    return (static_cast<double>(keyTime) * 1000 + wholeNumbersOnly - wholeNumbersOnly) / 1000;
}

// By the tables that the model evaluates with, which is close enough to judge by.
double heightOfEasing(PCEasingMode mode, double progress) {
    const TimingTable* table = timingTableForEasingMode(mode);
    if (!table) { return progress; }
    const auto frame = static_cast<size_t>(progress * static_cast<double>(table->size()) + 0.5);
    return frame < table->size() ? (*table)[frame] : 1;
}

// The way from the keyframe before to one keyframe, in fractions of the duration.
struct Span {
    double start = 0;
    double end = 0;
    PCEasingMode easing = PCEasingModeLinear;

    // The share of the change that has happened at a fraction.
    double heightAt(double fraction) const {
        if (fraction >= end) { return 1; }
        if (fraction <= start) { return 0; }
        return heightOfEasing(easing, (fraction - start) / (end - start));
    }
};

class LossFinder {
 public:
    LossFinder(const PCKeyedPropertyTimeline& timeline, double leastShare)
        : m_timeline(timeline),
          m_duration(static_cast<float>(timeline.durationInMS())),
          m_first(timeline.timeOfKeyframe(0) > 0 ? 0 : 1),
          m_leastShare(leastShare) {}

    std::optional<KeyTimeLoss> find() {
        for (size_t i = m_first; i < m_timeline.keyframesCount(); ++i) {
            lookAt(i);
        }
        return m_loss;
    }

 private:
    const PCKeyedPropertyTimeline& m_timeline;
    const float m_duration;
    const size_t m_first;  // the first keyframe that a span leads up to
    double m_leastShare;
    std::optional<KeyTimeLoss> m_loss;

    float fraction(size_t index) const {
        return static_cast<float>(m_timeline.timeOfKeyframe(index)) / m_duration;
    }
    double fractionOfTime(double timeInMS) const {
        return timeInMS / static_cast<double>(m_duration);
    }
    float startFraction(size_t index) const { return index > 0 ? fraction(index - 1) : 0; }
    PCEasingMode easing(size_t index) const { return m_timeline.easingModeOfKeyframe(index); }
    // Where the value before a jump is shown for the last time.
    double holdEnd(size_t index) const {
        return fractionOfTime(m_timeline.timeOfKeyframe(index) - 0.5);
    }
    Span printedSpan(size_t index) const {
        const bool isJump = m_timeline.keyframeIsInstant(index);
        const float start = isJump ? static_cast<float>(holdEnd(index)) : startFraction(index);
        return {printed(start), printed(fraction(index)), easing(index)};
    }
    // How much the value changes up to a keyframe; values that are no numbers change by 1.
    double change(size_t index) const {
        if (isFloatProperty(m_timeline.propertyType())) {
            const float before = index > 0 ? m_timeline.floatValueOfKeyframeAtIndex(index - 1)
                                           : floatOfValue(m_timeline.setupValue());
            return static_cast<double>(
                std::abs(m_timeline.floatValueOfKeyframeAtIndex(index) - before));
        }
        const PropertyValue before =
            index > 0 ? m_timeline.storedValueOfKeyframe(index - 1) : m_timeline.setupValue();
        return valuesEqual(before, m_timeline.storedValueOfKeyframe(index)) ? 0 : 1;
    }

    void lookAt(size_t index) {
        const bool isJump = m_timeline.keyframeIsInstant(index);
        const auto start = static_cast<double>(startFraction(index));
        const auto end = static_cast<double>(fraction(index));
        const Span exact{isJump ? holdEnd(index) : start, end, easing(index)};
        const Span shown = printedSpan(index);
        const double shift =
            std::max(std::abs(shown.start - exact.start), std::abs(shown.end - exact.end));
        const double shiftInMS = shift * static_cast<double>(m_duration);
        if (shiftInMS < kUnnoticeableShiftInMS) { return; }
        const double range = change(index);
        if (!(range > 0)) { return; }
        const double own = isJump ? lossOfJump(index, shown) : lossOfTween(exact, shown, shift);
        const double share = std::max(own, changeOfNeighbours(index, start, end) / range);
        if (share > m_leastShare) {
            m_leastShare = share;
            m_loss = {share, shiftInMS};
        }
    }
    // The whole milliseconds around a jump are what can be wrong.
    double lossOfJump(size_t index, const Span& shown) const {
        const double time = m_timeline.timeOfKeyframe(index);
        const double late = 1 - shown.heightAt(fractionOfTime(time));
        const double early = shown.heightAt(fractionOfTime(time - 1));
        return std::max(std::abs(late), std::abs(early));
    }
    double lossOfTween(const Span& exact, const Span& shown, double shift) const {
        if (shift * kSteepestEasing <= m_leastShare * (exact.end - exact.start)) { return 0; }
        double share = 0;
        for (const double at :
             {exact.start, shown.start, (exact.start + exact.end) / 2, shown.end, exact.end}) {
            share = std::max(share, std::abs(exact.heightAt(at) - shown.heightAt(at)));
        }
        return share;
    }
    // What the spans before and after, printed late and early, add to the value in the whole
    // milliseconds after `start` up to `end`.
    double changeOfNeighbours(size_t index, double start, double end) const {
        double most = 0;
        if (index > m_first) {
            const double arrived = printedSpan(index - 1).heightAt(start + fractionOfTime(1));
            if (arrived != 1) { most = std::abs(1 - arrived) * change(index - 1); }
        }
        if (index + 1 < m_timeline.keyframesCount()) {
            const double early = std::abs(printedSpan(index + 1).heightAt(end));
            if (early > 0) { most = std::max(most, early * change(index + 1)); }
        }
        return most;
    }
};

}  // namespace

std::optional<KeyTimeLoss> largestKeyTimeLoss(const PCKeyedPropertyTimeline& timeline,
                                              double leastShare) {
    if (timeline.durationInMS() <= 0) { return std::nullopt; }
    return LossFinder(timeline, leastShare).find();
}

}  // namespace tweenery
