#pragma once

#include "cli/pictures/movie_encoder.h"

struct GifFileType;

namespace tweenery {

/// A GIF with a palette for each frame. Pixels that are less than half opaque do not show.
class GifEncoder : public MovieEncoder {
 public:
    /// `delays` in hundredths of a second, up to 65535.
    GifEncoder(std::vector<int> delays, bool loops);
    ~GifEncoder() override;
    GifEncoder(const GifEncoder&) = delete;
    GifEncoder& operator=(const GifEncoder&) = delete;

    PreparedFrame prepare(const QImage& frame) const override;
    QByteArray append(const PreparedFrame& frame) override;
    QByteArray end() override;

 private:
    void begin(const QSize& size);
    void putControl();
    void putPixels(const QImage& indexed);
    QByteArray take();

    std::vector<int> m_delays;
    bool m_loops;
    size_t m_frameCount = 0;
    QByteArray m_bytes;  // written since the last take()
    GifFileType* m_gif = nullptr;
};

}  // namespace tweenery
