#include "base/media_clock.h"

#include <chrono>

namespace tweenery {

double SteadyMediaClock::now() const {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceStart).count();
}

}  // namespace tweenery
