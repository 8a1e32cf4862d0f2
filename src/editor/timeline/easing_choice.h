#pragma once

#include <QString>
#include <span>

#include "editor/timeline/keyframe_manager.h"
#include "model/preferences/project_preferences.h"

namespace tweenery {

/// One of the eight ways from a keyframe to the next that a user can choose.
struct EasingChoice {
    PCEasingMode mode;     // or easingModeInstant
    const char* icon;      // of the button that chooses it
    const char* darkIcon;  // of the button that shows the choice for new keyframes
    const char* label;
};

/// From instant on, in the order of modes.
std::span<const EasingChoice> easingChoices();
/// Linear for a mode that is none of them.
const EasingChoice& easingChoice(PCEasingMode mode);
/// Of the stretch that ends in the keyframe.
PCEasingMode easingOf(const PCPropertyKeyframe& keyframe);

/// Sets the easing to each of the keyframes that is in a timeline, or makes it jump. A part of a
/// step of undo. False when all have it already.
bool setEasingOf(const PCKeyframeManager::KeyframeSet& keyframes, PCEasingMode mode);

/// Sets the easing of the selected tweens, or makes them jump. One step of undo, named; none when
/// they have it already.
void setEasingOfSelectedTweens(PCProject& project, const PCKeyframeManager& keyframes,
                               PCEasingMode mode);

}  // namespace tweenery
