#include "codegen/frame_sliced_animation_code.h"

#include "base/errors.h"
#include "base/limits.h"
#include "base/number_text.h"
#include "codegen/export_error.h"
#include "codegen/standard_animation_code.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// The name of a timeline's member of the frame table.
std::string structVariableName(const PlannedElement& planned,
                               const PCKeyedPropertyTimeline& timeline) {
    std::string name;
    append(name, "%@_%@", planned.variable,
           animationQualifierForPropertyType(timeline.propertyType()));
    return name;
}

std::string literal(std::string_view name) {
    return literalText(TargetLanguage::ObjectiveC, name);
}

std::string codeForAccessingView(const PlannedElement& planned) {
    std::string text;
    append(text, "((UIView *)self.viewsByName[@\"%@\"])", literal(planned.userName));
    return text;
}

std::string codeForAccessingLayer(const PlannedElement& planned) {
    std::string text;
    append(text, "[self.viewsByName[@\"%@\"] layer]", literal(planned.userName));
    return text;
}

// The table holds places in the parent, not offsets.
std::string_view playbackKeyPath(PCPropertyType propertyType) {
    if (propertyType == PCPropertyTypeTranslationX) { return "position.x"; }
    if (propertyType == PCPropertyTypeTranslationY) { return "position.y"; }
    return animationKeyPathForPropertyType(propertyType);
}

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

template <class Visit>
void FrameSlicedAnimationCode::forEachChangingTimeline(const Bundle& bundle, Visit visit) const {
    for (const auto& [element, timelines] : bundle.changingTimelinesByElement) {
        for (const auto* timeline : timelines) {
            visit(m_plan.planned(*element), *timeline);
        }
    }
}

void FrameSlicedAnimationCode::appendStructDefinitionAndValuesArrayForSlicedAnimations() {
    if (!writesText()) { return; }
    for (const Bundle& bundle : m_plan.frameSlicedAnimationExportBundles) {
        append(*m_header, "\n\ntypedef struct %@ {", bundle.structType);
        forEachChangingTimeline(bundle, [&](const PlannedElement& planned,
                                            const Timeline& timeline) {
            append(*m_header, "\n\t%@ %@;", timeline.EXPORT_propertyTypeAsString().toStdString(),
                   structVariableName(planned, timeline));
        });
        append(*m_header, "\n} %@;", bundle.structType);
        append(*m_header, "\n\nextern const %@ %@[%d];", bundle.structType,
               bundle.structArrayVariableName, bundle.numberOfFrameSlices);
    }
}

void FrameSlicedAnimationCode::appendSlicedApplyFrameMethodsForSlicedAnimations() {
    if (!writesText()) { return; }
    append(*m_header, "\n\n// Frame-sliced animations");
    append(*m_implementation, "\n\n#pragma mark - FrameSlicedAnimations");
    for (const Bundle& bundle : m_plan.frameSlicedAnimationExportBundles) {
        appendMethods(bundle);
    }
}

void FrameSlicedAnimationCode::appendMethods(const Bundle& bundle) {
    const std::string& name = bundle.baseMethodName;
    const int32_t frames = bundle.numberOfFrameSlices;
    append(*m_header, "\n\n// %@", name);
    append(*m_header, "\n- (void)apply%@State;", name);
    append(*m_implementation, "\n\n- (void)apply%@State\n{", name);
    generateCodeToApplyFrameSlicedValuesWithAnimation(bundle, true);
    append(*m_implementation, "\n}");

    append(*m_header, "\n- (void)apply%@Percent:(float)percent;  // 0 to 1", name);
    append(*m_implementation,
           "\n\n- (void)apply%@Percent:(float)percent \n{"
           "\n\tint frame = (int)((percent * %d) + 0.5) %% %d;"
           "\n\t[self apply%@Frame:frame];"
           "\n}",
           name, frames, frames, name);

    append(*m_header, "\n- (void)apply%@Frame:(int)frame;  // 0 to %d", name, frames - 1);
    append(*m_implementation, "\n\n- (void)apply%@Frame:(int)frame \n{", name);
    generateCodeToApplyFrameSlicedValuesWithAnimation(bundle, false);
    append(*m_implementation, "\n}");

    append(*m_header,
           "\n- (void)animate%@ForPlaybackFromPercentValues:(NSArray *)percentValues "
           "andTimes:(NSArray *)percentTimes;",
           name);
    append(*m_implementation,
           "\n- (void)animate%@ForPlaybackFromPercentValues:(NSArray *)percentValues "
           "andTimes:(NSArray *)percentTimes \n{",
           name);
    generateCodeToAnimateForPlaybackWithAnimation(bundle);
    append(*m_implementation, "\n}");
}

