#include "editor/timeline/keyframe_value_text.h"

#include <algorithm>
#include <numbers>

#include "base/typed_number.h"
#include "model/edit_context.h"
#include "model/images/image_set_manager.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

struct ShownUnit {
    NumberUnit unit = NumberUnit::Points;
    double factor = 1;  // of the value
    QString text;
};

ShownUnit shownUnit(PCPropertyType type) {
    switch (type) {
        case PCPropertyTypeOpacity:
        case PCPropertyTypeScaleX:
        case PCPropertyTypeScaleY:
            return {NumberUnit::Percent, 100, u"%"_s};
        case PCPropertyTypeZRotation:
            return {NumberUnit::Degrees, 180 / std::numbers::pi, u"°"_s};
        default:
            return {};
    }
}

TypedKeyframeValue typedImage(const QString& name, const PCKeyedPropertyTimeline& timeline) {
    EditContext* project = timeline.project();
    if (project && project->imageSetManager().imageSetExistsWithName(name)) { return {name, {}}; }
    return {{}, u"The project has no image “%1”."_s.arg(name)};
}

}  // namespace

QString textOfKeyframeValue(const PCPropertyKeyframe& keyframe) {
    const auto timeline = keyframe.timeline();
    if (!timeline || !timeline->element()) { return {}; }
    const PropertyValue value = timeline->valueOfKeyframe(keyframe);
    if (const auto* name = std::get_if<QString>(&value)) { return *name; }
    const auto* number = std::get_if<float>(&value);
    if (!number) { return {}; }
    const ShownUnit shown = shownUnit(timeline->propertyType());
    return typedNumberText(static_cast<double>(*number) * shown.factor) + shown.text;
}

TypedKeyframeValue typedKeyframeValue(const QString& text, const PCPropertyKeyframe& keyframe) {
    const auto timeline = keyframe.timeline();
    if (!timeline) { return {{}, u"The keyframe is no longer there."_s}; }
    const PropertyValue present = timeline->valueOfKeyframe(keyframe);
    if (std::holds_alternative<QString>(present)) { return typedImage(text, *timeline); }
    const auto* number = std::get_if<float>(&present);
    if (!number) { return {{}, u"This value is not typed."_s}; }
    const PCPropertyType type = timeline->propertyType();
    const ShownUnit shown = shownUnit(type);
    const TypedNumber typed =
        typedNumber(text, shown.unit, static_cast<double>(*number) * shown.factor);
    if (!typed.number) { return {{}, typed.reason}; }
    const auto value = static_cast<float>(*typed.number / shown.factor);
    return {type == PCPropertyTypeOpacity ? std::clamp(value, 0.0F, 1.0F) : value, {}};
}

}  // namespace tweenery
