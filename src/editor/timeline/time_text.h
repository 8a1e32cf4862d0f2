#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace tweenery {

/// What a number without a unit is.
enum class TimeUnit { Milliseconds, Seconds };

/// The time, or length, in whole milliseconds that a user has typed: "500 ms", "1.5 s", "1:02.5"
/// (minutes and seconds), or a number alone. A comma counts as a point; what lies between two
/// milliseconds goes to the nearer one. Nothing for other text, and for what is negative or no
/// 32-bit number of milliseconds.
std::optional<int32_t> timeInMSFromText(const QString& text, TimeUnit unit);

/// "500 ms".
QString textFromTimeInMS(int32_t timeInMS);

}  // namespace tweenery
