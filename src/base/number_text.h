#pragma once

#include <QString>
#include <string>

namespace tweenery {

/// `value` with exactly `decimals` (0 to 9) digits behind the point, rounding the binary value as
/// the C library does (10.25 to one decimal is 10.2), whatever the locale. Floats widen exactly.
std::string fixedText(double value, int decimals);
/// Appends the same text to `out` without an allocation of its own.
void appendFixed(std::string& out, double value, int decimals);
/// The text of appendFixed(out, value, 3), several times as fast: a float times 1000 is exact in a
/// double, so that whole numbers do the rounding.
void appendThreeDecimals(std::string& out, float value);
/// The shortest text that reads back as the same number, at most 17 significant digits of a double
/// and 9 of a float.
std::string shortestText(double value);
std::string shortestText(float value);
/// The same with a point or an exponent in it, as source code has numbers that are not whole: 2.0.
std::string decimalText(double value);
std::string decimalText(float value);

}  // namespace tweenery
