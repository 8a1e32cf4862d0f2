#pragma once

#include "codegen/frame_sliced_animation_code.h"

namespace tweenery {

/// Frame-sliced animations in current Swift, of views on the mobile platform and of layers on the
/// desktop. A frame sets the whole transform and the whole place of an element of which any part
/// changes, so that it shows what the preview shows.
class SwiftFrameSlices final : public FrameSlicedAnimationCode {
 public:
    SwiftFrameSlices(ExportPlan& plan, PCLanguageCodeProvider& provider)
        : FrameSlicedAnimationCode(plan, provider),
          m_code(*provider.implementationStringForFrameSlicedAnimations()) {}

 private:
    using Record = PCAnimationExportElementTimelines;
    /// What of one element a method sets: the timelines that change, or those that do not.
    struct Part;

    void appendStructDefinition(const Bundle& bundle) override;
    void appendMark() override;
    void appendMethods(const Bundle& bundle) override;
    void appendStructValuesArray(const Bundle& bundle) override;

    bool isMac() const { return plan().target.generateForMac; }
    std::string comment(const Bundle& bundle) const;
    std::string part(const PlannedElement& planned, std::string_view ofView,
                     std::string_view ofLayer) const;
    void appendParts(const Bundle& bundle, bool changing);
    void appendPart(const Part& part);
    void appendTransform(const Part& part);
    void appendPlace(const Part& part);
    void appendImage(const Part& part);
    void appendPlayback(const Bundle& bundle);

    std::string& m_code;
};

}  // namespace tweenery
