#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>

namespace tweenery {

enum class ImageFormat { Png, Jpeg };

/// The pixel size of encoded PNG or JPEG bytes, without decoding the pixels. `entry` names the
/// image in errors. Throws InputError when the bytes are neither, whatever their name.
QSize encodedImageSize(const QByteArray& data, const QString& entry);

/// Decodes PNG or JPEG bytes, by content, into ARGB32_Premultiplied. Throws InputError when the
/// bytes are neither, are damaged, or claim more than 16384 pixels a side or 64 million in all;
/// sizes are checked before pixels are made.
QImage decodeImage(const QByteArray& data, const QString& entry);

/// Encodes without interlacing. PNG is lossless; JPEG takes `quality` 0 to 100, alpha over white.
QByteArray encodeImage(const QImage& image, ImageFormat format, int quality = 90);

/// A PNG made with little effort, for pictures that come in hundreds: larger than that of
/// encodeImage(), and several times as fast.
QByteArray encodePngQuickly(const QImage& image);

/// The size of `source` fitted into `target`, cut to whole pixels toward zero: target wide if the
/// source is wider than high, target high otherwise; never below 1 by 1. A target may be a fraction
/// of a pixel, as two thirds of an odd size are.
QSize fittedSize(QSize source, QSizeF target);

/// `source` drawn in fittedSize(), smoothly; ARGB32_Premultiplied.
QImage imageFitted(const QImage& source, QSizeF target);

}  // namespace tweenery
