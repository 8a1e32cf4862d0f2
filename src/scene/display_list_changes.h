#pragma once

#include "scene/dirty_area.h"
#include "scene/display_list.h"

namespace tweenery {

/// Where two lists have to look alike: in `area`, with items at places that differ by `tolerance`
/// pixels at most.
struct DisplayListComparison {
    QRect area;
    double tolerance = 0;
};

/// Adds to `dirty` all pixels of the area in which two lists of one picture size may look
/// different: where an item came, went, changed, or passed another one.
void addChanges(const DisplayList& before, const DisplayList& after,
                const DisplayListComparison& comparison, DirtyArea& dirty);

}  // namespace tweenery