// The timelines of one element that meet in its transform and in its centre; null where absent.
struct FrameSlicedAnimationCode::ElementTransform {
    const Timeline* zRotation = nullptr;
    const Timeline* xScale = nullptr;
    const Timeline* yScale = nullptr;
    const Timeline* xTranslation = nullptr;
    const Timeline* yTranslation = nullptr;

    // False when the timeline belongs to neither.
    bool take(const Timeline& timeline) {
        switch (timeline.propertyType()) {
            case PCPropertyTypeZRotation:
                zRotation = &timeline;
                return true;
            case PCPropertyTypeScaleX:
                xScale = &timeline;
                return true;
            case PCPropertyTypeScaleY:
                yScale = &timeline;
                return true;
            case PCPropertyTypeTranslationX:
                xTranslation = &timeline;
                return true;
            case PCPropertyTypeTranslationY:
                yTranslation = &timeline;
                return true;
            default:
                return false;
        }
    }
};

void FrameSlicedAnimationCode::generateCodeToApplyFrameSlicedValuesWithAnimation(
    const Bundle& bundle, bool nonChanging) {
    if (!nonChanging) {
        append(*m_implementation, "\n\t%@ frameValues = %@[frame];", bundle.structType,
               bundle.structArrayVariableName);
    }
    for (const auto& [element, timelines] :
         nonChanging ? bundle.nonChangingTimelinesByElement : bundle.changingTimelinesByElement) {
        const PlannedElement& planned = m_plan.planned(*element);
        ElementTransform transform;
        for (const auto* timeline : timelines) {
            if (transform.take(*timeline)) { continue; }
            generateCodeToApplyStructValueFromTimeline(planned, *timeline, nonChanging);
        }
        generateCodeToApplyTransform(planned, transform, nonChanging);
        generateCodeToApplyTranslation(planned, transform, nonChanging);
    }
}

void FrameSlicedAnimationCode::generateCodeToApplyStructValueFromTimeline(
    const PlannedElement& planned, const Timeline& timeline, bool nonChanging) {
    if (isStringProperty(timeline.propertyType())) {
        append(*m_implementation,
               "\n\t((UIImageView *)(self.viewsByName[@\"%@\"])).image = [UIImage "
               "imageNamed:@\"%@\"];",
               literal(planned.userName), literal(planned.element->imageName().toStdString()));
        return;
    }
    assertContract(timeline.propertyType() == PCPropertyTypeOpacity,
                   u"** ERROR: ILLEGAL STATE **"_s);
    const std::string value = nonChanging ? valueAtStart(timeline)
                                          : "frameValues." + structVariableName(planned, timeline);
    append(*m_implementation, "\n\t%@.alpha = %@;", codeForAccessingView(planned), value);
}

std::string FrameSlicedAnimationCode::valueAtStart(const Timeline& timeline) const {
    if (m_plan.target.digits == NumberDigits::AllNeeded) {
        return number(timeline.floatValueAtTimeInMS(0));
    }
    return timeline.EXPORT_propertyValueAsStringAtTimeInMS(0).toStdString();
}

void FrameSlicedAnimationCode::generateCodeToApplyTransform(const PlannedElement& planned,
                                                            const ElementTransform& transform,
                                                            bool nonChanging) {
    const auto value = [&](const Timeline* timeline, double setup) -> std::string {
        if (!timeline) { return number(setup); }
        if (!nonChanging) { return "frameValues." + structVariableName(planned, *timeline); }
        return number(timeline->floatValueAtTimeInMS(0));
    };
    const PCElement& element = *planned.element;
    const std::string x = value(transform.xScale, element.scale().x());
    const std::string y = value(transform.yScale, element.scale().y());
    const std::string rotation = value(transform.zRotation, element.zRotation());
    const std::string view = codeForAccessingView(planned);
    const bool isScaled = transform.xScale || transform.yScale;
    if (isScaled && transform.zRotation) {
        append(*m_implementation,
               "\n\t%@.transform = CGAffineTransformScale(CGAffineTransformMakeRotation(%@), %@, "
               "%@);",
               view, rotation, x, y);
    } else if (isScaled) {
        append(*m_implementation, "\n\t%@.transform = CGAffineTransformMakeScale(%@, %@);", view, x,
               y);
    } else if (transform.zRotation) {
        append(*m_implementation, "\n\t%@.transform = CGAffineTransformMakeRotation(%@);", view,
               rotation);
    }
}

void FrameSlicedAnimationCode::generateCodeToApplyTranslation(const PlannedElement& planned,
                                                              const ElementTransform& transform,
                                                              bool nonChanging) {
    if (!transform.xTranslation && !transform.yTranslation) { return; }
    const auto value = [&](const Timeline* timeline, double position) -> std::string {
        if (!nonChanging) {
            return timeline ? "frameValues." + structVariableName(planned, *timeline)
                            : number(position);
        }
        const float offset = timeline ? timeline->floatValueAtTimeInMS(0) : 0;
        return number(position + static_cast<double>(offset));
    };
    const QPointF position = planned.element->position();
    append(*m_implementation, "\n\t%@.center = CGPointMake(%@,%@);", codeForAccessingView(planned),
           value(transform.xTranslation, position.x()),
           value(transform.yTranslation, position.y()));
}

