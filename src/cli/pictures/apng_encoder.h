#pragma once

#include "cli/pictures/movie_encoder.h"
#include "cli/pictures/movie_timing.h"

namespace tweenery {

/// An animated PNG around frames that are encoded as PNGs of one kind. The first frame is the
/// picture that readers show which know nothing of animations.
class ApngEncoder : public MovieEncoder {
 public:
    /// The delays fit into fractions of 16 bits.
    explicit ApngEncoder(MovieTiming timing) : m_timing(std::move(timing)) {}

    PreparedFrame prepare(const QImage& frame) const override;
    QByteArray append(const PreparedFrame& frame) override;
    QByteArray end() override;

 private:
    QByteArray frameControl();
    QByteArray animationControl() const;

    MovieTiming m_timing;
    QByteArray m_header;  // IHDR of all frames
    size_t m_frameCount = 0;
    uint32_t m_sequence = 0;
};

}  // namespace tweenery
