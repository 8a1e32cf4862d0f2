#pragma once

#include <QString>
#include <optional>

#include "model/keyed_property_timeline.h"

namespace tweenery {

/// The absolute value of a keyframe as a user reads and types it: points, percent of scale and
/// opacity, degrees, the name of an image; with its unit and up to two decimals. Null for the order
/// of children and for master keyframes, whose value nobody types.
QString textOfKeyframeValue(const PCPropertyKeyframe& keyframe);

/// The value that `text` stands for, absolute, radians for degrees; the unit may be left out, a
/// comma counts as a point. Opacity is brought into 0 to 100 %. Nothing for text that is no value
/// of the property, such as an image that the project has not.
std::optional<PropertyValue> keyframeValueFromText(const QString& text,
                                                   const PCKeyedPropertyTimeline& timeline);

}  // namespace tweenery
