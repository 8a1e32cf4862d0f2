#pragma once

#include <cstdint>

namespace tweenery {

/// What an edit writes to, or what is shown: the setup state, or the selected animation at a time.
class EditTime {
 public:
    static constexpr EditTime setup() { return {}; }
    /// `timeInMS`: milliseconds from the animation's start, 0 or more.
    static constexpr EditTime at(int32_t timeInMS) { return {timeInMS}; }

    constexpr bool isSetup() const { return m_isSetup; }
    /// Milliseconds; 0 for the setup state.
    constexpr int32_t timeInMS() const { return m_timeInMS; }
    friend constexpr bool operator==(EditTime, EditTime) = default;

 private:
    bool m_isSetup = true;
    int32_t m_timeInMS = 0;

    constexpr EditTime() = default;
    constexpr EditTime(int32_t timeInMS) : m_isSetup(false), m_timeInMS(timeInMS) {}
};

}  // namespace tweenery
