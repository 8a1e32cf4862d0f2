#pragma once

#include <QPointF>
#include <bitset>
#include <string_view>

#include "model/properties/easing.h"

namespace tweenery {

/// Easing modes, 0 to 6, that a piece of generated code uses.
using EasingModes = std::bitset<7>;

/// A timing function as generated code has it. Anticipation and overshoot lie in control points
/// beyond 0 to 1.
struct TimingFunctionCode {
    std::string_view variable;
    std::string_view builtInName;  // empty: made from the control points
    QPointF controlPoint1{0, 0};
    QPointF controlPoint2{0, 0};
};

/// The function of an easing mode; linear for modes that there are not.
const TimingFunctionCode& timingFunctionCode(PCEasingMode easingMode);

}  // namespace tweenery
