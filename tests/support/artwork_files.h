#pragma once

#include <QByteArray>
#include <QColorSpace>
#include <QImage>
#include <QtEndian>

#include "storage/bitmap.h"

namespace tweenery::test {

/// Four quarters of different colours, so that a turned or scaled picture can be told.
inline QImage quartered(int width, int height,
                        QImage::Format format = QImage::Format_ARGB32_Premultiplied) {
    QImage image(width, height, format);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isRight = 2 * x >= width;
            const bool isLow = 2 * y >= height;
            image.setPixelColor(x, y,
                                isLow     ? isRight ? Qt::white : Qt::blue
                                : isRight ? Qt::green
                                          : Qt::red);
        }
    }
    return image;
}

/// The colours of the quarters by their letters: "rgbw" for a picture as quartered() makes it.
inline QString quartersOf(const QImage& image) {
    QString letters;
    for (const int y : {image.height() / 4, image.height() * 3 / 4}) {
        for (const int x : {image.width() / 4, image.width() * 3 / 4}) {
            const QColor color = image.pixelColor(x, y);
            const int bits = (color.red() > 127 ? 1 : 0) + (color.green() > 127 ? 2 : 0) +
                             (color.blue() > 127 ? 4 : 0);
            letters += QLatin1StringView("-rg-b--w")[bits];
        }
    }
    return letters;
}

/// Samples of 16 bits and alpha, none of which survives in 8 bits or times its alpha.
inline QImage deepArtwork(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA64);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto sample = [&](int factor) {
                return static_cast<quint16>(1 + (x * 977 + y * 7919) * factor % 65000);
            };
            image.setPixelColor(x, y,
                                QColor::fromRgba64(sample(1), sample(3), sample(5), sample(7)));
        }
    }
    return image;
}

/// The JPEG with the EXIF orientation of a camera, 1 to 8.
inline QByteArray withOrientation(const QByteArray& jpeg, char orientation) {
    QByteArray exif = QByteArray::fromHex(
        "ffe10022"          // segment, its length
        "457869660000"      // "Exif"
        "4d4d002a00000008"  // big-endian TIFF
        "0001"
        "011200030000000100000000"
        "00000000");  // one entry: orientation, a short
    exif[exif.size() - 7] = orientation;
    return jpeg.left(2) + exif + jpeg.mid(2);
}

/// Writes the right checksum of the first chunk of a PNG.
inline void repairHeaderChecksum(QByteArray& png) {
    quint32 crc = ~quint32{0};
    for (const char byte : png.mid(12, 17)) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320U : 0);
        }
    }
    qToBigEndian(~crc, png.data() + 29);
}

/// An interlaced PNG of one pixel: it has its only row in the first pass.
inline QByteArray interlacedPng(const QColor& color) {
    QImage pixel(1, 1, QImage::Format_ARGB32);
    pixel.fill(color);
    QByteArray png = encodeImage(pixel, ImageFormat::Png);
    png[28] = 1;
    repairHeaderChecksum(png);
    return png;
}

}  // namespace tweenery::test
