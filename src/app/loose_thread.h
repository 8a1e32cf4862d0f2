#pragma once

#include <functional>
#include <memory>

namespace tweenery {

/// A thread for work that a disk may never end, such as looking into a folder of a network that is
/// gone. Nobody waits for it; once this object has gone, nothing that it tells arrives.
class LooseThread {
 public:
    using Call = std::function<void()>;
    /// Has the call made by the event loop of the thread that made the LooseThread. False when that
    /// has lost interest, and the work should end.
    using Tell = std::function<bool(Call)>;

    /// Starts `work`, which throws nothing and owns all that it uses.
    explicit LooseThread(std::function<void(const Tell&)> work);
    ~LooseThread();
    LooseThread(const LooseThread&) = delete;
    LooseThread& operator=(const LooseThread&) = delete;

 private:
    struct Listener;
    std::shared_ptr<Listener> m_listener;
};

}  // namespace tweenery
