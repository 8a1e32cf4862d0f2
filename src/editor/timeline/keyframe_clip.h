#pragma once

#include <QVariant>
#include <vector>

#include "editor/timeline/animation_timelines.h"

namespace tweenery {

/// Copied keyframes as they wait on the clipboard, for this window, another one or another program
/// that runs. Values are stored ones, relative to the setup state, so that they fit an element with
/// another; orders of children and images go by their names.
struct KeyframeClip {
    static const QString kPasteboardType;

    struct Key {
        int32_t offsetInMS = 0;  // after the earliest of the clip
        PropertyValue value;
        PCEasingMode easing = PCEasingModeLinear;
        bool instant = false;
    };
    struct Track {
        QString elementName;
        QString elementIdentifier;
        PCPropertyType property = PCPropertyTypeOpacity;
        std::vector<Key> keys;  // by time, no two of one
    };
    std::vector<Track> tracks;

    /// Of several keyframes at one time in a row the one that shows is taken; master keyframes are
    /// left out.
    static KeyframeClip copyOf(const std::vector<RowKeyframes>& rows);
    QVariant propertyList() const;
    /// Throws InputError for what is no clip.
    static KeyframeClip fromPropertyList(const QVariant& list);
    int32_t lengthInMS() const;
};

/// A track of a clip and the element that it is pasted onto.
struct ClipTarget {
    const KeyframeClip::Track* track = nullptr;
    PCElement::Ptr element;
};
struct ClipTargets {
    std::vector<ClipTarget> targets;
    QString refusal;  // why there are none
};

/// Where the tracks go: what comes from one element onto each selected one; what comes from as many
/// elements as are selected onto those, each onto its own if they are the same, else in the order
/// of the tree; all else back onto its own elements, which are known by their identifiers, or else
/// by their names. The clip outlives the result.
ClipTargets targetsOf(const KeyframeClip& clip, PCProject& project,
                      const PCElement::Elements& selected);

/// The value as the element can have it: nothing for an image that the project has not, and for an
/// order none of whose names is that of a child.
PropertyValue pasteableValue(const PropertyValue& value, PCPropertyType property,
                             const PCElement& element);

}  // namespace tweenery
