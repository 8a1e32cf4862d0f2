#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <mutex>

namespace tweenery {

/// What decoding an encoded image costs in pixels, from its header and its scans alone. Throws
/// InputError when that is more than one image may.
int64_t decodingCost(const QByteArray& data, const QString& entry);

/// How many pixels the pictures of a package may have together. May be used from any thread.
class PixelAllowance {
 public:
    /// Counts an image that is going to be decoded and kept. Throws InputError, naming it, when all
    /// have too many pixels then.
    void take(const QByteArray& data, const QString& entry);

 private:
    std::mutex m_mutex;
    int64_t m_pixels = 0;
    int64_t m_bytes = 0;
};

/// The turn of one image to be decoded: several wait for each other, so that those in the making
/// are not too many pixels at once.
class DecodingTurn {
 public:
    explicit DecodingTurn(int64_t cost);
    ~DecodingTurn();
    DecodingTurn(const DecodingTurn&) = delete;
    DecodingTurn& operator=(const DecodingTurn&) = delete;

 private:
    int64_t m_cost;
};

}  // namespace tweenery
