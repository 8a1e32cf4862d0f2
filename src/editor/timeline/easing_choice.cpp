#include "editor/timeline/easing_choice.h"

#include <algorithm>
#include <array>

#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr std::array kChoices{
    EasingChoice{easingModeInstant, "ease_icon_INSTANT", "ease_icon_dark_INSTANT", "instant"},
    EasingChoice{PCEasingModeLinear, "ease_icon_LINEAR", "ease_icon_dark_LINEAR", "linear"},
    EasingChoice{PCEasingModeEaseIn, "ease_icon_IN", "ease_icon_dark_IN", "ease in"},
    EasingChoice{PCEasingModeEaseOut, "ease_icon_OUT", "ease_icon_dark_OUT", "ease out"},
    EasingChoice{PCEasingModeEaseInOut, "ease_icon_INOUT", "ease_icon_dark_INOUT", "in-out"},
    EasingChoice{PCEasingModeAnticipate, "ease_icon_ANT", "ease_icon_dark_ANT", "anticipate"},
    EasingChoice{PCEasingModeOvershoot, "ease_icon_OVER", "ease_icon_dark_OVER", "overshoot"},
    EasingChoice{PCEasingModeAnticOver, "ease_icon_ANTOVER", "ease_icon_dark_ANTOVER", "ant-over"},
};

}  // namespace

std::span<const EasingChoice> easingChoices() {
    return kChoices;
}

const EasingChoice& easingChoice(PCEasingMode mode) {
    const auto* const found =
        std::find_if(kChoices.begin(), kChoices.end(),
                     [mode](const auto& choice) { return choice.mode == mode; });
    return found == kChoices.end() ? easingChoice(PCEasingModeLinear) : *found;
}

PCEasingMode easingOf(const PCPropertyKeyframe& keyframe) {
    return keyframe.instantTransition() ? easingModeInstant : keyframe.easingMode();
}

// Becoming instant leaves the mode, for when the tween comes back.
bool setEasingOf(const PCKeyframeManager::KeyframeSet& keyframes, PCEasingMode mode) {
    const bool isInstant = mode == easingModeInstant;
    bool isEdit = false;
    for (const auto& keyframe : keyframes) {
        if (!keyframe->isInTimeline() || easingOf(*keyframe) == mode) { continue; }
        isEdit = true;
        if (!isInstant && keyframe->easingMode() != mode) { keyframe->setEasingMode(mode); }
        if (keyframe->instantTransition() != isInstant) {
            keyframe->setInstantTransition(isInstant);
        }
    }
    return isEdit;
}

void setEasingOfSelectedTweens(PCProject& project, const PCKeyframeManager& keyframes,
                               PCEasingMode mode) {
    UndoManager& undoManager = project.undoManager();
    undoManager.endEvent();
    const UndoGesture step(undoManager);
    if (setEasingOf(keyframes.selectedTweens(), mode)) {
        const bool isInstant = mode == easingModeInstant;
        undoManager.setActionName(isInstant ? u"Make Instant"_s : u"Change Easing"_s);
    }
}

}  // namespace tweenery