void FrameSlicedAnimationCode::generateCodeToAnimateForPlaybackWithAnimation(const Bundle& bundle) {
    std::string& code = *m_implementation;
    const int32_t frames = bundle.numberOfFrameSlices;
    append(code, "\n\tfloat duration = [[percentTimes lastObject] floatValue];");
    forEachChangingTimeline(bundle, [&](const PlannedElement& planned, const Timeline& timeline) {
        append(code, "\n\tNSMutableArray *%@_Values = [NSMutableArray array];",
               structVariableName(planned, timeline));
    });
    append(code,
           "\n\tNSMutableArray *keyTimes = [NSMutableArray array];"
           "\n\n\tfor (int i = 0; i < percentValues.count; i++)\n{"
           "\n\t\tfloat percent = [percentValues[i] floatValue];"
           "\n\t\tint frame = (int)((percent * %d) + 0.5) %% %d;"
           "\n\t\t%@ frameValues = %@[frame];",
           frames, frames, bundle.structType, bundle.structArrayVariableName);
    forEachChangingTimeline(bundle, [&](const PlannedElement& planned, const Timeline& timeline) {
        const std::string name = structVariableName(planned, timeline);
        append(code, "\n\t\t[%@_Values addObject:@(frameValues.%@)];", name, name);
    });
    append(code,
           "\n\t\t[keyTimes addObject:@([percentTimes[i] floatValue] / duration)];"
           "\n\t}");
    forEachChangingTimeline(bundle, [&](const PlannedElement& planned, const Timeline& timeline) {
        generateAnimationCodeForTimeline(planned, timeline);
    });
}

void FrameSlicedAnimationCode::generateAnimationCodeForTimeline(const PlannedElement& planned,
                                                                const Timeline& timeline) {
    const std::string name = structVariableName(planned, timeline);
    append(*m_implementation,
           "\n\n\tCAKeyframeAnimation *%@_Animation = [CAKeyframeAnimation "
           "animationWithKeyPath:@\"%@\"];",
           name, playbackKeyPath(timeline.propertyType()));
    append(*m_implementation,
           "\n\t%@_Animation.duration = duration;"
           "\n\t%@_Animation.values = %@_Values;"
           "\n\t%@_Animation.keyTimes = keyTimes;"
           "\n\t%@_Animation.beginTime = AVCoreAnimationBeginTimeAtZero;"
           "\n\t%@_Animation.fillMode = kCAFillModeBoth;"
           "\n\t%@_Animation.removedOnCompletion = NO;",
           name, name, name, name, name, name, name);
    append(*m_implementation, "\n\t[%@ addAnimation:%@_Animation forKey:@\"%@\"];",
           codeForAccessingLayer(planned), name, name);
}

void FrameSlicedAnimationCode::appendStructValuesArrayForSlicedAnimations() {
    if (!writesText()) { return; }
    for (const Bundle& bundle : m_plan.frameSlicedAnimationExportBundles) {
        appendStructValuesArray(bundle);
    }
}

void FrameSlicedAnimationCode::appendStructValuesArray(const Bundle& bundle) {
    std::string& code = *m_implementation;
    const int32_t frames = bundle.numberOfFrameSlices;
    append(code, "\n\nconst %@ %@[%d] = {", bundle.structType, bundle.structArrayVariableName,
           frames);
    const float step = static_cast<float>(bundle.durationInMS) / static_cast<float>(frames);
    for (int32_t frame = 0; frame < frames; ++frame) {
        code += "\n\t{";
        const float product = static_cast<float>(frame) * step;
        const int32_t timeInMS = cutToInt32(static_cast<double>(product) + 0.5);
        bool isFirst = true;
        forEachChangingTimeline(bundle,
                                [&](const PlannedElement& planned, const Timeline& timeline) {
                                    if (!isFirst) { code += ", "; }
                                    isFirst = false;
                                    generateStructValueForTimeline(planned, timeline, timeInMS);
                                });
        code += frame + 1 < frames ? "}," : "}";
    }
    append(code, "\n};");
}

void FrameSlicedAnimationCode::generateStructValueForTimeline(const PlannedElement& planned,
                                                              const Timeline& timeline,
                                                              int32_t timeInMS) {
    auto value = static_cast<double>(timeline.floatValueAtTimeInMS(timeInMS));
    if (timeline.propertyType() == PCPropertyTypeTranslationX) {
        value += planned.element->position().x();
    } else if (timeline.propertyType() == PCPropertyTypeTranslationY) {
        value += planned.element->position().y();
    }
    *m_implementation += number(value);
}

}  // namespace tweenery
