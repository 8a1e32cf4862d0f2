#include "editor/inspector/inspector_values.h"

#include <cmath>

#include "editor/canvas/timed_element.h"

namespace tweenery {
namespace {

// Numbers of 32 bits lie a little beside what was meant: 115 percent are kept as 1.14999998.
double wholeTowardZero(double value) {
    const double nearest = std::round(value);
    const double slack = std::max(1e-4, std::abs(value) * 1e-6);
    return std::abs(value - nearest) < slack ? nearest : std::trunc(value);
}

double degrees(double radians) {
    return radians * 180 / M_PI;
}

struct Shown {
    QPointF place;
    QPointF scale;
    double rotation = 0;
    double opacity = 1;
};

Shown shown(PCElement& element, EditTime when) {
    if (when.isSetup()) {
        return {element.position(), element.scale(), element.zRotation(), element.opacity()};
    }
    const ElementValues values = element.valuesAtTimeInMS(when.timeInMS());
    return {values.translation, values.scale, values.rotation, values.opacity};
}

// A number of the first element, as long as those that follow compare equal to it.
class Common {
 public:
    void add(double value, double compared) {
        const double whole = wholeTowardZero(compared);
        if (!m_hasFirst) {
            m_hasFirst = true;
            m_first = value;
            m_whole = whole;
        }
        m_differs = m_differs || whole != m_whole;
    }
    std::optional<double> value() const {
        return m_hasFirst && !m_differs ? std::optional(m_first) : std::nullopt;
    }

 private:
    bool m_hasFirst = false;
    bool m_differs = false;
    double m_first = 0;
    double m_whole = 0;
};

bool hasKeyframeAt(const PCKeyedPropertyTimeline& timeline, int32_t timeInMS) {
    const size_t index = timeline.firstKeyframeIndexAtOrAfterTimeInMS(timeInMS);
    return index < timeline.keyframesCount() && timeline.timeOfKeyframe(index) == timeInMS;
}

KeyState keyStateOf(const PCElement& element, InspectorPaneKind pane, int32_t timeInMS) {
    KeyState state = KeyState::NotAnimated;
    for (const PCPropertyType type : keyedTypes(pane)) {
        const PCKeyedPropertyTimeline::Ptr timeline = element.timeline(type);
        if (!timeline || timeline->isEmpty()) { continue; }
        if (hasKeyframeAt(*timeline, timeInMS)) { return KeyState::KeyframeHere; }
        state = KeyState::Animated;
    }
    return state;
}

void addKeyStates(const PCElement& element, EditTime when, InspectorValues& values) {
    if (when.isSetup()) { return; }
    for (size_t i = 0; i < kInspectorPaneCount; ++i) {
        if (values.keys[i] == KeyState::KeyframeHere) { continue; }
        values.keys[i] =
            std::max(values.keys[i],
                     keyStateOf(element, static_cast<InspectorPaneKind>(i), when.timeInMS()));
    }
}

}  // namespace

InspectorValues inspectorValues(const PCProject& project,
                                const PCElementSelectionManager& selection, EditTime when) {
    InspectorValues values;
    const auto set = [&values](InspectorField field, std::optional<double> value) {
        values.fields[static_cast<size_t>(field)] = value;
    };
    set(InspectorField::CanvasWidth, project.canvas()->size().width());
    set(InspectorField::CanvasHeight, project.canvas()->size().height());

    Common x;
    Common y;
    Common scaleX;
    Common scaleY;
    Common rotation;
    Common opacity;
    const auto elements = selection.selectedElements();
    values.areScalesLocked = !elements.empty();
    for (const PCElement::Ptr& element : elements) {
        const Shown now = shown(*element, when);
        x.add(now.place.x(), now.place.x());
        y.add(now.place.y(), now.place.y());
        scaleX.add(now.scale.x() * 100, now.scale.x() * 100);
        scaleY.add(now.scale.y() * 100, now.scale.y() * 100);
        rotation.add(now.rotation, now.rotation);
        opacity.add(now.opacity, now.opacity);
        values.areScalesLocked = values.areScalesLocked && element->scalesLocked();
        addKeyStates(*element, when, values);
    }
    if (elements.empty()) { addKeyStates(*project.canvas(), when, values); }
    set(InspectorField::PositionX, x.value());
    set(InspectorField::PositionY, y.value());
    set(InspectorField::ScaleX, scaleX.value());
    set(InspectorField::ScaleY, scaleY.value());
    values.dialRadians = rotation.value().value_or(0);
    values.sliderOpacity = opacity.value().value_or(1);
    if (rotation.value()) { set(InspectorField::Rotation, degrees(*rotation.value())); }
    if (opacity.value()) { set(InspectorField::Opacity, *opacity.value() * 100); }
    return values;
}

QString textAtRest(InspectorField field, std::optional<double> value) {
    if (!value) { return {}; }
    const bool isWhole = field != InspectorField::Rotation && field != InspectorField::Opacity;
    return typedNumberText(isWhole ? wholeTowardZero(*value) : *value);
}

QString textInUse(std::optional<double> value) {
    return value ? typedNumberText(*value) : QString();
}

}  // namespace tweenery
