#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>

#include "storage/image_header.h"

namespace tweenery {

/// Decodes PNG or JPEG bytes, by content, for drawing: imageForDrawing(). The pixels lie as they
/// are stored. Throws InputError when the bytes are neither, are damaged, or claim more than 16384
/// pixels a side or 64 million in all; sizes are checked before pixels are made.
QImage decodeImage(const QByteArray& data, const QString& entry);

/// A picture on its way into a project.
struct Artwork {
    QImage image;        // upright, with the samples and the colour space of the file
    QByteArray encoded;  // the file, when it can be stored as it is; null otherwise
};

/// Decodes PNG or JPEG bytes, by content, and turns a photo the way its camera was held (the EXIF
/// orientation of a JPEG). A file that had to be turned, or is interlaced, has to be encoded again.
/// Throws as decodeImage() does.
Artwork decodeArtwork(const QByteArray& data, const QString& entry);

/// `image` as the painters take it: ARGB32_Premultiplied in sRGB. Colours that say nothing of their
/// space are sRGB, and so are those of a plain gamma of 2.2, as files say that cannot say sRGB.
QImage imageForDrawing(const QImage& image);

/// Encodes without interlacing. PNG is lossless, with 16 bits a sample where the image has them;
/// JPEG takes `quality` 0 to 100, alpha over white. The colour space goes with the pixels.
QByteArray encodeImage(const QImage& image, ImageFormat format, int quality = 90);

/// A PNG made with little effort, for pictures that come in hundreds: larger than that of
/// encodeImage(), and several times as fast.
QByteArray encodePngQuickly(const QImage& image);

/// The size of `source` fitted into `target`, cut to whole pixels toward zero: target wide if the
/// source is wider than high, target high otherwise; never below 1 by 1. A target may be a fraction
/// of a pixel, as two thirds of an odd size are.
QSize fittedSize(QSize source, QSizeF target);

/// `source` drawn in fittedSize(), smoothly; ARGB32_Premultiplied, or RGBA64_Premultiplied when the
/// source has 16 bits a sample.
QImage imageFitted(const QImage& source, QSizeF target);

}  // namespace tweenery
