#include "codegen/objc_frame_slices.h"

#include "base/errors.h"
#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

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

std::string threeDecimals(double value) {
    return fixedText(value, 3);
}

}  // namespace

void ObjCFrameSlices::appendStructDefinition(const Bundle& bundle) {
    append(*m_header, "\n\ntypedef struct %@ {", bundle.structType);
    forEachChangingTimeline(bundle, [&](const PlannedElement& planned, const Timeline& timeline) {
        append(*m_header, "\n\t%@ %@;", timeline.EXPORT_propertyTypeAsString().toStdString(),
               structVariableName(planned, timeline));
    });
    append(*m_header, "\n} %@;", bundle.structType);
    append(*m_header, "\n\nextern const %@ %@[%d];", bundle.structType,
           bundle.structArrayVariableName, bundle.numberOfFrameSlices);
}

void ObjCFrameSlices::appendMark() {
    append(*m_header, "\n\n// Frame-sliced animations");
    append(*m_implementation, "\n\n#pragma mark - FrameSlicedAnimations");
}

void ObjCFrameSlices::appendMethods(const Bundle& bundle) {
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
struct ObjCFrameSlices::ElementTransform {
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

void ObjCFrameSlices::generateCodeToApplyFrameSlicedValuesWithAnimation(const Bundle& bundle,
                                                                        bool nonChanging) {
    if (!nonChanging) {
        append(*m_implementation, "\n\t%@ frameValues = %@[frame];", bundle.structType,
               bundle.structArrayVariableName);
    }
    for (const auto& [element, timelines] :
         nonChanging ? bundle.nonChangingTimelinesByElement : bundle.changingTimelinesByElement) {
        const PlannedElement& planned = plan().planned(*element);
        ElementTransform transform;
        for (const auto* timeline : timelines) {
            if (transform.take(*timeline)) { continue; }
            generateCodeToApplyStructValueFromTimeline(planned, *timeline, nonChanging);
        }
        generateCodeToApplyTransform(planned, transform, nonChanging);
        generateCodeToApplyTranslation(planned, transform, nonChanging);
    }
}

void ObjCFrameSlices::generateCodeToApplyStructValueFromTimeline(const PlannedElement& planned,
                                                                 const Timeline& timeline,
                                                                 bool nonChanging) {
    if (isStringProperty(timeline.propertyType())) {
        append(*m_implementation,
               "\n\t((UIImageView *)(self.viewsByName[@\"%@\"])).image = [UIImage "
               "imageNamed:@\"%@\"];",
               literal(planned.userName), literal(planned.element->imageName().toStdString()));
        return;
    }
    assertContract(timeline.propertyType() == PCPropertyTypeOpacity,
                   u"** ERROR: ILLEGAL STATE **"_s);
    const std::string value = nonChanging
                                  ? timeline.EXPORT_propertyValueAsStringAtTimeInMS(0).toStdString()
                                  : "frameValues." + structVariableName(planned, timeline);
    append(*m_implementation, "\n\t%@.alpha = %@;", codeForAccessingView(planned), value);
}

void ObjCFrameSlices::generateCodeToApplyTransform(const PlannedElement& planned,
                                                   const ElementTransform& transform,
                                                   bool nonChanging) {
    const auto value = [&](const Timeline* timeline, double setup) -> std::string {
        if (!timeline) { return threeDecimals(setup); }
        if (!nonChanging) { return "frameValues." + structVariableName(planned, *timeline); }
        return threeDecimals(static_cast<double>(timeline->floatValueAtTimeInMS(0)));
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

void ObjCFrameSlices::generateCodeToApplyTranslation(const PlannedElement& planned,
                                                     const ElementTransform& transform,
                                                     bool nonChanging) {
    if (!transform.xTranslation && !transform.yTranslation) { return; }
    const auto value = [&](const Timeline* timeline, double position) -> std::string {
        if (!nonChanging) {
            return timeline ? "frameValues." + structVariableName(planned, *timeline)
                            : threeDecimals(position);
        }
        const float offset = timeline ? timeline->floatValueAtTimeInMS(0) : 0;
        return threeDecimals(position + static_cast<double>(offset));
    };
    const QPointF position = planned.element->position();
    append(*m_implementation, "\n\t%@.center = CGPointMake(%@,%@);", codeForAccessingView(planned),
           value(transform.xTranslation, position.x()),
           value(transform.yTranslation, position.y()));
}

void ObjCFrameSlices::generateCodeToAnimateForPlaybackWithAnimation(const Bundle& bundle) {
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

void ObjCFrameSlices::generateAnimationCodeForTimeline(const PlannedElement& planned,
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

void ObjCFrameSlices::appendStructValuesArray(const Bundle& bundle) {
    std::string& code = *m_implementation;
    const int32_t frames = bundle.numberOfFrameSlices;
    append(code, "\n\nconst %@ %@[%d] = {", bundle.structType, bundle.structArrayVariableName,
           frames);
    for (int32_t frame = 0; frame < frames; ++frame) {
        code += "\n\t{";
        const int32_t timeInMS = timeOfFrame(bundle, frame);
        bool isFirst = true;
        forEachChangingTimeline(bundle,
                                [&](const PlannedElement& planned, const Timeline& timeline) {
                                    if (!isFirst) { code += ", "; }
                                    isFirst = false;
                                    appendFixed(code, tableValue(planned, timeline, timeInMS), 3);
                                });
        code += frame + 1 < frames ? "}," : "}";
    }
    append(code, "\n};");
}

}  // namespace tweenery
