#pragma once

#include "base/media_clock.h"

namespace tweenery::test {

/// Stands still until a test moves it.
class ScriptedClock : public MediaClock {
 public:
    double seconds = 0;
    double now() const override { return seconds; }
};

}  // namespace tweenery::test
