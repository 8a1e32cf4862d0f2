#pragma once

#include <QImage>

#include "editor/layers/editor_layer.h"

namespace tweenery {

/// The elements as they are shown at this moment, without borders, on a transparent ground, cut to
/// their box on the canvas; two pixels a scene point. Null when they cover nothing, or too much for
/// a picture.
QImage pictureOfElements(PCEditorLayer& editor, const PCElement::Elements& elements);

}  // namespace tweenery
