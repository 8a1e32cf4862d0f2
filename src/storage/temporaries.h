#pragma once

#include <chrono>

namespace tweenery {

/// Stands for a file or folder that is on disk only while it is worked on, from before it is made
/// until after it is gone. May be used from any thread.
class Temporary {
 public:
    /// Throws InputError once the program has been asked to stop.
    Temporary();
    ~Temporary();
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;
};

/// Has the work on temporaries end where it is, as after an error, and allows no new one. What has
/// taken its place already stays there, whole.
void stopTemporaries();
/// Throws InputError after stopTemporaries().
void requireNotStopped();
/// Waits until no temporary is left, at most that long; false when one still is.
bool waitForTemporaries(std::chrono::milliseconds longest);

}  // namespace tweenery
