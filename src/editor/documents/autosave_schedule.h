#pragma once

#include <optional>

namespace tweenery {

/// When an open project saves itself: as soon as its user rests after a change, while work goes on
/// every half minute, and never in the middle of an edit. Times are seconds of one clock.
class AutosaveSchedule {
 public:
    static constexpr double kRest = 2;
    /// From the first unsaved change on. A second less than what may be lost is left for writing.
    static constexpr double kLongest = 29;
    /// After a save that failed.
    static constexpr double kRetry = 10;
    /// While a gesture holds up a save that is due.
    static constexpr double kGestureLook = 0.25;

    /// `isDue`: save now. Else there is nothing to do for `seconds`; nullopt: until the next
    /// change.
    struct Look {
        bool isDue = false;
        std::optional<double> seconds;
    };

    void noteChange(double now);
    /// All changes so far are in a snapshot that is being written.
    void noteTaken();
    /// Writing it failed.
    void noteFailed(double now) { m_retry = now + kRetry; }
    /// `isInEdit`: a gesture or an edit is under way, so that a save has to wait.
    Look look(double now, bool isInEdit) const;

 private:
    struct Changes {
        double first = 0;
        double last = 0;
    };
    std::optional<Changes> m_changes;  // that are in no snapshot
    std::optional<double> m_retry;

    std::optional<double> dueTime() const;
};

}  // namespace tweenery
