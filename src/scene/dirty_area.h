#pragma once

#include <QRect>
#include <QRegion>
#include <QSize>
#include <cstddef>
#include <vector>

#include "scene/display_list.h"

namespace tweenery {

/// The part of a picture that has to be painted again, as rectangles that lie in bands of
/// kBandHeight rows, never overlap and are few: those close to each other are united. The lower
/// the bands, the closer they keep to the outlines of turned items.
class DirtyArea {
 public:
    static constexpr int kBandHeight = 8;

    /// Nothing is dirty in a picture of that size.
    void reset(QSize size);
    /// All that the item touches, band by band.
    void add(const DisplayItem& item);
    void addAll();
    /// All but that rectangle.
    void addOutside(const QRect& rect);

    bool isEmpty() const;
    /// Of the picture, from 0 to 1.
    double share() const;
    /// From top to bottom.
    std::vector<QRect> rectangles() const;
    /// What is dirty of `strip`, whole bands of the picture.
    QRegion partOf(const QRect& strip) const;

 private:
    QRect band(size_t index) const;

    QSize m_size;
    std::vector<std::vector<QRect>> m_bands;
};

}  // namespace tweenery
