#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <vector>

#include "base/thread_team.h"
#include "scene/affine.h"
#include "scene/dirty_area.h"
#include "scene/display_list.h"
#include "scene/item_painter.h"

namespace tweenery {

/// Paints layer trees, and keeps the picture of one up to date by painting again only what has
/// changed since the frame before. Works in strips on all cores.
///
/// Pictures are ARGB32_Premultiplied on a transparent ground. A frame that was painted in parts is
/// the same as one painted whole, but that the raster engine weighs the pixels of turned or scaled
/// images in sixteenths, counted from where a span begins, and rounds where the edges of a turned
/// image lie: next to hard edges single pixels may differ by such a step. Nothing adds up from
/// frame to frame.
class LayerRenderer {
 public:
    /// How many threads paint at most; 0 means one for each core.
    explicit LayerRenderer(int threads = 0) : m_team(threads), m_painters(painters(m_team)) {}

    /// The tree as DisplayList::build() sees it. A copy of the picture keeps what it shows; while
    /// there is one, the next frame begins with a copy of all pixels. The tree and its layers may
    /// change in any way between two calls, and so may the size and the transform.
    const QImage& frame(Layer& root, const Affine& rootToDevice, QSize size);
    /// Where the last frame() differs from the one before: rectangles of the picture that do not
    /// overlap.
    std::vector<QRect> changed() const;
    /// What the last frame() has painted: the same, but of a picture that was scrolled only what
    /// came into sight and what changed besides.
    std::vector<QRect> repainted() const { return m_dirty.rectangles(); }

    /// Paints a whole list into `picture`, which gets its size; it is made only when it has
    /// another one. Throws std::bad_alloc when there is no memory for it.
    void paint(const DisplayList& list, QImage& picture);

 private:
    static std::vector<ItemPainter> painters(const ThreadTeam& team) {
        return std::vector<ItemPainter>(static_cast<size_t>(team.workers()));
    }
    void findDirty(const Affine& rootToDevice);
    void scrollPicture(QPoint pixels);
    void paintDirty(const DisplayList& list, const DirtyArea& dirty, QImage& picture);

    ThreadTeam m_team;
    std::vector<ItemPainter> m_painters;  // one a worker
    DisplayList m_shown;                  // by m_picture
    Affine m_shownAt;
    bool m_isScrolled = false;  // in the last frame
    DisplayList m_next;
    DirtyArea m_dirty;
    DirtyArea m_whole;
    QImage m_picture;
};

/// A picture of the root's bounds with everything in it, at `scale` pixels a point, rounded up to
/// whole pixels. Null when the bounds are empty. Throws std::bad_alloc when it would be too large.
QImage renderLayer(Layer& root, double scale);

}  // namespace tweenery
