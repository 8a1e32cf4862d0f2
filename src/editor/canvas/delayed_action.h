#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tweenery {

/// Has a function called after a time, from the event loop.
using CallLater = std::function<void(std::chrono::milliseconds delay, std::function<void()> call)>;

/// One thing that is done after a pause. What was scheduled and is scheduled again, cancelled, or
/// has lost its owner, does not happen any more.
class DelayedAction {
 public:
    DelayedAction(CallLater callLater, std::chrono::milliseconds pause,
                  std::function<void()> action)
        : m_callLater(std::move(callLater)), m_pause(pause), m_action(std::move(action)) {}

    void schedule() {
        m_pending = std::make_shared<bool>();
        m_callLater(m_pause, [this, turn = std::weak_ptr<bool>(m_pending)] {
            if (turn.expired()) { return; }
            m_pending.reset();
            m_action();
        });
    }
    void cancel() { m_pending.reset(); }

 private:
    CallLater m_callLater;
    std::chrono::milliseconds m_pause;
    std::function<void()> m_action;
    std::shared_ptr<bool> m_pending;  // lives as long as the call that it stands for counts
};

}  // namespace tweenery
