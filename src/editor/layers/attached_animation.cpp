#include "editor/layers/attached_animation.h"

#include "editor/layers/element_layer.h"
#include "editor/layers/timeline_animations.h"
#include "model/project.h"

namespace tweenery {

PCElement::Elements attachAnimation(PCProject& project, const PCAnimation& animation,
                                    double beginTime) {
    PCElement::Elements animated;
    TimelineAnimations animations(project);
    for (const auto& [identifier, group] : animation.timelineGroups()) {
        const PCElement::Ptr element = project.elementForIdentifier(identifier);
        PCLayer* layer = element ? PCLayer::of(*element) : nullptr;
        if (!layer) { continue; }
        animated.push_back(element);
        for (const PCKeyedPropertyTimeline::Ptr& timeline : group->allTimelines()) {
            const bool isOpacity = timeline->propertyType() == PCPropertyTypeOpacity;
            if (isOpacity && element->hidden()) { continue; }
            auto played = animations.animation(*timeline);
            if (!played) { continue; }
            played->beginTime = beginTime;
            layer->addAnimation(std::move(*played),
                                TimelineAnimations::animationKeyForTimelineOnAnimationName(
                                    *timeline, animation.name()));
        }
    }
    return animated;
}

void detachAnimation(Layer& layer, const QString& animationName) {
    for (const PCPropertyType type : timelineGroupOrder()) {
        layer.removeAnimationForKey(animationName + u'_' +
                                    TimelineAnimations::animationQualifierForPropertyType(type));
    }
}

}  // namespace tweenery
