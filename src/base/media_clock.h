#pragma once

namespace tweenery {

/// A monotonic clock: the port through which playback learns how much time has passed. Tests
/// script it.
class MediaClock {
 public:
    virtual ~MediaClock() = default;
    /// Seconds from some fixed moment, finer than a millisecond. Never goes back.
    virtual double now() const = 0;
};

/// The system's own.
class SteadyMediaClock : public MediaClock {
 public:
    double now() const override;
};

}  // namespace tweenery
