#include "editor/documents/autosave_schedule.h"

#include <gtest/gtest.h>

namespace tweenery::test {
namespace {

struct Event {
    char what;  // change, taken, failed
    double at;
};

struct Case {
    const char* name;
    std::vector<Event> events;
    double now;
    bool isInEdit;
    bool isDue;
    std::optional<double> seconds;
};

/// A change every second.
std::vector<Event> steadyWork(double until) {
    std::vector<Event> events;
    for (double at = 0; at <= until; ++at) {
        events.push_back({'c', at});
    }
    return events;
}

TEST(AutosaveSchedule, IsDueAfterARestAndBeforeHalfAMinute) {
    const std::vector<Case> cases = {
        {"nothing changed", {}, 100, false, false, {}},
        {"just changed", {{'c', 10}}, 10, false, false, 2.0},
        {"rests", {{'c', 10}}, 11.5, false, false, 0.5},
        {"has rested", {{'c', 10}}, 12, false, true, {}},
        {"goes on", {{'c', 10}, {'c', 11.5}}, 12, false, false, 1.5},
        {"goes on for long", steadyWork(28), 28, false, false, 1.0},
        {"goes on for too long", steadyWork(29), 29, false, true, {}},
        {"in a gesture", {{'c', 10}}, 60, true, false, AutosaveSchedule::kGestureLook},
        {"in a gesture, not due", {{'c', 10}}, 11, true, false, 1.0},
        {"taken", {{'c', 10}, {'t', 12}}, 100, false, false, {}},
        {"changed since", {{'c', 10}, {'t', 12}, {'c', 12.5}}, 13, false, false, 1.5},
        {"counts from what is not taken", {{'c', 0}, {'t', 2}, {'c', 28}}, 29, false, false, 1.0},
        {"failed", {{'c', 10}, {'t', 12}, {'f', 13}}, 15, false, false, 8.0},
        {"next try", {{'c', 10}, {'t', 12}, {'f', 13}}, 23, false, true, {}},
        {"failed, changed", {{'c', 1}, {'t', 3}, {'f', 3}, {'c', 4}}, 6, false, true, {}},
        {"failed, taken again", {{'c', 1}, {'t', 3}, {'f', 3}, {'t', 13}}, 50, false, false, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        AutosaveSchedule schedule;
        for (const auto& [what, at] : c.events) {
            if (what == 'c') { schedule.noteChange(at); }
            if (what == 't') { schedule.noteTaken(); }
            if (what == 'f') { schedule.noteFailed(at); }
        }
        const auto look = schedule.look(c.now, c.isInEdit);
        EXPECT_EQ(look.isDue, c.isDue);
        EXPECT_EQ(look.seconds, c.seconds);
    }
}

}  // namespace
}  // namespace tweenery::test
