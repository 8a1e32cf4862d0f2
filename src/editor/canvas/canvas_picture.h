#pragma once

#include <QImage>
#include <QSizeF>

#include "editor/layers/editor_layer.h"
#include "scene/display_list.h"

namespace tweenery {

/// A picture of the canvas with its surround, one pixel a scene point, for a package's preview: no
/// selection border and no mark of an anchor point. It is taken at once, without touching the
/// selection or the magnification, and painted by any thread at any later time.
class CanvasPicture {
 public:
    /// `containerSize`, in screen points, is that of the view: the surround fills it. Elements that
    /// are selected keep what they show.
    CanvasPicture(PCEditorLayer& editor, QSizeF containerSize);
    /// Throws std::bad_alloc when there is no memory for one of that size.
    QImage paint() const;

 private:
    DisplayList m_list;
};

}  // namespace tweenery
