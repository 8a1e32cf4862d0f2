#pragma once

#include <istream>
#include <ostream>

namespace tweenery {

/// What a run ends with.
enum class ExitCode : int {
    Done = 0,
    BadInput = 1,
    WrongUsage = 2,
    Warnings = 3,  // exported, but with warnings, and warnings are not wanted
};

/// The streams of a run. Results go to `out` and nothing else does.
struct Console {
    std::ostream& out;
    std::ostream& err;
    std::istream& in;
    bool showsProgress = false;  // `err` is a terminal
    bool canAsk = false;         // a person sits at `in`
};

}  // namespace tweenery
