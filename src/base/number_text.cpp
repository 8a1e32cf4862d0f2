#include "base/number_text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "base/errors.h"

namespace tweenery {

namespace {

// The longest finite double has a sign, 309 digits before the point and here at most 9 behind it.
using FixedBuffer = std::array<char, 320>;

std::string_view textIn(const FixedBuffer& buffer, std::to_chars_result result) {
    assertContract(result.ec == std::errc(), QStringLiteral("a number outgrew its buffer"));
    return {buffer.data(), static_cast<size_t>(result.ptr - buffer.data())};
}

template <typename Number>
std::string shortest(Number value) {
    // Plain digits as long as 17 of them are enough, as the C library's %g has it.
    const Number magnitude = std::fabs(value);
    const bool isPlain = magnitude == 0 || (magnitude >= Number(1e-5) && magnitude < Number(1e16));
    FixedBuffer buffer;
    char* const end = buffer.data() + buffer.size();
    return std::string(
        textIn(buffer, isPlain ? std::to_chars(buffer.data(), end, value, std::chars_format::fixed)
                               : std::to_chars(buffer.data(), end, value)));
}

std::string withPoint(std::string text) {
    const bool isWhole = text.find_first_not_of("-0123456789") == std::string::npos;
    return isWhole ? text + ".0" : text;
}

}  // namespace

std::string fixedText(double value, int decimals) {
    std::string text;
    appendFixed(text, value, decimals);
    return text;
}

void appendFixed(std::string& out, double value, int decimals) {
    assertContract(decimals >= 0 && decimals <= 9,
                   QStringLiteral("0 to 9 decimals can be printed"));
    FixedBuffer buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): to_chars fills it
    out += textIn(buffer, std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                        std::chars_format::fixed, decimals));
}

void appendThreeDecimals(std::string& out, float value) {
    const double thousandths = std::fabs(static_cast<double>(value)) * 1000;
    if (!(thousandths < 1e15)) {
        appendFixed(out, static_cast<double>(value), 3);
        return;
    }
    auto rounded = static_cast<uint64_t>(thousandths);
    const double rest = thousandths - static_cast<double>(rounded);
    if (rest > 0.5 || (rest == 0.5 && rounded % 2 == 1)) { ++rounded; }
    std::array<char, 24> buffer{};
    char* text = buffer.data();
    if (std::signbit(value)) { *text++ = '-'; }
    text = std::to_chars(text, buffer.data() + buffer.size(), rounded / 1000).ptr;
    *text++ = '.';
    *text++ = static_cast<char>('0' + rounded / 100 % 10);
    *text++ = static_cast<char>('0' + rounded / 10 % 10);
    *text++ = static_cast<char>('0' + rounded % 10);
    out.append(buffer.data(), text);
}

std::string shortestText(double value) {
    return shortest(value);
}

std::string shortestText(float value) {
    return shortest(value);
}

std::string decimalText(double value) {
    return withPoint(shortest(value));
}

std::string decimalText(float value) {
    return withPoint(shortest(value));
}

}  // namespace tweenery
