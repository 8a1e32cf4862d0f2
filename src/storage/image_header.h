#pragma once

#include <QByteArray>
#include <QSize>
#include <optional>

#include "storage/bitmap.h"

namespace tweenery {

/// What the bytes of an encoded image tell before any decoder sees them. The decoders take their
/// input for honest: they make the pixels that a header claims, fill up what is missing with gray,
/// and print to standard error.

/// By signature; nullopt for anything but PNG and JPEG.
std::optional<ImageFormat> imageFormatOf(const QByteArray& data);

/// The pixel size in the header; nullopt when there is none. Reads no further than the header.
std::optional<QSize> imageHeaderSize(const QByteArray& data, ImageFormat format);

/// True for a PNG whose rows come in several passes.
bool isInterlaced(const QByteArray& data, ImageFormat format);

/// True when the data is there from its start to its end mark and, in a PNG, the checksums of all
/// that is needed for the pixels are right.
bool isImageComplete(const QByteArray& data, ImageFormat format);

}  // namespace tweenery
