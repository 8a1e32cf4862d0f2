#pragma once

#include "editor/editor_scene.h"

namespace tweenery::test {

/// Compares every layer of the project with what its element says, in words, and every border with
/// one made anew. Reports what differs.
void expectLayersToShowTheModel(EditorScene& scene);

}  // namespace tweenery::test
