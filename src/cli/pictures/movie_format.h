#pragma once

#include <QString>
#include <memory>

#include "cli/pictures/movie_encoder.h"
#include "cli/pictures/movie_timing.h"

namespace tweenery {

/// The path is one of an animated PNG (.apng) or of a GIF.
bool isMoviePath(const QString& path);
bool isGifPath(const QString& path);

/// An encoder for the kind of file that `path` names. Throws InputError when the kind cannot hold
/// such delays.
std::unique_ptr<MovieEncoder> movieEncoderFor(const QString& path, const MovieTiming& timing);

}  // namespace tweenery
