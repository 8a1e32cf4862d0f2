#pragma once

#include <QString>
#include <cstdint>
#include <string>
#include <vector>

#include "codegen/animation_export_element_timelines.h"
#include "model/animation.h"

namespace tweenery {

/// What an animation becomes. Nothing is ever planned as a single frame.
enum class AnimationExportType : uint64_t {
    singleFrameState = 0,
    standardAnimation = 1,
    frameSlicedAnimation = 2,
    pngGeneratorAnimation = 3,
};

/// The plan of one animation's export.
struct PCAnimationExportBundle {
    struct ElementTimelines {
        PCElement::Ptr element;
        PCAnimationExportElementTimelines::PresentTimelines timelines;
    };

    bool hasLooping = false;              // some timeline repeats
    int32_t durationInMS = 0;             // of the longest timeline
    float timeScalar = 0;                 // of the "speed" tag; 0: none
    int32_t numberOfFrameSlices = 0;      // of the "sliced" tag; 0: none
    float generatePNGsDeltaTimeInMS = 0;  // of the "pngs" tag; 0: none
    PCAnimation::Ptr animation;
    AnimationExportType type = AnimationExportType::standardAnimation;
    std::vector<PCAnimationExportElementTimelines> timelinesByElement;  // in tree order
    std::string baseMethodName;  // the stem of generated methods' names

    // Of standard animations.
    std::string generatedAddCode;
    std::string generatedRemoveCode;

    // Of frame-sliced animations; in tree order, elements without such a timeline left out.
    std::vector<ElementTimelines> nonChangingTimelinesByElement;
    std::vector<ElementTimelines> changingTimelinesByElement;
    std::string structType;
    std::string structArrayVariableName;

    /// For logs.
    QString description() const;
};

/// Calls `visit` with the times in milliseconds at which a "pngs" animation is to be drawn: 0, one
/// step, two steps and so on, up to the duration.
template <class Visit>
void forEachPNGTime(const PCAnimationExportBundle& bundle, Visit visit) {
    int32_t timeInMS = 0;
    while (timeInMS <= bundle.durationInMS) {
        visit(timeInMS);
        const float next = static_cast<float>(timeInMS) + bundle.generatePNGsDeltaTimeInMS;
        // 32-bit steps no longer advance beyond 2^24 ms when they are small.
        if (next <= static_cast<float>(timeInMS) || next >= 2147483648.0F) { return; }
        timeInMS = static_cast<int32_t>(next);
    }
}

}  // namespace tweenery
