#include "codegen/preview_likeness.h"

#include <algorithm>

namespace tweenery {

QStringList imagesShown(const PCKeyedPropertyTimeline& timeline) {
    QStringList names;
    if (timeline.isEmpty()) { return names; }
    if (timeline.timeOfKeyframe(0) > 0) { names << stringOfValue(timeline.setupValue()); }
    for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
        names << stringOfValue(timeline.storedValueOfKeyframe(i));
    }
    names.removeDuplicates();
    return names;
}

bool tweensBeyondOpacities(const PCKeyedPropertyTimeline& timeline) {
    const auto held = [](float opacity) { return std::clamp(opacity, 0.0F, 1.0F); };
    float before = floatOfValue(timeline.setupValue());
    for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
        const float start = before;
        const float end = timeline.floatValueOfKeyframeAtIndex(i);
        before = end;
        const bool hasSpan = timeline.timeOfKeyframe(i) > 0 && !timeline.keyframeIsInstant(i);
        if (!hasSpan || held(start) == held(end)) { continue; }
        if (held(start) != start || held(end) != end) { return true; }
    }
    return false;
}

}  // namespace tweenery
