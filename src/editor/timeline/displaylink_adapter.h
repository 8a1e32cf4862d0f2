#pragma once

#include <QString>
#include <cstdint>
#include <functional>

#include "base/media_clock.h"
#include "base/ports.h"

namespace tweenery {

/// The source of frames: calls its target once for every `frameInterval` refreshes of the display
/// while it is not paused. It has no thread and no event loop. Its driver calls tick() at each
/// refresh, on the thread that the target lives on; a test calls it when it likes.
class PCDisplaylinkAdapter {
 public:
    using Target = std::function<void()>;

    /// Paused, with a frame interval of 1. The clock and the log must outlive the adapter.
    PCDisplaylinkAdapter(const MediaClock& clock, LogPort& log, Target target);

    /// Refreshes per call of the target.
    int64_t frameInterval() const { return m_frameInterval; }
    /// Throws AssertionFailure below 1.
    void setFrameInterval(int64_t refreshes);
    /// Refreshes since the last call of the target.
    int64_t internalFrameCount() const { return m_internalFrameCount; }

    bool isPaused() const { return m_isPaused; }
    /// False starts counting anew.
    void setPaused(bool paused);
    /// Pauses, and lets go of the target for good.
    void invalidate();
    /// Seconds between the last two refreshes since the start; 0 before the second.
    double duration() const { return m_refreshPeriod; }

    /// One refresh of the display. Nothing happens while paused.
    void tick();

    // There is no run loop to add to, and refreshes carry no time of their own: each of these only
    // logs that it is not implemented.

    void addToRunLoop(const QString& mode);
    void removeFromRunLoop(const QString& mode);
    /// Always 0.
    double timestamp() const;

 private:
    const MediaClock& m_clock;
    LogPort& m_log;
    int64_t m_frameInterval = 1;
    Target m_target;
    int64_t m_internalFrameCount = 0;
    bool m_isPaused = true;
    bool m_hasTicked = false;
    double m_lastRefresh = 0;
    double m_refreshPeriod = 0;

    void measureRefresh();
    void warnNotImplemented(const QString& method) const;
};

}  // namespace tweenery
