#include "editor/documents/autosave_schedule.h"

#include <algorithm>

namespace tweenery {

void AutosaveSchedule::noteChange(double now) {
    if (!m_changes) { m_changes = Changes{now, now}; }
    m_changes->last = now;
}

void AutosaveSchedule::noteTaken() {
    m_changes.reset();
    m_retry.reset();
}

std::optional<double> AutosaveSchedule::dueTime() const {
    if (!m_changes) { return m_retry; }
    const double due = std::min(m_changes->last + kRest, m_changes->first + kLongest);
    return m_retry ? std::min(due, *m_retry) : due;
}

AutosaveSchedule::Look AutosaveSchedule::look(double now, bool isInEdit) const {
    const std::optional<double> due = dueTime();
    if (!due) { return {}; }
    if (now < *due) { return {false, *due - now}; }
    if (isInEdit) { return {false, kGestureLook}; }
    return {true, {}};
}

}  // namespace tweenery
