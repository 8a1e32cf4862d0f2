#include "cli/pictures/frame_times.h"

#include <cmath>
#include <limits>
#include <numeric>

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Loops of different lengths meet again after a time that may be far away: beyond this one period
// of the longest has to do.
constexpr int64_t kLongestPeriodInMS = 10 * 60 * 1000;

// What the timelines of a selected animation have in common.
struct Course {
    int64_t endInMS = 0;            // of those that do not repeat
    int64_t longestPeriodInMS = 0;  // of those that do; 0: none does
    int64_t periodInMS = 1;         // of them together

    void add(const PCKeyedPropertyTimeline& timeline) {
        const int64_t duration = timeline.durationInMS();
        if (timeline.repeatBehavior() == PCRepeatBehaviorNever || duration == 0) {
            endInMS = std::max(endInMS, duration);
            return;
        }
        const bool reverses = timeline.repeatBehavior() == PCRepeatBehaviorForeverAutoreverse;
        const int64_t period = reverses ? 2 * duration : duration;
        longestPeriodInMS = std::max(longestPeriodInMS, period);
        // Either factor is below 2^33, or no longer multiplied.
        if (periodInMS <= kLongestPeriodInMS) { periodInMS = std::lcm(periodInMS, period); }
    }
    int64_t wholePeriodInMS() const {
        if (longestPeriodInMS == 0) { return 0; }
        return periodInMS <= kLongestPeriodInMS ? periodInMS : longestPeriodInMS;
    }
};

Course courseOf(const PCProject& project) {
    Course course;
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        for (const PCPropertyType type : elementTimelineTypes()) {
            if (const auto timeline = element->timeline(type)) { course.add(*timeline); }
        }
    }
    return course;
}

// The first time behind the range.
int64_t endOf(const FrameRange& range, const PCProject& project) {
    if (range.to) { return int64_t{*range.to} + 1; }
    const Course course = courseOf(project);
    const int64_t period = course.wholePeriodInMS();
    if (period > 0 && period >= course.endInMS) { return range.from + period; }
    return std::max<int64_t>(range.from, course.endInMS) + 1;
}

}  // namespace

std::vector<int32_t> frameTimes(const FrameRange& range, const PCProject& project) {
    const int64_t end =
        std::min<int64_t>(endOf(range, project), std::numeric_limits<int32_t>::max());
    std::vector<int32_t> times;
    for (size_t i = 0;; ++i) {
        const double time =
            range.from + std::round(static_cast<double>(i) * 1000 / range.framesPerSecond);
        if (!(time < static_cast<double>(end))) { return times; }
        if (times.size() == kMostFrames) {
            throw InputError(u"--from and --to"_s, u"mean more than %1 frames"_s.arg(kMostFrames));
        }
        times.push_back(static_cast<int32_t>(time));
    }
}

}  // namespace tweenery
