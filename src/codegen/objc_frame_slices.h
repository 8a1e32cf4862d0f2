#pragma once

#include "codegen/frame_sliced_animation_code.h"

namespace tweenery {

/// Frame-sliced animations as fixed Objective-C for the mobile platform; nothing for a language
/// without buffers for it.
class ObjCFrameSlices final : public FrameSlicedAnimationCode {
 public:
    ObjCFrameSlices(ExportPlan& plan, PCLanguageCodeProvider& provider)
        : FrameSlicedAnimationCode(plan, provider),
          m_header(provider.headerStringForFrameSlicedAnimations()),
          m_implementation(provider.implementationStringForFrameSlicedAnimations()) {}

 private:
    void appendStructDefinition(const Bundle& bundle) override;
    void appendMark() override;
    void appendMethods(const Bundle& bundle) override;
    void appendStructValuesArray(const Bundle& bundle) override;
    void generateCodeToApplyFrameSlicedValuesWithAnimation(const Bundle& bundle, bool nonChanging);
    void generateCodeToApplyStructValueFromTimeline(const PlannedElement& planned,
                                                    const Timeline& timeline, bool nonChanging);
    struct ElementTransform;
    void generateCodeToApplyTransform(const PlannedElement& planned,
                                      const ElementTransform& transform, bool nonChanging);
    void generateCodeToApplyTranslation(const PlannedElement& planned,
                                        const ElementTransform& transform, bool nonChanging);
    void generateCodeToAnimateForPlaybackWithAnimation(const Bundle& bundle);
    void generateAnimationCodeForTimeline(const PlannedElement& planned, const Timeline& timeline);

    std::string* m_header;
    std::string* m_implementation;
};

}  // namespace tweenery
