#include "editor/layers/timeline_animations.h"

#include <algorithm>

#include "base/errors.h"
#include "model/project.h"
#include "model/properties/easing.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Timeline = PCKeyedPropertyTimeline;

// Stands for the element's setup value where a keyframe's index is asked for.
constexpr size_t kSetup = Timeline::kNotFound;

// One value of an animation: that of a keyframe, or of the setup state.
struct Entry {
    size_t keyframe = kSetup;
    double keyTime = 0;
    PCEasingMode easingMode = PCEasingModeLinear;  // of the span that ends here
};

// Half a millisecond before an instant keyframe its predecessor's value is shown for the last
// time.
constexpr double kHoldEndsBeforeInMS = 0.5;

std::vector<Entry> entriesOf(const Timeline& timeline) {
    const size_t count = timeline.keyframesCount();
    const int32_t duration = timeline.durationInMS();
    // Nothing moves: the last keyframe holds from the beginning.
    if (duration <= 0) { return {{count - 1}}; }
    std::vector<Entry> entries;
    entries.reserve(2 * count + 1);
    if (timeline.timeOfKeyframe(0) > 0) { entries.push_back({}); }
    for (size_t i = 0; i < count; ++i) {
        const int32_t time = timeline.timeOfKeyframe(i);
        const PCEasingMode easing = timeline.easingModeOfKeyframe(i);
        if (timeline.keyframeIsInstant(i) && !entries.empty()) {
            const double holdEnd = static_cast<double>(time) - kHoldEndsBeforeInMS;
            entries.push_back({entries.back().keyframe, holdEnd / duration, easing});
        }
        const float keyTime = static_cast<float>(time) / static_cast<float>(duration);
        entries.push_back({i, static_cast<double>(keyTime), easing});
    }
    return entries;
}

TimingFunction timingFunctionForEasingMode(PCEasingMode mode) {
    const auto modes = easingModes();
    const bool isKnown = mode >= 0 && mode < static_cast<int64_t>(modes.size());
    const EasingMode& row = modes[static_cast<size_t>(isKnown ? mode : PCEasingModeLinear)];
    return {row.x1, row.y1, row.x2, row.y2};
}

// Everything of an animation but its values and its repeats.
KeyframeAnimation animationWithEntries(const Timeline& timeline, LayerProperty property,
                                       const std::vector<Entry>& entries) {
    KeyframeAnimation animation;
    animation.property = property;
    animation.keyTimes.reserve(entries.size());
    animation.timingFunctions.reserve(entries.size());
    double lastKeyTime = 0;
    for (const Entry& entry : entries) {
        // Hours from the start 32-bit fractions are coarser than a millisecond, and a time may
        // round past its successor.
        lastKeyTime = std::max(lastKeyTime, entry.keyTime);
        animation.keyTimes.push_back(lastKeyTime);
        const bool isFirst = &entry == &entries.front();
        if (isFirst) {
            continue;  // nothing leads up to it
        }
        animation.timingFunctions.push_back(timingFunctionForEasingMode(entry.easingMode));
    }
    animation.duration =
        static_cast<double>(static_cast<float>(std::max(timeline.durationInMS(), 0)) / 1000.0F);
    return animation;
}

// `valueAt(i)` is the value of the keyframe at an index.
template <typename ValueAt>
KeyframeAnimation numberAnimation(const Timeline& timeline, LayerProperty property,
                                  double setupValue, ValueAt valueAt) {
    const std::vector<Entry> entries = entriesOf(timeline);
    KeyframeAnimation animation = animationWithEntries(timeline, property, entries);
    animation.values.reserve(entries.size());
    for (const Entry& entry : entries) {
        const bool isSetup = entry.keyframe == kSetup;
        animation.values.push_back(isSetup ? setupValue : valueAt(entry.keyframe));
    }
    return animation;
}

}  // namespace

std::optional<KeyframeAnimation> TimelineAnimations::animation(const Timeline& timeline) {
    const PCElement* element = timeline.element();
    if (!element || !element->parentElement()) { return std::nullopt; }
    auto animation = timeline.propertyType() == PCPropertyTypeChildrenZPositions
                         ? stackingAnimation(*element)
                         : ownAnimation(timeline, *element);
    if (!animation) { return std::nullopt; }
    animation->repeatCount = static_cast<double>(timeline.repeatCountFromCurrentRepeatBehavior());
    animation->autoreverses = timeline.autoreversesFromCurrentRepeatBehavior();
    return animation;
}

