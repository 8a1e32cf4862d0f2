#pragma once

#include <QString>
#include <cstdint>
#include <span>
#include <string_view>

namespace tweenery {

/// How a value moves from one keyframe to the next. The numbers live in memory only; files hold
/// the name.
enum PCEasingMode : int64_t {
    PCEasingModeLinear = 0,
    PCEasingModeEaseIn = 1,
    PCEasingModeEaseOut = 2,
    PCEasingModeEaseInOut = 3,
    PCEasingModeAnticipate = 4,  // draws back before it starts
    PCEasingModeOvershoot = 5,   // goes past its end and returns
    PCEasingModeAnticOver = 6,   // both
};

/// As a project's default easing mode only: new keyframes jump.
constexpr PCEasingMode easingModeInstant{-1};

/// One row for each easing mode: everything that is known of it.
struct EasingMode {
    PCEasingMode mode;
    std::string_view name;  // in files
    /// Control points of the cubic Bézier curve from (0, 0) to (1, 1).
    double x1, y1, x2, y2;
    /// True when the animation engine of the exported code's platform has the curve by a name.
    bool isBuiltIn;
};

/// All modes; each stands at the index of its number.
std::span<const EasingMode> easingModes();

/// The mode's name; "linear" for any number that is none. Lasts as long as the program.
std::string_view nameOfEasingMode(PCEasingMode mode);
/// The mode of that name; linear for any other text.
PCEasingMode easingModeFromName(std::string_view name);

/// The mode's name; "linear" for any number that is none.
QString stringFromEasingMode(PCEasingMode mode);
/// The mode of that name; linear for any other text, a null string included.
PCEasingMode easingModeFromString(const QString& name);

}  // namespace tweenery
