#include "storage/pixel_allowance.h"

#include <condition_variable>

#include "base/errors.h"
#include "base/limits.h"
#include "storage/image_header.h"

using namespace Qt::StringLiterals;

namespace tweenery {

int64_t decodingCost(const QByteArray& data, const QString& entry) {
    const QSize size = encodedImageSize(data, entry);
    const ImageEffort effort = imageEffort(data);
    if (effort.scans > limits::kScansOfPicture) {
        throw InputError(
            entry, beyondLimit(u"scans of a JPEG image"_s, effort.scans, limits::kScansOfPicture));
    }
    const int64_t passes = 1 + (std::max<int64_t>(effort.scans, 1) - 1) / limits::kScansForOnePass;
    return int64_t{size.width()} * size.height() * passes * (effort.hasWideSamples ? 2 : 1);
}

void PixelAllowance::take(const QByteArray& data, const QString& entry) {
    const int64_t cost = decodingCost(data, entry);
    const std::lock_guard lock(m_mutex);
    const int64_t pixels = m_pixels + cost;
    const int64_t allowed =
        limits::kPixelsInAll + limits::kMorePixelsForAByte * (m_bytes + data.size());
    if (pixels > allowed) {
        throw InputError(
            entry, beyondLimit(u"with it the pictures have too many pixels"_s, pixels, allowed));
    }
    m_pixels = pixels;
    m_bytes += data.size();
}

namespace {

struct Turns {
    std::mutex mutex;
    std::condition_variable ended;
    int64_t pixels = 0;
};

Turns& turns() {
    static Turns turns;
    return turns;
}

}  // namespace

DecodingTurn::DecodingTurn(int64_t cost) : m_cost(cost) {
    std::unique_lock lock(turns().mutex);
    turns().ended.wait(lock, [&] {
        return turns().pixels == 0 || turns().pixels + m_cost <= limits::kPixelsDecodedAtOnce;
    });
    turns().pixels += m_cost;
}

DecodingTurn::~DecodingTurn() {
    {
        const std::lock_guard lock(turns().mutex);
        turns().pixels -= m_cost;
    }
    turns().ended.notify_all();
}

}  // namespace tweenery
