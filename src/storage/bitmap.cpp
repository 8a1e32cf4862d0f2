#include "storage/bitmap.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <algorithm>

#include "base/errors.h"
#include "base/limits.h"
#include "storage/image_header.h"
#include "storage/pixel_allowance.h"

namespace tweenery {

namespace {

// Room for the largest image with 16 bits in each of four samples, in MiB.
constexpr int allocationLimit = 512;

QByteArray nameOf(ImageFormat format) {
    return format == ImageFormat::Png ? QByteArrayLiteral("png") : QByteArrayLiteral("jpeg");
}

ImageFormat requiredFormatOf(const QByteArray& data, const QString& entry) {
    const auto format = imageFormatOf(data);
    if (!format) { throw InputError(entry, QStringLiteral("is neither a PNG nor a JPEG image")); }
    return *format;
}

QSize checkedSize(const QByteArray& data, ImageFormat format, const QString& entry) {
    const auto size = imageHeaderSize(data, format);
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

/// Decodes with the decoder of `format` alone, so that no other one is ever asked.
QImage decodeAs(ImageFormat format, const QByteArray& data, const QString& entry) {
    static const bool isLimitSet = [] {
        QImageReader::setAllocationLimit(allocationLimit);
        return true;
    }();
    Q_UNUSED(isLimitSet);
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, nameOf(format));
    reader.setAutoDetectImageFormat(false);
    QImage image = reader.read();
    if (image.isNull()) {
        throw InputError(entry, QStringLiteral("is damaged: %1").arg(reader.errorString()));
    }
    return image;
}

QImage overWhite(const QImage& image) {
    if (!image.hasAlphaChannel()) { return image; }
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(QPoint(0, 0), image);
    return opaque;
}

// Quality -1 is the encoder's own choice.
QByteArray encodeAs(ImageFormat format, const QImage& image, int quality) {
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, nameOf(format));
    writer.setProgressiveScanWrite(false);
    writer.setQuality(quality);
    const bool isWritten = writer.write(image);
    assertContract(isWritten,
                   QStringLiteral("an image could not be encoded: %1").arg(writer.errorString()));
    return data;
}

}  // namespace

QSize encodedImageSize(const QByteArray& data, const QString& entry) {
    return checkedSize(data, requiredFormatOf(data, entry), entry);
}

QImage decodeImage(const QByteArray& data, const QString& entry) {
    const ImageFormat format = requiredFormatOf(data, entry);
    const QSize size = checkedSize(data, format, entry);
    const QString reason = QStringLiteral("is damaged: data is missing or changed");
    if (!isImageComplete(data, format)) { throw InputError(entry, reason); }
    const DecodingTurn turn(decodingCost(data, entry));
    QImage image = decodeAs(format, withoutTextChunks(data), entry);
    if (image.size() != size) { throw InputError(entry, reason); }
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1);
    return image;
}

QByteArray encodeImage(const QImage& image, ImageFormat format, int quality) {
    const bool isJpeg = format == ImageFormat::Jpeg;
    return encodeAs(format, isJpeg ? overWhite(image) : image, isJpeg ? quality : -1);
}

QByteArray encodePngQuickly(const QImage& image) {
    // Qt turns the quality of a PNG, the other way round, into zlib's level: this is level 1.
    constexpr int kQuickest = 80;
    return encodeAs(ImageFormat::Png, image, kQuickest);
}

QSize fittedSize(QSize source, QSizeF target) {
    assertContract(!source.isEmpty() && !target.isEmpty(),
                   QStringLiteral("an empty size has no proportions to keep"));
    const double w = source.width();
    const double h = source.height();
    const QSizeF fitted = w > h ? QSizeF(target.width(), h / (w / target.width()))
                                : QSizeF(w / (h / target.height()), target.height());
    // 100 / (100 / 44) is a rounding error below 44; a square stays a square.
    constexpr double roundingError = 1e-9;
    return {std::max(1, static_cast<int>(fitted.width() + roundingError)),
            std::max(1, static_cast<int>(fitted.height() + roundingError))};
}

QImage imageFitted(const QImage& source, QSizeF target) {
    return source.convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .scaled(fittedSize(source.size(), target), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace tweenery
