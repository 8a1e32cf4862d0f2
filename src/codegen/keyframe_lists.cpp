#include "codegen/keyframe_lists.h"

namespace tweenery {

void KeyframeLists::clear() {
    m_values.clear();
    m_times.clear();
    m_timingFunctions.clear();
    m_valueCuts.clear();
    m_timeCuts.clear();
    m_timingFunctionCuts.clear();
    m_entries = 0;
}

void KeyframeLists::appendTime(float fraction, PCEasingMode easing, bool isLast) {
    // The first value has no timing function: a function governs the span that arrives at a value.
    const bool isFirst = m_times.empty();
    m_provider.codeForBoxedNumber(m_times, fraction);
    if (!isFirst) {
        const TimingFunctionCode& function = timingFunctionCode(easing);
        m_timingFunctions += function.variable;
        m_easingModesNeeded.set(easing > 0 && easing <= 6 ? static_cast<size_t>(easing) : 0);
    }
    if (isLast) { return; }
    m_values += ", ";
    m_times += ", ";
    if (!isFirst) { m_timingFunctions += ", "; }
    ++m_entries;
    if (m_entries % kEntriesOfPart == 0) {
        m_valueCuts.push_back(m_values.size());
        m_timeCuts.push_back(m_times.size());
    }
    if (m_entries % kEntriesOfPart == 1 && m_entries > 1) {
        m_timingFunctionCuts.push_back(m_timingFunctions.size());
    }
}

}  // namespace tweenery
