#include "storage/image_header.h"

#include <QtEndian>
#include <array>
#include <functional>

#include "base/errors.h"
#include "base/limits.h"

namespace tweenery {

namespace {

constexpr char kPngSignature[] = "\x89PNG\r\n\x1a\n";
constexpr qsizetype kPngSignatureLength = 8;

enum JpegMarker : uint8_t {
    FirstFrame = 0xc0,  // start of frame, one for each kind of coding
    LastFrame = 0xcf,
    HuffmanTables = 0xc4,  // these three lie among the frame markers and are none
    JpegExtension = 0xc8,
    ArithmeticTables = 0xcc,
    FirstRestart = 0xd0,
    LastRestart = 0xd7,
    EndOfImage = 0xd9,
    StartOfScan = 0xda,
    Fill = 0xff,
};

template <typename Integer>
Integer bigEndianAt(const QByteArray& data, qsizetype position) {
    return qFromBigEndian<Integer>(data.constData() + position);
}

uint8_t byteAt(const QByteArray& data, qsizetype position) {
    return static_cast<uint8_t>(data[position]);
}

}  // namespace

uint32_t pngChecksum(QByteArrayView bytes) {
    static const auto table = [] {
        std::array<uint32_t, 256> entries{};
        for (uint32_t i = 0; i < entries.size(); ++i) {
            uint32_t entry = i;
            for (int bit = 0; bit < 8; ++bit) {
                entry = (entry >> 1) ^ ((entry & 1) != 0 ? 0xedb88320U : 0);
            }
            entries[i] = entry;
        }
        return entries;
    }();
    uint32_t crc = ~uint32_t{0};
    for (const char byte : bytes) {
        crc = table[(crc ^ static_cast<uint8_t>(byte)) & 0xff] ^ (crc >> 8);
    }
    return ~crc;
}

namespace {

bool isPngComplete(const QByteArray& data) {
    constexpr qsizetype frame = 12;  // length, type, checksum
    qsizetype position = kPngSignatureLength;
    while (data.size() - position >= frame) {
        const qsizetype length = bigEndianAt<uint32_t>(data, position);
        if (length > data.size() - position - frame) { return false; }
        const auto typeAndBody = QByteArrayView(data).sliced(position + 4, length + 4);
        const bool isNeeded = (typeAndBody[0] & 0x20) == 0;  // an upper-case letter
        if (isNeeded &&
            pngChecksum(typeAndBody) != bigEndianAt<uint32_t>(data, position + 8 + length)) {
            return false;
        }
        if (typeAndBody.startsWith("IEND")) { return true; }
        position += length + frame;
    }
    return false;
}

// Walks the segments up to the compressed data, at whose marker it ends. `visit` gets a marker and
// the position of its segment's length, and ends the walk by returning true.
// Returns the position behind the last segment, or -1 when the visitor ended the walk or the
// segments end too early.
qsizetype walkJpegSegments(const QByteArray& data,
                           const std::function<bool(uint8_t, qsizetype)>& visit) {
    qsizetype position = 2;
    while (data.size() - position >= 4 && byteAt(data, position) == Fill) {
        const uint8_t marker = byteAt(data, ++position);
        if (marker == Fill) { continue; }
        ++position;
        const qsizetype length = bigEndianAt<uint16_t>(data, position);
        if (length < 2 || length > data.size() - position || visit(marker, position)) { return -1; }
        position += length;
        if (marker == StartOfScan) { return position; }
    }
    return -1;
}

std::optional<QSize> jpegSize(const QByteArray& data) {
    std::optional<QSize> size;
    walkJpegSegments(data, [&](uint8_t marker, qsizetype position) {
        const bool isFrame = marker >= FirstFrame && marker <= LastFrame &&
                             marker != HuffmanTables && marker != JpegExtension &&
                             marker != ArithmeticTables;
        if (!isFrame || data.size() - position < 7) { return false; }
        size = QSize(bigEndianAt<uint16_t>(data, position + 5),
                     bigEndianAt<uint16_t>(data, position + 3));
        return true;
    });
    return size;
}

std::optional<QSize> pngSize(const QByteArray& data) {
    constexpr qsizetype header = 16;  // signature, length and type of the first chunk
    if (data.size() < header + 8 || data.mid(12, 4) != "IHDR") { return std::nullopt; }
    const auto width = bigEndianAt<uint32_t>(data, header);
    const auto height = bigEndianAt<uint32_t>(data, header + 4);
    constexpr uint32_t largest = 0x7fffffff;  // by the format
    if (width > largest || height > largest) { return std::nullopt; }
    return QSize(static_cast<int>(width), static_cast<int>(height));
}

// The number of scans; those of small pictures inside of a segment do not count.
int64_t jpegScans(const QByteArray& data) {
    int64_t scans = 0;
    qsizetype position = walkJpegSegments(data, [&](uint8_t, qsizetype) { return false; });
    if (position < 0) { return 0; }
    ++scans;
    // Within a scan 0xff comes with 0, or as the marker of a restart, or else ends the scan.
    while ((position = data.indexOf(char(Fill), position)) >= 0 && position + 4 <= data.size()) {
        const uint8_t marker = byteAt(data, position + 1);
        const bool isInScan = marker == 0 || (marker >= FirstRestart && marker <= LastRestart);
        if (isInScan || marker == Fill) {
            position += marker == Fill ? 1 : 2;
            continue;
        }
        if (marker == StartOfScan) { ++scans; }
        if (marker == EndOfImage) { break; }
        position += 2 + std::max<qsizetype>(bigEndianAt<uint16_t>(data, position + 2), 2);
        if (position >= data.size()) { break; }
    }
    return scans;
}

bool isJpegComplete(const QByteArray& data) {
    const qsizetype scan = walkJpegSegments(data, [](uint8_t, qsizetype) { return false; });
    return scan >= 0 && data.indexOf(QByteArrayView("\xff\xd9", 2), scan) >= 0;
}

}  // namespace

std::optional<ImageFormat> imageFormatOf(const QByteArray& data) {
    if (data.startsWith(QByteArrayView(kPngSignature, kPngSignatureLength))) {
        return ImageFormat::Png;
    }
    if (data.startsWith(QByteArrayView("\xff\xd8\xff", 3))) { return ImageFormat::Jpeg; }
    return std::nullopt;
}

ImageFormat requiredImageFormat(const QByteArray& data, const QString& entry) {
    const auto format = imageFormatOf(data);
    if (!format) { throw InputError(entry, QStringLiteral("is neither a PNG nor a JPEG image")); }
    return *format;
}

std::optional<QSize> imageHeaderSize(const QByteArray& data, ImageFormat format) {
    return format == ImageFormat::Png ? pngSize(data) : jpegSize(data);
}

QSize encodedImageSize(const QByteArray& data, const QString& entry) {
    const auto size = imageHeaderSize(data, requiredImageFormat(data, entry));
    if (!size || size->isEmpty()) {
        throw InputError(entry, QStringLiteral("is damaged: its header cannot be read"));
    }
    if (size->width() > limits::kSideOfPicture || size->height() > limits::kSideOfPicture ||
        int64_t{size->width()} * size->height() > limits::kPixelsOfPicture) {
        throw InputError(
            entry,
            QStringLiteral("is too large: %1 by %2 pixels").arg(size->width()).arg(size->height()));
    }
    return *size;
}

bool isInterlaced(const QByteArray& data, ImageFormat format) {
    constexpr qsizetype interlaceMethod = 28;  // its place in the first chunk; 0 for none
    return format == ImageFormat::Png && data.size() > interlaceMethod &&
           byteAt(data, interlaceMethod) != 0;
}

bool isImageComplete(const QByteArray& data, ImageFormat format) {
    return format == ImageFormat::Png ? isPngComplete(data) : isJpegComplete(data);
}

ImageEffort imageEffort(const QByteArray& data) {
    constexpr qsizetype depthAt = 24;  // behind the size in the first chunk of a PNG
    if (imageFormatOf(data) == ImageFormat::Jpeg) { return {.scans = jpegScans(data)}; }
    return {.hasWideSamples = data.size() > depthAt && byteAt(data, depthAt) == 16};
}

QByteArray withoutTextChunks(const QByteArray& data) {
    if (imageFormatOf(data) != ImageFormat::Png) { return data; }
    constexpr qsizetype frame = 12;  // length, type, checksum
    QByteArray kept;
    qsizetype copiedTo = 0;
    qsizetype position = kPngSignatureLength;
    while (data.size() - position >= frame) {
        const qsizetype length = bigEndianAt<uint32_t>(data, position);
        if (length > data.size() - position - frame) { break; }
        const auto type = QByteArrayView(data).sliced(position + 4, 4);
        if (type == "tEXt" || type == "zTXt" || type == "iTXt") {
            kept.append(QByteArrayView(data).sliced(copiedTo, position - copiedTo));
            copiedTo = position + frame + length;
        }
        position += frame + length;
    }
    if (copiedTo == 0) { return data; }
    return kept.append(QByteArrayView(data).sliced(copiedTo));
}

}  // namespace tweenery
