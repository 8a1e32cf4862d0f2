// Reads pictures: what their bytes tell before they are decoded, then the pixels of small ones.

#include <cstdint>

#include "base/errors.h"
#include "storage/bitmap.h"

using namespace tweenery;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr int64_t mostPixels = 100'000;
    constexpr int64_t mostScans = 200;
    const auto bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        const QSize pixels = encodedImageSize(bytes, QStringLiteral("picture"));
        withoutTextChunks(bytes);
        const bool isSmall = int64_t{pixels.width()} * pixels.height() <= mostPixels;
        if (isSmall && imageEffort(bytes).scans <= mostScans) {
            decodeArtwork(bytes, QStringLiteral("picture"));
        }
    } catch (const InputError&) {}
    return 0;
}
