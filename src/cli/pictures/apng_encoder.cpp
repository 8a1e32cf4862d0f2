#include "cli/pictures/apng_encoder.h"

#include <QtEndian>

#include "base/errors.h"
#include "storage/bitmap.h"
#include "storage/image_header.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr qsizetype kSignatureLength = 8;
constexpr qsizetype kChunkOverhead = 12;  // length, type and CRC
constexpr qsizetype kDimensionsLength = 8;

template <typename Number>
QByteArray bigEndian(Number number) {
    QByteArray bytes(sizeof(Number), Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray chunk(const char* type, const QByteArray& data) {
    const QByteArray named = type + data;
    return bigEndian(static_cast<uint32_t>(data.size())) + named + bigEndian(pngChecksum(named));
}

struct Chunk {
    QByteArray type;
    QByteArray data;
    QByteArray whole;
};

std::vector<Chunk> chunksOf(const QByteArray& png) {
    std::vector<Chunk> chunks;
    for (qsizetype at = kSignatureLength; at + kChunkOverhead <= png.size();) {
        const auto length = static_cast<qsizetype>(qFromBigEndian<uint32_t>(png.constData() + at));
        chunks.push_back(
            {png.mid(at + 4, 4), png.mid(at + 8, length), png.mid(at, kChunkOverhead + length)});
        at += kChunkOverhead + length;
    }
    return chunks;
}

}  // namespace

PreparedFrame ApngEncoder::prepare(const QImage& frame) const {
    return {encodePngQuickly(frame), {}};
}

QByteArray ApngEncoder::append(const PreparedFrame& frame) {
    const bool isFirst = m_frameCount == 0;
    QByteArray bytes = isFirst ? frame.png.left(kSignatureLength) : QByteArray();
    bool hasPixels = false;
    for (const Chunk& part : chunksOf(frame.png)) {
        if (part.type == "IHDR") {
            if (isFirst) { m_header = part.data; }
            assertContract(part.data == m_header, u"the frames are PNGs of different kinds"_s);
        }
        if (part.type == "IEND") { break; }
        if (part.type != "IDAT") {
            if (isFirst) { bytes += part.whole; }
            continue;
        }
        if (!hasPixels) { bytes += (isFirst ? animationControl() : QByteArray()) + frameControl(); }
        hasPixels = true;
        bytes += isFirst ? part.whole : chunk("fdAT", bigEndian(m_sequence++) + part.data);
    }
    ++m_frameCount;
    return bytes;
}

QByteArray ApngEncoder::end() {
    return chunk("IEND", {});
}

QByteArray ApngEncoder::animationControl() const {
    return chunk("acTL", bigEndian(static_cast<uint32_t>(m_timing.delays.size())) +
                             bigEndian(uint32_t{m_timing.loops ? 0U : 1U}));
}

// Each frame covers all of the one before it, and takes its place instead of lying over it.
QByteArray ApngEncoder::frameControl() {
    const FrameDelay& delay = m_timing.delays[m_frameCount];
    const QByteArray offset(8, '\0');
    const QByteArray keepAndReplace(2, '\0');
    return chunk("fcTL", bigEndian(m_sequence++) + m_header.left(kDimensionsLength) + offset +
                             bigEndian(static_cast<uint16_t>(delay.numerator)) +
                             bigEndian(static_cast<uint16_t>(delay.denominator)) + keepAndReplace);
}

}  // namespace tweenery
