#pragma once

#include <QStringList>

#include "model/keyed_property_timeline.h"

namespace tweenery {

/// The images that a timeline of images shows, each once: those of its keyframes, and before them
/// that of the element, when the first keyframe comes later than 0. Empty for no image.
QStringList imagesShown(const PCKeyedPropertyTimeline& timeline);

/// Whether an opacity timeline tweens from or to a value beyond 0 to 1 so that it shows: the model
/// holds the ends of a segment within 0 to 1, a device only what it draws.
bool tweensBeyondOpacities(const PCKeyedPropertyTimeline& timeline);

}  // namespace tweenery
