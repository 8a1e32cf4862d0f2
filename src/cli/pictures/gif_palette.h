#pragma once

#include <QImage>
#include <vector>

namespace tweenery {

/// The colours that stand for those of a picture. Colours that are alike in the upper five bits of
/// red, green and blue become their mean; where they are still too many, so do those that lie
/// together (median cut). Pixels that do not show count for nothing.
class GifPalette {
 public:
    /// `image` is ARGB32; `mostColors` is 1 to 256.
    GifPalette(const QImage& image, size_t mostColors);

    /// At least half opaque.
    static bool shows(QRgb pixel) { return qAlpha(pixel) >= 128; }

    /// At most as many as were wanted; none when nothing shows.
    const QList<QRgb>& colors() const { return m_colors; }
    /// The number of the colour that stands for a pixel of the image; the pixel shows.
    uchar indexOf(QRgb pixel) const;

 private:
    QList<QRgb> m_colors;
    std::vector<uchar> m_indexes;  // by the upper bits
};

}  // namespace tweenery
