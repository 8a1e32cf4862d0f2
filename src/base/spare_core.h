#pragma once

#include <cstddef>
#include <optional>
#include <utility>

namespace tweenery {

/// One of the machine's cores that is still without work, besides the one of the thread that asks.
/// Whoever starts a thread in order to use all cores takes one for it and holds it as long as the
/// thread works: then work on all cores that is begun amid such work stays in its caller, and all
/// together has no more threads than there are cores. May be used from any thread.
class SpareCore {
 public:
    /// How many cores there are, at least 1.
    static size_t all();
    /// None when all are at work.
    static std::optional<SpareCore> take();

    SpareCore(SpareCore&& other) noexcept : m_isHeld(std::exchange(other.m_isHeld, false)) {}
    SpareCore& operator=(SpareCore&& other) noexcept {
        std::swap(m_isHeld, other.m_isHeld);
        return *this;
    }
    ~SpareCore();

 private:
    SpareCore() = default;

    bool m_isHeld = true;
};

}  // namespace tweenery
