#pragma once

#include <QCache>
#include <QImage>
#include <cstddef>
#include <mutex>

namespace tweenery {

/// Images at half their size, a quarter and so on, and between those, for drawing at such sizes.
/// The raster engine reads four pixels of an image for each one that it paints: of an image drawn
/// below half its size it would pass over the others, and fine lines would break up. Here each
/// pixel is the average of all that it stands for. A size is made when it is first asked for, and
/// kept as long as the budget has room; what was not asked for longest goes first. From any thread.
class ReducedImages {
 public:
    /// The budget counts the bytes of what is made, not those of the images.
    explicit ReducedImages(qsizetype budgetInBytes) : m_kept(budgetInBytes) {}
    /// Those of the program, of at most 128 MiB: room for half of the largest image.
    static ReducedImages& shared();

    /// For an image that is drawn with `scaleX` by `scaleY` pixels, above 0, for one of its own: in
    /// each direction of that size within a fifth, or as it is where the scale is more than half.
    /// To be stretched to the place of the image. An image that changes counts as another one.
    QImage imageFor(const QImage& image, double scaleX, double scaleY);

    qsizetype keptBytes() const;

 private:
    struct Key {
        qint64 image;
        int stepsX;
        int stepsY;
        bool operator==(const Key&) const = default;
        friend size_t qHash(const Key& key, size_t seed) {
            return qHashMulti(seed, key.image, key.stepsX, key.stepsY);
        }
    };

    QImage reduced(const QImage& image, int stepsX, int stepsY);

    mutable std::mutex m_mutex;
    QCache<Key, QImage> m_kept;  // cost: bytes
};

}  // namespace tweenery
