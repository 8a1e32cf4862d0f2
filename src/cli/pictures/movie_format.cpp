#include "cli/pictures/movie_format.h"

#include "cli/pictures/apng_encoder.h"
#include "cli/pictures/gif_encoder.h"

using namespace Qt::StringLiterals;

namespace tweenery {

bool isGifPath(const QString& path) {
    return path.endsWith(u".gif"_s, Qt::CaseInsensitive);
}

bool isMoviePath(const QString& path) {
    return isGifPath(path) || path.endsWith(u".apng"_s, Qt::CaseInsensitive);
}

std::unique_ptr<MovieEncoder> movieEncoderFor(const QString& path, const MovieTiming& timing) {
    if (isGifPath(path)) {
        return std::make_unique<GifEncoder>(delaysInHundredths(timing.delays, path), timing.loops);
    }
    requireShortFractions(timing.delays, path);
    return std::make_unique<ApngEncoder>(timing);
}

}  // namespace tweenery
