#include "model/properties/course.h"

#include <algorithm>
#include <numeric>

namespace tweenery {

void Course::add(int64_t durationInMS, int64_t repeatBehavior) {
    if (repeatBehavior == PCRepeatBehaviorNever || durationInMS <= 0) {
        m_endInMS = std::max(m_endInMS, durationInMS);
        return;
    }
    const bool reverses = repeatBehavior == PCRepeatBehaviorForeverAutoreverse;
    addPeriod(reverses ? 2 * durationInMS : durationInMS);
}

void Course::addPeriod(int64_t periodInMS) {
    m_longestPeriodInMS = std::max(m_longestPeriodInMS, periodInMS);
    // Either factor is below 2^33, or no longer multiplied.
    if (m_periodInMS <= kLongestPeriodInMS) { m_periodInMS = std::lcm(m_periodInMS, periodInMS); }
}

int64_t Course::wholePeriodInMS() const {
    if (m_longestPeriodInMS == 0) { return 0; }
    return m_periodInMS <= kLongestPeriodInMS ? m_periodInMS : m_longestPeriodInMS;
}

}  // namespace tweenery
