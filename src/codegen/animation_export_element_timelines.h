#pragma once

#include <QString>
#include <QVarLengthArray>

#include "model/element.h"
#include "model/keyed_property_timeline.h"

namespace tweenery {

/// One element's stored timelines in one animation: private copies, any of which may be absent.
struct PCAnimationExportElementTimelines {
    using Timeline = PCKeyedPropertyTimeline::Ptr;
    using PresentTimelines = QVarLengthArray<PCKeyedPropertyTimeline*, kElementTimelineCount>;

    PCElement::Ptr element;
    Timeline xScale;
    Timeline yScale;
    Timeline xPosition;
    Timeline yPosition;
    Timeline zRotation;
    Timeline opacity;
    Timeline zPosition;
    Timeline contents;

    /// Also sets the element on each present timeline.
    void setElement(const PCElement::Ptr& newElement);
    /// The longest present timeline, in milliseconds; -1 when none is present.
    int32_t maxDurationInMS() const;
    bool hasLooping() const;
    /// The present ones in the order in which generated code has them: rotation, opacity, children
    /// order, image, x scale, y scale, x translation, y translation.
    PresentTimelines allNonNilTimelines() const;
    /// The present ones in the order in which they are lengthened and sliced: rotation, opacity,
    /// x scale, y scale, x translation, y translation, image, children order.
    PresentTimelines slicingOrder() const;
    /// For logs.
    QString description() const;
};

/// A stored file of an element, and the field that it goes to.
struct ElementTimelineFile {
    QString fileName;
    PCPropertyType slot;  // of the timelines of an element
    PCAnimationExportElementTimelines::Timeline PCAnimationExportElementTimelines::*field;
};
/// The file of that name; null for any other name.
const ElementTimelineFile* elementTimelineFileNamed(const QString& fileName);

}  // namespace tweenery
