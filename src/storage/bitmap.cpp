#include "storage/bitmap.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "base/errors.h"
#include "storage/pixel_allowance.h"

namespace tweenery {

namespace {

// Room for the largest image with 16 bits in each of four samples, in MiB.
constexpr int kAllocationLimit = 512;

QByteArray nameOf(ImageFormat format) {
    return format == ImageFormat::Png ? QByteArrayLiteral("png") : QByteArrayLiteral("jpeg");
}

// An image as its decoder gave it.
struct DecodedImage {
    QImage image;
    bool wasTurned = false;
};

enum class Orientation { AsStored, Upright };

// Decodes with the decoder of `format` alone, so that no other one is ever asked.
DecodedImage decodeAs(ImageFormat format, const QByteArray& data, const QString& entry,
                      Orientation orientation) {
    static const bool isLimitSet = [] {
        QImageReader::setAllocationLimit(kAllocationLimit);
        return true;
    }();
    Q_UNUSED(isLimitSet);
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, nameOf(format));
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(orientation == Orientation::Upright);
    QImage image = reader.read();
    if (image.isNull()) {
        throw InputError(entry, QStringLiteral("is damaged: %1").arg(reader.errorString()));
    }
    const bool wasTurned =
        reader.autoTransform() && reader.transformation() != QImageIOHandler::TransformationNone;
    return {image, wasTurned};
}

DecodedImage decodeChecked(const QByteArray& data, const QString& entry, Orientation orientation) {
    const ImageFormat format = requiredImageFormat(data, entry);
    const QSize size = encodedImageSize(data, entry);
    const QString reason = QStringLiteral("is damaged: data is missing or changed");
    if (!isImageComplete(data, format)) { throw InputError(entry, reason); }
    const DecodingTurn turn(decodingCost(data, entry));
    DecodedImage decoded = decodeAs(format, withoutTextChunks(data), entry, orientation);
    const QSize found = decoded.image.size();
    if (found != size && !(decoded.wasTurned && found == size.transposed())) {
        throw InputError(entry, reason);
    }
    return decoded;
}

bool hasDeepSamples(const QImage& image) {
    return image.depth() > 32 || image.format() == QImage::Format_Grayscale16;
}

bool isNearlySrgb(const QColorSpace& space) {
    constexpr float kGamma = 2.2F;  // written as 1 / 2.2 with five digits
    return !space.isValid() || space == QColorSpace::SRgb ||
           (space.primaries() == QColorSpace::Primaries::SRgb &&
            space.transferFunction() == QColorSpace::TransferFunction::Gamma &&
            std::abs(space.gamma() - kGamma) < 0.01F);
}

QImage overWhite(const QImage& image) {
    if (!image.hasAlphaChannel()) { return image; }
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    opaque.setColorSpace(image.colorSpace());
    QPainter(&opaque).drawImage(QPoint(0, 0), image);
    return opaque;
}

// The encoder writes gray as gray, and the format has no gray with a colour space of its own.
QImage withColorsForSpace(const QImage& image) {
    if (!image.colorSpace().isValid() || image.depth() > 16) { return image; }
    return image.convertToFormat(hasDeepSamples(image) ? QImage::Format_RGBX64
                                                       : QImage::Format_ARGB32);
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

QImage decodeImage(const QByteArray& data, const QString& entry) {
    return imageForDrawing(decodeChecked(data, entry, Orientation::AsStored).image);
}

Artwork decodeArtwork(const QByteArray& data, const QString& entry) {
    const auto [image, wasTurned] = decodeChecked(data, entry, Orientation::Upright);
    const bool canStay = !wasTurned && !isInterlaced(data, requiredImageFormat(data, entry));
    return {image, canStay ? data : QByteArray()};
}

QImage imageForDrawing(const QImage& image) {
    QImage drawn = image;
    if (!isNearlySrgb(image.colorSpace())) {
        drawn.convertTo(hasDeepSamples(image) ? QImage::Format_RGBA64 : QImage::Format_ARGB32);
        drawn.convertToColorSpace(QColorSpace::SRgb);
    }
    drawn.convertTo(QImage::Format_ARGB32_Premultiplied);
    drawn.setColorSpace({});
    drawn.setDevicePixelRatio(1);
    return drawn;
}

QByteArray encodeImage(const QImage& image, ImageFormat format, int quality) {
    if (format == ImageFormat::Jpeg) { return encodeAs(format, overWhite(image), quality); }
    return encodeAs(format, withColorsForSpace(image), -1);
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
    return source
        .convertToFormat(hasDeepSamples(source) ? QImage::Format_RGBA64_Premultiplied
                                                : QImage::Format_ARGB32_Premultiplied)
        .scaled(fittedSize(source.size(), target), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace tweenery
