#pragma once

#include "scene/dirty_area.h"
#include "scene/display_list.h"

namespace tweenery {

/// Adds to `dirty` all pixels in which two lists of one picture size may look different: where an
/// item came, went, changed, or passed another one.
void addChanges(const DisplayList& before, const DisplayList& after, DirtyArea& dirty);

}  // namespace tweenery
