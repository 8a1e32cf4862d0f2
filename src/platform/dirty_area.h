#pragma once

#include <QRect>
#include <QSize>
#include <vector>

namespace tweenery {

/// The part of a picture that has to be painted again, as rectangles that lie in strips of
/// kStripHeight rows, never overlap and are few: those close to each other are united.
class DirtyArea {
 public:
    /// The raster engine spreads a fill of 96 spans or more over threads of its own and waits for
    /// them, which slows a frame of many small images. A row of a turned, antialiased image is
    /// several spans: this many rows stay below.
    static constexpr int kStripHeight = 12;

    /// Nothing is dirty in a picture of that size. `stripHeight` is 1 to kStripHeight.
    void reset(QSize size, int stripHeight = kStripHeight);
    void add(const QRect& pixels);
    void addAll() { add(QRect(QPoint(0, 0), m_size)); }

    bool isEmpty() const { return m_isEmpty; }
    /// From top to bottom.
    const std::vector<QRect>& rectangles() const;
    /// The whole strip that one of the rectangles lies in.
    QRect stripOf(const QRect& rectangle) const;

 private:
    QSize m_size;
    int m_stripHeight = kStripHeight;
    bool m_isEmpty = true;
    std::vector<std::vector<QRect>> m_strips;
    mutable std::vector<QRect> m_rectangles;
};

}  // namespace tweenery
