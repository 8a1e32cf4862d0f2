#include "model/easing.h"

#include <QLatin1StringView>
#include <array>

namespace tweenery {

namespace {

constexpr std::array<EasingMode, 7> table = {{
    {PCEasingModeLinear, "linear", 0, 0, 1, 1, true},
    {PCEasingModeEaseIn, "easeIn", 0.42, 0, 1, 1, true},
    {PCEasingModeEaseOut, "easeOut", 0, 0, 0.58, 1, true},
    {PCEasingModeEaseInOut, "easeInOut", 0.42, 0, 0.58, 1, true},
    {PCEasingModeAnticipate, "anticipate", 0.42, -0.3, 1, 1, false},
    {PCEasingModeOvershoot, "overshoot", 0, 0, 0.58, 1.3, false},
    {PCEasingModeAnticOver, "anticOver", 0.42, -0.3, 0.58, 1.3, false},
}};

QLatin1StringView textOf(std::string_view name) {
    return {name.data(), static_cast<qsizetype>(name.size())};
}

}  // namespace

std::span<const EasingMode> easingModes() {
    return table;
}

QString stringFromEasingMode(int64_t mode) {
    const bool isKnown = mode >= 0 && mode < static_cast<int64_t>(table.size());
    return textOf(table[isKnown ? static_cast<size_t>(mode) : 0].name);
}

int64_t easingModeFromString(const QString& name) {
    for (const EasingMode& row : table) {
        if (name == textOf(row.name)) return row.mode;
    }
    return PCEasingModeLinear;
}

}  // namespace tweenery
