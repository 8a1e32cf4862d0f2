#include "model/properties/easing.h"

#include <algorithm>
#include <array>

namespace tweenery {
namespace {

constexpr std::array<EasingMode, 7> kModes = {{
    {PCEasingModeLinear, "linear", 0, 0, 1, 1, true},
    {PCEasingModeEaseIn, "easeIn", 0.42, 0, 1, 1, true},
    {PCEasingModeEaseOut, "easeOut", 0, 0, 0.58, 1, true},
    {PCEasingModeEaseInOut, "easeInOut", 0.42, 0, 0.58, 1, true},
    {PCEasingModeAnticipate, "anticipate", 0.42, -0.3, 1, 1, false},
    {PCEasingModeOvershoot, "overshoot", 0, 0, 0.58, 1.3, false},
    {PCEasingModeAnticOver, "anticOver", 0.42, -0.3, 0.58, 1.3, false},
}};

}  // namespace

std::span<const EasingMode> easingModes() {
    return kModes;
}

std::string_view nameOfEasingMode(PCEasingMode mode) {
    const bool isKnown = mode >= 0 && mode < static_cast<int64_t>(kModes.size());
    return kModes[isKnown ? static_cast<size_t>(mode) : 0].name;
}

PCEasingMode easingModeFromName(std::string_view name) {
    const auto* row = std::find_if(kModes.begin(), kModes.end(),
                                   [name](const EasingMode& mode) { return mode.name == name; });
    return row == kModes.end() ? PCEasingModeLinear : row->mode;
}

QString stringFromEasingMode(PCEasingMode mode) {
    const std::string_view name = nameOfEasingMode(mode);
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

PCEasingMode easingModeFromString(const QString& name) {
    return easingModeFromName(name.toStdString());
}

}  // namespace tweenery
