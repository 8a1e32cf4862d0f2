#include "editor/timeline/keyframe_value_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/number_text.h"
#include "model/edit_context.h"
#include "model/images/image_set_manager.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// How a number is shown.
struct ShownUnit {
    double factor = 1;  // of the value
    QString text;
};

ShownUnit shownUnit(PCPropertyType type) {
    switch (type) {
        case PCPropertyTypeOpacity:
        case PCPropertyTypeScaleX:
        case PCPropertyTypeScaleY:
            return {100, u"%"_s};
        case PCPropertyTypeZRotation:
            return {180 / std::numbers::pi, u"°"_s};
        default:
            return {};
    }
}

QString withoutZeros(QString number) {
    while (number.endsWith(u'0')) {
        number.chop(1);
    }
    if (number.endsWith(u'.')) { number.chop(1); }
    return number == u"-0"_s ? u"0"_s : number;
}

}  // namespace

QString textOfKeyframeValue(const PCPropertyKeyframe& keyframe) {
    const auto timeline = keyframe.timeline();
    if (!timeline || !timeline->element()) { return {}; }
    const PropertyValue value = timeline->valueOfKeyframe(keyframe);
    if (const auto* name = std::get_if<QString>(&value)) { return *name; }
    const auto* number = std::get_if<float>(&value);
    if (!number) { return {}; }
    const ShownUnit unit = shownUnit(timeline->propertyType());
    const std::string shown = fixedText(static_cast<double>(*number) * unit.factor, 2);
    return withoutZeros(QString::fromStdString(shown)) + unit.text;
}

std::optional<PropertyValue> keyframeValueFromText(const QString& text,
                                                   const PCKeyedPropertyTimeline& timeline) {
    const PCPropertyType type = timeline.propertyType();
    EditContext* project = timeline.project();
    if (isStringProperty(type)) {
        if (!project || !project->imageSetManager().imageSetExistsWithName(text)) { return {}; }
        return text;
    }
    if (!isFloatProperty(type)) { return {}; }
    const ShownUnit unit = shownUnit(type);
    QString number = text.trimmed().replace(u',', u'.');
    if (!unit.text.isEmpty() && number.endsWith(unit.text)) { number.chop(1); }
    bool isNumber = false;
    const auto value = static_cast<float>(number.trimmed().toDouble(&isNumber) / unit.factor);
    if (!isNumber || !std::isfinite(value)) { return {}; }
    return type == PCPropertyTypeOpacity ? std::clamp(value, 0.0F, 1.0F) : value;
}

}  // namespace tweenery
