#include "cli/pictures/movie_timing.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int64_t kMost = 65535;

FrameDelay reduced(int64_t numerator, int64_t denominator) {
    const int64_t factor = std::max<int64_t>(1, std::gcd(numerator, denominator));
    return {numerator / factor, denominator / factor};
}

bool isShort(const FrameDelay& delay) {
    return delay.numerator <= kMost && delay.denominator <= kMost;
}

// 1 / 29.97 is 100 / 2997.
std::optional<FrameDelay> exactDelay(double framesPerSecond) {
    constexpr double roundingError = 1e-9;
    for (int64_t tens = 1; tens <= 10'000; tens *= 10) {
        const double frames = framesPerSecond * static_cast<double>(tens);
        if (frames < 1 || std::abs(frames - std::round(frames)) > roundingError * frames) {
            continue;
        }
        const FrameDelay delay = reduced(tens, std::llround(frames));
        if (isShort(delay)) { return delay; }
    }
    return std::nullopt;
}

int64_t beginInMS(size_t index, double framesPerSecond) {
    return std::llround(static_cast<double>(index) * 1000 / framesPerSecond);
}

}  // namespace

std::vector<FrameDelay> steadyDelays(size_t count, double framesPerSecond, int64_t lengthInMS) {
    const std::optional<FrameDelay> exact = exactDelay(framesPerSecond);
    std::vector<FrameDelay> delays;
    for (size_t i = 0; i < count; ++i) {
        const int64_t begin = beginInMS(i, framesPerSecond);
        delays.push_back(exact.value_or(reduced(beginInMS(i + 1, framesPerSecond) - begin, 1000)));
    }
    if (lengthInMS == 0) { return delays; }
    delays.back() = reduced(lengthInMS - beginInMS(count - 1, framesPerSecond), 1000);
    if (exact) {
        const int64_t before = static_cast<int64_t>(count - 1) * exact->numerator * 1000;
        const FrameDelay rest =
            reduced(lengthInMS * exact->denominator - before, 1000 * exact->denominator);
        if (isShort(rest) && rest.numerator > 0) { delays.back() = rest; }
    }
    return delays;
}

std::vector<FrameDelay> delaysBetween(const std::vector<int32_t>& times) {
    std::vector<FrameDelay> delays;
    for (size_t i = 1; i < times.size(); ++i) {
        if (times[i] <= times[i - 1]) {
            throw InputError(u"--at"_s, u"has to ascend for an animated picture"_s);
        }
        delays.push_back(reduced(times[i] - times[i - 1], 1000));
    }
    delays.push_back(delays.empty() ? FrameDelay{1, 1} : delays.back());
    return delays;
}

std::vector<int> delaysInHundredths(const std::vector<FrameDelay>& delays, const QString& path) {
    std::vector<int> hundredths;
    double seconds = 0;
    int64_t begin = 0;
    for (const FrameDelay& delay : delays) {
        seconds += delay.inSeconds();
        const int64_t end = std::llround(seconds * 100);
        if (end == begin) {
            throw InputError(path,
                             u"would have frames too short for the 10 ms that a GIF counts "
                             u"in; a lower --fps makes them longer"_s);
        }
        if (end - begin > kMost) {
            throw InputError(
                path, u"would have a frame longer than the %1 ms of a GIF"_s.arg(kMost * 10));
        }
        hundredths.push_back(static_cast<int>(end - begin));
        begin = end;
    }
    return hundredths;
}

bool areWholeHundredths(const std::vector<FrameDelay>& delays) {
    return std::all_of(delays.begin(), delays.end(), [](const FrameDelay& delay) {
        return 100 * delay.numerator % delay.denominator == 0;
    });
}

void requireShortFractions(const std::vector<FrameDelay>& delays, const QString& path) {
    for (const FrameDelay& delay : delays) {
        if (!isShort(delay)) {
            throw InputError(path,
                             u"would have a frame of %1/%2 s, which does not fit into 16 bits"_s
                                 .arg(delay.numerator)
                                 .arg(delay.denominator));
        }
    }
}

}  // namespace tweenery
