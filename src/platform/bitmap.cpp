#include "platform/bitmap.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <algorithm>

#include "platform/errors.h"

namespace tweenery {

namespace {

constexpr int maximumSide = 16384;
constexpr int64_t maximumPixels = 64'000'000;
// Room for the largest image with 16 bits in each of four samples, in MiB.
constexpr int allocationLimit = 512;

const QByteArray pngFormat = QByteArrayLiteral("png");
const QByteArray jpegFormat = QByteArrayLiteral("jpeg");

ImageFormat requiredFormatOf(const QByteArray& data, const QString& entry) {
    const auto format = encodedImageFormat(data);
    if (!format) throw InputError(entry, QStringLiteral("is neither a PNG nor a JPEG image"));
    return *format;
}

/// True when the end marker follows the compressed data. The decoder fills up what is missing in
/// gray and calls it a success.
bool isJpegComplete(const QByteArray& data) {
    constexpr uint8_t startOfScan = 0xda;
    const auto byteAt = [&](qsizetype i) { return static_cast<uint8_t>(data[i]); };
    qsizetype position = 2;
    while (position + 4 <= data.size() && byteAt(position) == 0xff) {
        const uint8_t marker = byteAt(position + 1);
        if (marker == 0xff) {  // a fill byte
            ++position;
            continue;
        }
        const qsizetype length = byteAt(position + 2) << 8 | byteAt(position + 3);
        position += 2 + length;
        if (marker == startOfScan) {
            return data.indexOf(QByteArrayView("\xff\xd9", 2), position) >= 0;
        }
    }
    return false;
}

/// A reader of encoded bytes whose format is fixed, so that no other decoder is ever asked.
class EncodedImage {
 public:
    EncodedImage(const QByteArray& data, const QString& entry)
        : m_entry(entry), m_format(requiredFormatOf(data, entry)), m_data(data) {
        static const bool isLimitSet = [] {
            QImageReader::setAllocationLimit(allocationLimit);
            return true;
        }();
        Q_UNUSED(isLimitSet);
        m_buffer.setData(data);
        m_buffer.open(QIODevice::ReadOnly);
        m_reader.setAutoDetectImageFormat(false);
        m_reader.setFormat(m_format == ImageFormat::Png ? pngFormat : jpegFormat);
        m_reader.setDevice(&m_buffer);
    }

    QSize size() {
        const QSize size = m_reader.size();
        if (size.isEmpty()) fail(QStringLiteral("is damaged: its header cannot be read"));
        if (size.width() > maximumSide || size.height() > maximumSide ||
            int64_t{size.width()} * size.height() > maximumPixels) {
            fail(QStringLiteral("is too large: %1 by %2 pixels")
                     .arg(size.width())
                     .arg(size.height()));
        }
        return size;
    }

    QImage decode() {
        size();
        if (m_format == ImageFormat::Jpeg && !isJpegComplete(m_data)) {
            fail(QStringLiteral("is damaged: it ends too early"));
        }
        QImage image = m_reader.read();
        if (image.isNull()) fail(QStringLiteral("is damaged: %1").arg(m_reader.errorString()));
        image.convertTo(QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(1);
        return image;
    }

 private:
    [[noreturn]] void fail(const QString& reason) { throw InputError(m_entry, reason); }

    QString m_entry;
    ImageFormat m_format;
    QByteArray m_data;
    QBuffer m_buffer;
    QImageReader m_reader;
};

QImage overWhite(const QImage& image) {
    if (!image.hasAlphaChannel()) return image;
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(QPoint(0, 0), image);
    return opaque;
}

}  // namespace

std::optional<ImageFormat> encodedImageFormat(const QByteArray& data) {
    if (data.startsWith(QByteArrayView("\x89PNG\r\n\x1a\n", 8))) return ImageFormat::Png;
    if (data.startsWith(QByteArrayView("\xff\xd8\xff", 3))) return ImageFormat::Jpeg;
    return std::nullopt;
}

QSize encodedImageSize(const QByteArray& data, const QString& entry) {
    return EncodedImage(data, entry).size();
}

QImage decodeImage(const QByteArray& data, const QString& entry) {
    return EncodedImage(data, entry).decode();
}

QByteArray encodeImage(const QImage& image, ImageFormat format, int quality) {
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    const bool isJpeg = format == ImageFormat::Jpeg;
    QImageWriter writer(&buffer, isJpeg ? jpegFormat : pngFormat);
    writer.setProgressiveScanWrite(false);
    if (isJpeg) writer.setQuality(quality);
    const bool isWritten = writer.write(isJpeg ? overWhite(image) : image);
    assertContract(isWritten,
                   QStringLiteral("an image could not be encoded: %1").arg(writer.errorString()));
    return data;
}

QSize fittedSize(QSize source, QSizeF target) {
    assertContract(!source.isEmpty() && !target.isEmpty(),
                   QStringLiteral("an empty size has no proportions to keep"));
    const double w = source.width();
    const double h = source.height();
    const QSizeF fitted = w > h ? QSizeF(target.width(), h / (w / target.width()))
                                : QSizeF(w / (h / target.height()), target.height());
    return {std::max(1, static_cast<int>(fitted.width())),
            std::max(1, static_cast<int>(fitted.height()))};
}

QImage imageFitted(const QImage& source, QSizeF target) {
    return source.convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .scaled(fittedSize(source.size(), target), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace tweenery
