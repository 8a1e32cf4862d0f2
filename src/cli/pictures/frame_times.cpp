#include "cli/pictures/frame_times.h"

#include <cmath>
#include <limits>

#include "base/errors.h"
#include "model/properties/course.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

Course courseOf(const PCProject& project) {
    Course course;
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        for (const PCPropertyType type : elementTimelineTypes()) {
            if (const auto timeline = element->timeline(type)) {
                course.add(timeline->durationInMS(), timeline->repeatBehavior());
            }
        }
    }
    return course;
}

// The first time behind the range.
int64_t endOf(const FrameRange& range, const PCProject& project) {
    if (range.to) { return int64_t{*range.to} + 1; }
    if (const int64_t length = lengthOfLoopInMS(range, project)) { return range.from + length; }
    const Course course = courseOf(project);
    return std::max<int64_t>(range.from, course.endInMS()) + 1;
}

}  // namespace

int64_t loopPeriodInMS(const PCProject& project) {
    return courseOf(project).wholePeriodInMS();
}

int64_t lengthOfLoopInMS(const FrameRange& range, const PCProject& project) {
    const Course course = courseOf(project);
    const int64_t period = course.wholePeriodInMS();
    return !range.to && period >= course.endInMS() ? period : 0;
}

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
