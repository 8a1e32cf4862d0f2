#pragma once

#include <QHash>
#include <QString>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "editor/layers/screen_image.h"
#include "model/keyed_property_timeline.h"
#include "scene/keyframe_animation.h"

namespace tweenery {

class EditContext;

/// Turns timelines into the keyframe animations that play them on layers. One maker serves one
/// start of playback: an image, and the stacking of one parent's children, are looked up once for
/// all animations that show them. Edits of the project ask for a new maker.
class TimelineAnimations {
 public:
    /// The project must outlive the maker.
    explicit TimelineAnimations(EditContext& project) : m_project(project) {}

    /// The animation of the timeline on the layer of its element, from the layer's time 0 on. A
    /// children order gives the place of the element among its siblings, by its parent's order; a
    /// place that the order does not name is the element's own. An image that cannot be read shows
    /// nothing. No animation for the canvas, for a timeline without keyframes or element, and for
    /// the composite properties.
    std::optional<KeyframeAnimation> animation(const PCKeyedPropertyTimeline& timeline);

    /// What the timeline's animation is called on its layer: "walk_Opacity".
    static QString animationKeyForTimelineOnAnimationName(const PCKeyedPropertyTimeline& timeline,
                                                          const QString& animationName);
    /// Throws AssertionFailure for the Key All type.
    static QString animationQualifierForPropertyType(PCPropertyType type);

 private:
    using Timeline = PCKeyedPropertyTimeline;
    /// A place for each keyframe of the parent's order, by the identifier of the child.
    using PlacesOfChildren = QHash<QString, std::vector<double>>;

    EditContext& m_project;
    QHash<QString, ScreenImage> m_images;
    std::unordered_map<const PCElement*, PlacesOfChildren> m_placesByParent;

    std::optional<KeyframeAnimation> ownAnimation(const Timeline& timeline,
                                                  const PCElement& element);
    std::optional<KeyframeAnimation> stackingAnimation(const PCElement& element);
    KeyframeAnimation imageAnimation(const Timeline& timeline, const PCElement& element);
    const PlacesOfChildren& placesOfChildren(const PCElement& parent, const Timeline& order);
    const ScreenImage& imageWithName(const QString& name);
};

}  // namespace tweenery
