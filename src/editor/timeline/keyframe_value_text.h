#pragma once

#include <QString>
#include <optional>

#include "model/keyed_property_timeline.h"

namespace tweenery {

/// The absolute value of a keyframe as a user reads and types it: points, percent of scale and
/// opacity, degrees, the name of an image; with its unit and up to two decimals. Null for the order
/// of children and for master keyframes, whose value nobody types.
QString textOfKeyframeValue(const PCPropertyKeyframe& keyframe);

/// What a text means as the value of a keyframe: a value, or why it is none.
struct TypedKeyframeValue {
    std::optional<PropertyValue> value;  // absolute, radians for degrees
    QString reason;                      // a sentence for the user; empty with a value
};

/// Reads numbers as typedNumber() does, where the present value is the keyframe's. Opacity is
/// brought into 0 to 100 %; an image is one that the project has.
TypedKeyframeValue typedKeyframeValue(const QString& text, const PCPropertyKeyframe& keyframe);

}  // namespace tweenery
