#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>
#include <cstdint>
#include <optional>

namespace tweenery {

enum class ImageFormat { Png, Jpeg };

/// What the bytes of an encoded image tell before any decoder sees them. The decoders take their
/// input for honest: they make the pixels that a header claims, fill up what is missing with gray,
/// and print to standard error.

/// By signature; nullopt for anything but PNG and JPEG.
std::optional<ImageFormat> imageFormatOf(const QByteArray& data);
/// The same, but throws InputError, naming `entry`, for anything else.
ImageFormat requiredImageFormat(const QByteArray& data, const QString& entry);

/// The pixel size in the header; nullopt when there is none. Reads no further than the header.
std::optional<QSize> imageHeaderSize(const QByteArray& data, ImageFormat format);
/// The pixel size of encoded PNG or JPEG bytes. `entry` names the image in errors. Throws
/// InputError when the bytes are neither, whatever their name, are damaged, or claim more than
/// 16384 pixels a side or 64 million in all.
QSize encodedImageSize(const QByteArray& data, const QString& entry);

/// True for a PNG whose rows come in several passes.
bool isInterlaced(const QByteArray& data, ImageFormat format);

/// True when the data is there from its start to its end mark and, in a PNG, the checksums of all
/// that is needed for the pixels are right.
bool isImageComplete(const QByteArray& data, ImageFormat format);

/// What makes decoding dearer than its number of pixels tells.
struct ImageEffort {
    int64_t scans = 1;            // of a JPEG: the decoder goes over all pixels in each
    bool hasWideSamples = false;  // a PNG of 16 bits a sample
};
ImageEffort imageEffort(const QByteArray& data);

/// The PNG without its chunks of text, which nobody here reads and a decoder unpacks one and all;
/// `data` itself when it has none, or is no PNG.
QByteArray withoutTextChunks(const QByteArray& data);

/// The CRC-32 of ISO 3309, which chunks of a PNG end with.
uint32_t pngChecksum(QByteArrayView bytes);

}  // namespace tweenery
