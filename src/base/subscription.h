#pragma once

#include <functional>
#include <utility>

namespace tweenery {

/// A registration with somebody who tells of changes: it ends when this goes. Harmless after the
/// other side has gone. Moves, never copies.
class [[nodiscard]] Subscription {
 public:
    Subscription() = default;
    /// `end` takes the registration back; called once at most.
    explicit Subscription(std::function<void()> end) : m_end(std::move(end)) {}
    Subscription(Subscription&& other) noexcept : m_end(std::exchange(other.m_end, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            end();
            m_end = std::exchange(other.m_end, nullptr);
        }
        return *this;
    }
    ~Subscription() { end(); }

    void end() {
        if (const auto end = std::exchange(m_end, nullptr)) { end(); }
    }

 private:
    std::function<void()> m_end;
};

}  // namespace tweenery
