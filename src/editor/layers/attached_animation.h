#pragma once

#include <QString>

#include "model/element.h"

namespace tweenery {

class Layer;
class PCAnimation;
class PCProject;

/// Puts the animations of all timelines of `animation` on the layers of the project's elements,
/// from the time `beginTime` of their clocks on, in seconds, and returns those elements. A hidden
/// element keeps the opacity of its layer, which is 0. Throws InputError when a timeline cannot be
/// read.
PCElement::Elements attachAnimation(PCProject& project, const PCAnimation& animation,
                                    double beginTime);

/// Takes away what attachAnimation() put on the layer for an animation of that name.
void detachAnimation(Layer& layer, const QString& animationName);

}  // namespace tweenery
