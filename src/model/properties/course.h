#pragma once

#include <cstdint>

#include "model/properties/repeat_behavior.h"

namespace tweenery {

/// How long the timelines of an animation run together: those that repeat meet again after a common
/// period.
class Course {
 public:
    /// Loops of different lengths meet again after a time that may be far away: beyond this one
    /// period of the longest has to do.
    static constexpr int64_t kLongestPeriodInMS = 10 * 60 * 1000;

    /// `durationInMS`, 0 or more, is the time of the last keyframe; `repeatBehavior` a
    /// PCRepeatBehavior.
    void add(int64_t durationInMS, int64_t repeatBehavior);

    /// The end of the longest one that does not repeat, in ms.
    int64_t endInMS() const { return m_endInMS; }
    /// The common period of those that repeat, there and back where they do; 0 when none does.
    int64_t wholePeriodInMS() const;

 private:
    void addPeriod(int64_t periodInMS);

    int64_t m_endInMS = 0;
    int64_t m_longestPeriodInMS = 0;
    int64_t m_periodInMS = 1;
};

}  // namespace tweenery
