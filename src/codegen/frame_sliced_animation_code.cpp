#include "codegen/frame_sliced_animation_code.h"

#include "base/errors.h"
#include "base/limits.h"
#include "base/number_text.h"
#include "codegen/export_error.h"
#include "codegen/objc_frame_slices.h"
#include "codegen/standard_animation_code.h"
#include "codegen/swift_frame_slices.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

void sortByChange(PCAnimationExportBundle& bundle) {
    bundle.nonChangingTimelinesByElement.clear();
    bundle.changingTimelinesByElement.clear();
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        PCAnimationExportBundle::ElementTimelines nonChanging{record.element, {}};
        PCAnimationExportBundle::ElementTimelines changing{record.element, {}};
        for (auto* timeline : record.slicingOrder()) {
            auto& list = timeline->EXPORT_isNonChanging() ? nonChanging : changing;
            list.timelines.push_back(timeline);
        }
        if (!nonChanging.timelines.empty()) {
            bundle.nonChangingTimelinesByElement.push_back(std::move(nonChanging));
        }
        if (!changing.timelines.empty()) {
            bundle.changingTimelinesByElement.push_back(std::move(changing));
        }
    }
}

}  // namespace

std::optional<QString> obstacleToSlicing(const PCAnimationExportBundle& bundle) {
    const auto obstacle = [&](const QString& reason, const PCElement& element) {
        return u"%1 (animation '%2', element '%3')"_s.arg(reason, bundle.animation->name(),
                                                          element.name());
    };
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        for (const auto* timeline : record.slicingOrder()) {
            if (timeline->propertyType() == PCPropertyTypeChildrenZPositions) {
                return obstacle(
                    u"* keyall, childrenZPositions, Translation should NOT be used in "
                    "export"_s,
                    *record.element);
            }
            if (isStringProperty(timeline->propertyType()) && !timeline->EXPORT_isNonChanging()) {
                return obstacle(
                    u"image contents and zPosition not yet supported in frame sliced "
                    "animations"_s,
                    *record.element);
            }
        }
    }
    if (bundle.numberOfFrameSlices > kMaximumFrameSlices) {
        return u"a frame sliced animation cannot have more than %1 frames (animation '%2')"_s.arg(
            QString::number(kMaximumFrameSlices), bundle.animation->name());
    }
    return {};
}

std::optional<QString> obstacleToSlicing(const PCAnimationExportBundle& bundle,
                                         int64_t& valuesInAll) {
    if (const auto obstacle = obstacleToSlicing(bundle)) { return obstacle; }
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        for (const auto* timeline : record.slicingOrder()) {
            if (!timeline->EXPORT_isNonChanging()) { valuesInAll += bundle.numberOfFrameSlices; }
        }
    }
    if (valuesInAll <= limits::kSlicedValuesInAll) { return {}; }
    return beyondLimit(
        u"values of frame sliced animations (with animation '%1')"_s.arg(bundle.animation->name()),
        valuesInAll, limits::kSlicedValuesInAll);
}

void FrameSlicedAnimationCode::prepareForSlicedAnimationExport() {
    if (!writesText()) { return; }
    int64_t valuesInAll = 0;
    for (Bundle& bundle : m_plan.frameSlicedAnimationExportBundles) {
        if (const auto obstacle = obstacleToSlicing(bundle, valuesInAll)) {
            throw ExportError(*obstacle);
        }
        sortByChange(bundle);
        const QString structType = u"%1_%2_Values"_s.arg(
            m_plan.generatedClassName, QString::fromStdString(bundle.baseMethodName));
        bundle.structType = structType.toStdString();
        bundle.structArrayVariableName =
            pc_stringByLowercasingFirstLetter(structType).toStdString();
    }
}

std::unique_ptr<FrameSlicedAnimationCode> FrameSlicedAnimationCode::make(
    ExportPlan& plan, PCLanguageCodeProvider& provider) {
    if (provider.language() == TargetLanguage::CurrentSwift) {
        return std::make_unique<SwiftFrameSlices>(plan, provider);
    }
    return std::make_unique<ObjCFrameSlices>(plan, provider);
}

bool FrameSlicedAnimationCode::writesText() const {
    return m_provider.implementationStringForFrameSlicedAnimations() &&
           !m_plan.frameSlicedAnimationExportBundles.empty();
}

void FrameSlicedAnimationCode::appendStructDefinitionAndValuesArrayForSlicedAnimations() {
    if (!writesText()) { return; }
    for (const Bundle& bundle : m_plan.frameSlicedAnimationExportBundles) {
        appendStructDefinition(bundle);
    }
}

void FrameSlicedAnimationCode::appendSlicedApplyFrameMethodsForSlicedAnimations() {
    if (!writesText()) { return; }
    appendMark();
    for (const Bundle& bundle : m_plan.frameSlicedAnimationExportBundles) {
        appendMethods(bundle);
    }
}

void FrameSlicedAnimationCode::appendStructValuesArrayForSlicedAnimations() {
    if (!writesText()) { return; }
    for (const Bundle& bundle : m_plan.frameSlicedAnimationExportBundles) {
        appendStructValuesArray(bundle);
    }
}

std::string FrameSlicedAnimationCode::structVariableName(const PlannedElement& planned,
                                                         const Timeline& timeline) {
    std::string name;
    append(name, "%@_%@", planned.variable,
           animationQualifierForPropertyType(timeline.propertyType()));
    return name;
}

// The table holds places in the parent, not offsets.
std::string_view FrameSlicedAnimationCode::playbackKeyPath(PCPropertyType propertyType) {
    if (propertyType == PCPropertyTypeTranslationX) { return "position.x"; }
    if (propertyType == PCPropertyTypeTranslationY) { return "position.y"; }
    return animationKeyPathForPropertyType(propertyType);
}

int32_t FrameSlicedAnimationCode::timeOfFrame(const Bundle& bundle, int32_t frame) {
    const float step =
        static_cast<float>(bundle.durationInMS) / static_cast<float>(bundle.numberOfFrameSlices);
    const float product = static_cast<float>(frame) * step;
    return cutToInt32(static_cast<double>(product) + 0.5);
}

double FrameSlicedAnimationCode::tableValue(const PlannedElement& planned, const Timeline& timeline,
                                            int32_t timeInMS) {
    const auto value = static_cast<double>(timeline.floatValueAtTimeInMS(timeInMS));
    if (timeline.propertyType() == PCPropertyTypeTranslationX) {
        return value + planned.element->position().x();
    }
    if (timeline.propertyType() == PCPropertyTypeTranslationY) {
        return value + planned.element->position().y();
    }
    return value;
}

}  // namespace tweenery
