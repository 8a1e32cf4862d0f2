#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace tweenery {

/// How long a frame shows: a fraction of a second in lowest terms.
struct FrameDelay {
    int64_t numerator = 0;
    int64_t denominator = 1;

    double inSeconds() const {
        return static_cast<double>(numerator) / static_cast<double>(denominator);
    }
};

/// When the frames of an animated picture show.
struct MovieTiming {
    std::vector<FrameDelay> delays;  // of each frame
    bool loops = false;              // forever; otherwise it plays once
};

/// The delays of `count` frames, 1 or more, at a steady rate. The last one ends at `lengthInMS`
/// after the beginning of the first, or with 0 lasts as long as the others. Fractions that would
/// not fit into 16 bits become the nearest millisecond.
std::vector<FrameDelay> steadyDelays(size_t count, double framesPerSecond, int64_t lengthInMS);

/// The delays between `times`; the last frame shows as long as the one before it, a single one for
/// a second. Throws InputError unless the times ascend.
std::vector<FrameDelay> delaysBetween(const std::vector<int32_t>& times);

/// The delays in hundredths of a second. Each frame begins at the hundredth nearest to its time, so
/// that errors do not add up. Throws InputError, naming `path`, when a frame would show for none or
/// for more than 65535 of them.
std::vector<int> delaysInHundredths(const std::vector<FrameDelay>& delays, const QString& path);

/// All are whole hundredths of a second.
bool areWholeHundredths(const std::vector<FrameDelay>& delays);

/// Throws InputError, naming `path`, when a delay does not fit into a fraction of 16 bits each.
void requireShortFractions(const std::vector<FrameDelay>& delays, const QString& path);

}  // namespace tweenery
