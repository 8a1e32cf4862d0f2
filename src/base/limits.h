#pragma once

#include <QString>
#include <cstdint>

namespace tweenery {

/// How much a package may ask for, in one place: far more than what people make (100,000 elements,
/// 1,000,000 keyframes, 1 GB of artwork), and so little that a package of 10 MB which was made to
/// do harm costs no verb more than 10 seconds and 1 GB of memory.
namespace limits {

// Reading.
inline constexpr int64_t kBytesOfEntry = int64_t{1} << 30;
inline constexpr int64_t kBytesReadInAll = int64_t{4} << 30;
/// Bytes that a file system makes up, because nothing is stored for them.
inline constexpr int64_t kBytesOfHolesInAll = int64_t{16} << 20;

// Names: of elements, animations, images; the text behind any key of an archive.
inline constexpr int64_t kLengthOfText = 500;

// Pictures. A pixel with 16 bits a sample counts twice, and so does each further dozen of scans.
inline constexpr int kSideOfPicture = 16384;
inline constexpr int64_t kPixelsOfPicture = 64'000'000;
inline constexpr int64_t kScansOfPicture = 120;
inline constexpr int64_t kScansForOnePass = 12;
inline constexpr int64_t kPixelsDecodedAtOnce = 64'000'000;
/// Of all pictures that are kept: so many, and some more for each byte that they take encoded.
inline constexpr int64_t kPixelsInAll = 100'000'000;
inline constexpr int64_t kMorePixelsForAByte = 4;

/// Painted by `render` in all pictures of a package, or in each of those whose times the user
/// asked for, at a scale of 1. A pixel counts as often as something covers it.
inline constexpr int64_t kPixelsPainted = 10'000'000'000;
/// To store a pixel of a picture takes as long as to paint so many.
inline constexpr int64_t kPixelsToStoreOne = 16;
/// To place an element at a time takes as long as to paint so many.
inline constexpr int64_t kPixelsToPlaceElement = 1500;

// Export.
inline constexpr int64_t kSlicedValuesInAll = 10'000'000;
/// So often a name that is taken gets one more "2"; then a number.
inline constexpr int kRepeatedTwos = 16;

// Results on standard output.
inline constexpr int64_t kBytesOfOutput = int64_t{512} << 20;

}  // namespace limits

/// "has 1200 scans, more than the 120 that are allowed"
inline QString beyondLimit(const QString& what, int64_t value, int64_t limit) {
    return QStringLiteral("%1: %2, more than the %3 that are allowed")
        .arg(what, QString::number(value), QString::number(limit));
}

}  // namespace tweenery
