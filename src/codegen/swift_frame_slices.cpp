#include "codegen/swift_frame_slices.h"

#include <algorithm>

#include "base/number_text.h"

namespace tweenery {

namespace {

// About as many values as a compiler takes well in one function.
constexpr int32_t kValuesOfPart = 1000;

int32_t changingCount(const PCAnimationExportBundle& bundle) {
    size_t count = 0;
    for (const auto& [element, timelines] : bundle.changingTimelinesByElement) {
        count += static_cast<size_t>(timelines.size());
    }
    return static_cast<int32_t>(count);
}

// The frame that a share of the whole shows, as an expression.
std::string frameOf(std::string_view percent, const PCAnimationExportBundle& bundle) {
    std::string text;
    append(text, "Int(Double(min(max(0, %@), 1) * %d) + 0.5) %% %d", percent,
           bundle.numberOfFrameSlices, bundle.numberOfFrameSlices);
    return text;
}

}  // namespace

struct SwiftFrameSlices::Part {
    const PlannedElement& planned;
    const Record& record;
    const QVarLengthArray<PCKeyedPropertyTimeline*, kElementTimelineCount>& timelines;
    bool changing = false;

    bool has(const PCKeyedPropertyTimeline::Ptr& timeline) const {
        return timeline && timelines.contains(timeline.get());
    }
    // A timeline's value as an expression: that of the frame, or the one that it always has;
    // `setup` without a timeline.
    std::string value(const PCKeyedPropertyTimeline::Ptr& timeline, double setup,
                      std::string_view type) const {
        if (changing && has(timeline)) {
            const std::string member =
                "frameValues." + FrameSlicedAnimationCode::structVariableName(planned, *timeline);
            return type.empty() ? member : std::string(type) + '(' + member + ')';
        }
        const double constant =
            timeline ? FrameSlicedAnimationCode::tableValue(planned, *timeline, 0) : setup;
        return fixedText(constant, 3);
    }
};

std::string SwiftFrameSlices::comment(const Bundle& bundle) const {
    return commentText(TargetLanguage::CurrentSwift, bundle.animation->name().toStdString());
}

// What an element is called, with what follows for a view or for a layer.
std::string SwiftFrameSlices::part(const PlannedElement& planned, std::string_view ofView,
                                   std::string_view ofLayer) const {
    std::string text;
    append(text, "self.%@[\"%@\"]?.%@", isMac() ? "layersByName" : "viewsByName",
           literalText(TargetLanguage::CurrentSwift, planned.userName), isMac() ? ofLayer : ofView);
    return text;
}

void SwiftFrameSlices::appendStructDefinition(const Bundle& bundle) {
    append(m_code,
           "\n\n/// What changes from frame to frame of the animation \"%@\"."
           "\nstruct %@ {",
           comment(bundle), bundle.structType);
    forEachChangingTimeline(bundle, [&](const PlannedElement& planned, const Timeline& timeline) {
        append(m_code, "\n\tlet %@: Float", structVariableName(planned, timeline));
    });
    if (changingCount(bundle) > 0) {
        append(m_code, "\n\n\tinit(_ values: [Float], from first: Int) {");
        int32_t place = 0;
        forEachChangingTimeline(bundle,
                                [&](const PlannedElement& planned, const Timeline& timeline) {
                                    append(m_code, "\n\t\tself.%@ = values[first + %d]",
                                           structVariableName(planned, timeline), place++);
                                });
        append(m_code, "\n\t}");
    }
    append(m_code, "\n}");
}

void SwiftFrameSlices::appendMark() {
    provider().addCodeMarkWithName("FrameSlicedAnimations");
}

void SwiftFrameSlices::appendMethods(const Bundle& bundle) {
    const std::string& name = bundle.baseMethodName;
    const std::string animation = comment(bundle);
    append(m_code,
           "\n\n\t/// Sets what stays the same in all frames of the animation \"%@\"; call it once "
           "before them."
           "\n\tfunc apply%@State() {",
           animation, name);
    appendParts(bundle, false);
    append(m_code, "\n\t}");

    append(m_code,
           "\n\n\t/// Shows the animation \"%@\", of %0.3f seconds, at a share of it from 0 to 1."
           "\n\tfunc apply%@Percent(_ percent: Float) {"
           "\n\t\tself.apply%@Frame(%@)"
           "\n\t}",
           animation, bundle.durationInMS / 1000.0, name, name, frameOf("percent", bundle));

    append(m_code,
           "\n\n\t/// Shows a frame of the animation \"%@\", from 0 to %d."
           "\n\tfunc apply%@Frame(_ frame: Int) {",
           animation, bundle.numberOfFrameSlices - 1, name);
    if (changingCount(bundle) > 0) {
        append(m_code,
               "\n\t\tguard %@.indices.contains(frame) else { return }"
               "\n\t\tlet frameValues = %@[frame]",
               bundle.structArrayVariableName, bundle.structArrayVariableName);
        appendParts(bundle, true);
    }
    append(m_code, "\n\t}");

    append(m_code,
           "\n\n\t/// Plays the animation \"%@\" through shares of it, from 0 to 1, at as many "
           "times, in seconds."
           "\n\tfunc animate%@ForPlaybackFromPercentValues(_ percentValues: [Float], "
           "andTimes percentTimes: [Float]) {",
           animation, name);
    if (changingCount(bundle) > 0) { appendPlayback(bundle); }
    append(m_code, "\n\t}");
}

// On the desktop the parts are layers, which would glide to their values by themselves.
void SwiftFrameSlices::appendParts(const Bundle& bundle, bool changing) {
    const auto& elements =
        changing ? bundle.changingTimelinesByElement : bundle.nonChangingTimelinesByElement;
    if (elements.empty()) { return; }
    if (isMac()) {
        append(m_code,
               "\n\t\tCATransaction.begin()"
               "\n\t\tCATransaction.setDisableActions(true)");
    }
    auto record = bundle.timelinesByElement.begin();
    for (const auto& [element, timelines] : elements) {
        // Both are in tree order.
        while (record->element != element) {
            ++record;
        }
        appendPart({plan().planned(*element), *record, timelines, changing});
    }
    if (isMac()) { append(m_code, "\n\t\tCATransaction.commit()"); }
}

void SwiftFrameSlices::appendPart(const Part& part) {
    const Record& record = part.record;
    if (part.has(record.opacity)) {
        append(m_code, "\n\t\t%@ = %@", this->part(part.planned, "alpha", "opacity"),
               part.value(record.opacity, 1, isMac() ? "" : "CGFloat"));
    }
    if (part.has(record.contents)) { appendImage(part); }
    if (part.has(record.zRotation) || part.has(record.xScale) || part.has(record.yScale)) {
        appendTransform(part);
    }
    if (part.has(record.xPosition) || part.has(record.yPosition)) { appendPlace(part); }
}

void SwiftFrameSlices::appendTransform(const Part& part) {
    const PCElement& element = *part.planned.element;
    const std::string x = part.value(part.record.xScale, element.scale().x(), "CGFloat");
    const std::string y = part.value(part.record.yScale, element.scale().y(), "CGFloat");
    const std::string turn = part.value(part.record.zRotation, element.zRotation(), "CGFloat");
    const std::string transform = this->part(part.planned, "transform", "transform");
    if (isMac()) {
        append(m_code,
               "\n\t\t%@ = CATransform3DScale(CATransform3DMakeRotation(%@, 0, 0, 1), %@, %@, 1.0)",
               transform, turn, x, y);
    } else {
        append(m_code, "\n\t\t%@ = CGAffineTransform(rotationAngle: %@).scaledBy(x: %@, y: %@)",
               transform, turn, x, y);
    }
}

void SwiftFrameSlices::appendPlace(const Part& part) {
    const QPointF position = part.planned.element->position();
    append(m_code, "\n\t\t%@ = CGPoint(x: %@, y: %@)",
           this->part(part.planned, "center", "position"),
           part.value(part.record.xPosition, position.x(), "CGFloat"),
           part.value(part.record.yPosition, position.y(), "CGFloat"));
}

void SwiftFrameSlices::appendImage(const Part& part) {
    std::string image;
    provider().codeForNamedImage(
        image, stringOfValue(part.record.contents->valueAtTimeInMS(0)).toStdString());
    const std::string name = literalText(TargetLanguage::CurrentSwift, part.planned.userName);
    if (isMac()) {
        append(m_code, "\n\t\tself.layersByName[\"%@\"]?.contents = %@", name, image);
    } else if (part.planned.type == PCCodeGeneratorType::Button) {
        append(m_code, "\n\t\t(self.viewsByName[\"%@\"] as? UIButton)?.setImage(%@, for: .normal)",
               name, image);
    } else {
        append(m_code, "\n\t\t(self.viewsByName[\"%@\"] as? UIImageView)?.image = %@", name, image);
    }
}

void SwiftFrameSlices::appendPlayback(const Bundle& bundle) {
    append(m_code,
           "\n\t\tguard let duration = percentTimes.last, duration > 0, "
           "percentValues.count == percentTimes.count else { return }"
           "\n\t\tlet frames = percentValues.map { %@[%@] }"
           "\n\t\tlet keyTimes = percentTimes.map { NSNumber(value: $0 / duration) }",
           bundle.structArrayVariableName, frameOf("$0", bundle));
    forEachChangingTimeline(bundle, [&](const PlannedElement& planned, const Timeline& timeline) {
        const std::string name = structVariableName(planned, timeline);
        append(m_code,
               "\n\n\t\tlet %@_Animation = CAKeyframeAnimation(keyPath: \"%@\")"
               "\n\t\t%@_Animation.duration = CFTimeInterval(duration)"
               "\n\t\t%@_Animation.values = frames.map { $0.%@ }"
               "\n\t\t%@_Animation.keyTimes = keyTimes",
               name, playbackKeyPath(timeline.propertyType()), name, name, name, name);
        append(m_code,
               "\n\t\t%@_Animation.beginTime = AVCoreAnimationBeginTimeAtZero"
               "\n\t\t%@_Animation.fillMode = .both"
               "\n\t\t%@_Animation.isRemovedOnCompletion = false"
               "\n\t\t%@(%@_Animation, forKey: \"%@\")",
               name, name, name, part(planned, "layer.add", "add"), name, name);
    });
}

void SwiftFrameSlices::appendStructValuesArray(const Bundle& bundle) {
    const int32_t frames = bundle.numberOfFrameSlices;
    const int32_t count = changingCount(bundle);
    append(m_code, "\n\nlet %@: [%@] = ", bundle.structArrayVariableName, bundle.structType);
    if (count == 0) {
        append(m_code, "Array(repeating: %@(), count: %d)", bundle.structType, frames);
        return;
    }
    append(m_code, "{\n\tvar values: [Float] = []");
    const int32_t framesOfPart = std::max(1, kValuesOfPart / count);
    int32_t part = 0;
    for (int32_t first = 0; first < frames; first += framesOfPart) {
        append(m_code, "\n\tfunc values%d() -> [Float] {\n\t\treturn [", ++part);
        const int32_t end = std::min(frames, first + framesOfPart);
        for (int32_t frame = first; frame < end; ++frame) {
            const int32_t timeInMS = timeOfFrame(bundle, frame);
            m_code += "\n\t\t\t";
            int32_t place = 0;
            forEachChangingTimeline(
                bundle, [&](const PlannedElement& planned, const Timeline& timeline) {
                    if (place++ > 0) { m_code += ", "; }
                    appendFixed(m_code, tableValue(planned, timeline, timeInMS), 3);
                });
            if (frame + 1 < end) { m_code += ','; }
        }
        append(m_code,
               "\n\t\t]"
               "\n\t}"
               "\n\tvalues += values%d()",
               part);
    }
    append(m_code,
           "\n\treturn (0 ..< %d).map { %@(values, from: $0 * %d) }"
           "\n}()",
           frames, bundle.structType, count);
}

}  // namespace tweenery
