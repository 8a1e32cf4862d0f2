#pragma once

#include "scene/layer.h"

namespace tweenery {

/// The transform that cancels a magnification: what has it keeps its size on the screen. A
/// magnification of 0 is left as it is.
inline LayerTransform inverseScale(QPointF scale) {
    const auto inverse = [](double factor) { return factor == 0 ? 1 : 1 / factor; };
    return {.scale = {inverse(scale.x()), inverse(scale.y())}, .rotation = 0, .translation = {}};
}

}  // namespace tweenery