std::optional<KeyframeAnimation> TimelineAnimations::ownAnimation(const Timeline& timeline,
                                                                  const PCElement& element) {
    const PCPropertyType type = timeline.propertyType();
    const auto property = layerPropertyForKeyPath(keyPathForPropertyType(type));
    if (!property || timeline.isEmpty()) { return std::nullopt; }
    if (type == PCPropertyTypeImageContents) { return imageAnimation(timeline, element); }
    const float setupValue = floatOfValue(element.setupValueForPropertyType(type));
    return numberAnimation(timeline, *property, static_cast<double>(setupValue), [&](size_t i) {
        return static_cast<double>(timeline.floatValueOfKeyframeAtIndex(i));
    });
}

std::optional<KeyframeAnimation> TimelineAnimations::stackingAnimation(const PCElement& element) {
    const PCElement& parent = *element.parentElement();
    const auto order = parent.childrenZPositionsTimeline();
    if (!order || order->isEmpty()) { return std::nullopt; }
    const PlacesOfChildren& all = placesOfChildren(parent, *order);
    const std::vector<double>& places = *all.constFind(element.identifier().toString());
    return numberAnimation(*order, LayerProperty::ZPosition, element.index(),
                           [&places](size_t i) { return places[i]; });
}

// In one pass over each keyframe's array, not in a search of it for each child.
const TimelineAnimations::PlacesOfChildren& TimelineAnimations::placesOfChildren(
    const PCElement& parent, const Timeline& order) {
    const auto [entry, isNew] = m_placesByParent.try_emplace(&parent);
    PlacesOfChildren& places = entry->second;
    if (!isNew) { return places; }
    double own = 0;
    for (const PCElement::Ptr& child : parent.children()) {
        places.insert(child->identifier().toString(),
                      std::vector<double>(order.keyframesCount(), own++));
    }
    for (size_t i = 0; i < order.keyframesCount(); ++i) {
        const QStringList stored = arrayOfValue(order.storedValueOfKeyframe(i));
        // Backwards: an identifier that is there twice counts where it comes first.
        for (qsizetype place = stored.size(); place-- > 0;) {
            const auto child = places.find(stored[place]);
            if (child != places.end()) { (*child)[i] = static_cast<double>(place); }
        }
    }
    return places;
}

KeyframeAnimation TimelineAnimations::imageAnimation(const Timeline& timeline,
                                                     const PCElement& element) {
    const std::vector<Entry> entries = entriesOf(timeline);
    KeyframeAnimation animation = animationWithEntries(timeline, LayerProperty::Contents, entries);
    animation.images.reserve(entries.size());
    animation.imageScales.reserve(entries.size());
    for (const Entry& entry : entries) {
        const ScreenImage& shown =
            imageWithName(entry.keyframe == kSetup
                              ? element.imageName()
                              : stringOfValue(timeline.storedValueOfKeyframe(entry.keyframe)));
        animation.images.push_back(shown.image);
        animation.imageScales.push_back(shown.scale);
    }
    return animation;
}

const ScreenImage& TimelineAnimations::imageWithName(const QString& name) {
    auto known = m_images.find(name);
    if (known == m_images.end()) {
        known = m_images.insert(name, screenImageWithName(m_project, name));
    }
    return *known;
}

QString TimelineAnimations::animationKeyForTimelineOnAnimationName(const Timeline& timeline,
                                                                   const QString& animationName) {
    return u"%1_%2"_s.arg(animationName,
                          animationQualifierForPropertyType(timeline.propertyType()));
}

QString TimelineAnimations::animationQualifierForPropertyType(PCPropertyType type) {
    const char* qualifier = propertyTypeRow(type).playbackQualifier;
    if (!qualifier) { failContract(u"* propertype not supported for animationqualifier"_s); }
    return QString::fromLatin1(qualifier);
}

}  // namespace tweenery
