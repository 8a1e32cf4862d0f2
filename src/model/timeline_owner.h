#pragma once

#include <QString>

#include "model/properties/property_type.h"
#include "model/properties/property_value.h"
#include "model/properties/repeat_behavior.h"

namespace tweenery {

class EditContext;
class PCElement;
class PCKeyedPropertyTimeline;

/// What a timeline needs of the element whose property it animates, which is it.
class TimelineOwner {
 public:
    virtual PCElement* element() = 0;
    /// Null outside of a project.
    virtual EditContext* project() const = 0;
    virtual const QString& name() const = 0;
    /// What the property is without an animation.
    virtual PropertyValue setupValueForPropertyType(PCPropertyType type) const = 0;
    /// Of a float property; 0 for others.
    virtual float setupNumberForPropertyType(PCPropertyType type) const = 0;
    /// Of the order in which the element stands among its siblings; never without one.
    virtual PCRepeatBehavior repeatBehaviorOfSiblingsOrder() const = 0;
    /// The timeline changed, or is no longer, or not yet, of this element.
    virtual void forgetSamplesOf(const PCKeyedPropertyTimeline& timeline) const = 0;

 protected:
    ~TimelineOwner() = default;
};

}  // namespace tweenery
