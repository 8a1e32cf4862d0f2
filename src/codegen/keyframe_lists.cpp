#include "codegen/keyframe_lists.h"

namespace tweenery {

void KeyframeLists::appendTime(Fraction fraction, PCEasingMode easing, bool isLast) {
    // The first value has no timing function: a function governs the span that arrives at a value.
    const bool isFirst = m_times.empty();
    if (m_digits == NumberDigits::AllNeeded) {
        m_provider.codeForBoxedPreciseNumber(m_times, fraction.precise);
    } else {
        m_provider.codeForBoxedNumber(m_times, fraction.single);
    }
    if (!isFirst) {
        const TimingFunctionCode& function = timingFunctionCode(easing);
        m_timingFunctions += function.variable;
        m_easingModesNeeded.set(easing > 0 && easing <= 6 ? static_cast<size_t>(easing) : 0);
    }
    if (isLast) { return; }
    m_values += ", ";
    m_times += ", ";
    if (!isFirst) { m_timingFunctions += ", "; }
}

}  // namespace tweenery
