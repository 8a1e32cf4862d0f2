#pragma once

#include <QPointF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>

#include "base/identifier.h"
#include "base/undo_action.h"
#include "model/properties/easing.h"
#include "model/properties/property_type.h"
#include "model/properties/property_value.h"

namespace tweenery {

class PCKeyedPropertyTimeline;
class PCPropertyKeyframe;

/// The stored fields of one keyframe. A timeline keeps them packed; see PCKeyedPropertyTimeline.
struct KeyframeRecord {
    int32_t timeInMS = 0;
    PCEasingMode easingMode = PCEasingModeLinear;
    bool instantTransition = false;
    bool keyall = false;
    bool liveRecorded = false;
    bool liveRecordedStart = false;
    bool liveRecordedEnd = false;
    Identifier identifier;
    PropertyValue value;
};

/// The mode as a timeline can keep it: all modes that mean something, and others as others.
PCEasingMode packedEasingMode(PCEasingMode mode);
/// "(easeIn)" for descriptions; empty for linear.
QString easingSuffix(PCEasingMode mode);

/// Where keyframes are kept, as their handles see it: the timeline. Indices count from 0 in order
/// of time.
class KeyframeStore {
 public:
    virtual std::shared_ptr<PCKeyedPropertyTimeline> timeline() = 0;
    virtual PCPropertyType propertyType() const = 0;
    virtual const Identifier& identifierOfKeyframe(size_t index) const = 0;
    virtual int32_t timeOfKeyframe(size_t index) const = 0;
    virtual KeyframeRecord recordOfKeyframe(size_t index) const = 0;
    virtual std::shared_ptr<PCPropertyKeyframe> keyframeAtOrAfterTimeInMS(
        int32_t timeInMS) const = 0;
    virtual std::shared_ptr<PCPropertyKeyframe> keyframeAtOrBeforeTimeInMS(
        int32_t timeInMS) const = 0;

    /// Stores what a handle was given, as an unsaved change.
    virtual void rewriteKeyframe(size_t index, const KeyframeRecord& record) = 0;
    /// The handle goes.
    virtual void forgetHandle(size_t index) = 0;
    /// Tells of a change that is complete.
    virtual void didChange() = 0;
    /// Registers nothing where there is no element, as for the master timeline.
    virtual void registerUndoOfKeyframe(UndoAction inverse) = 0;

 protected:
    ~KeyframeStore() = default;
};

/// One value of one property at one time: a handle with identity on a keyframe that its timeline
/// keeps packed. A keyframe taken out of its timeline, or made without one, keeps its fields
/// itself. The easing and the instant flag govern the segment that ends at this keyframe.
class PCPropertyKeyframe : public std::enable_shared_from_this<PCPropertyKeyframe> {
 public:
    /// A keyframe that belongs to `timeline` but is not in its list yet: a new identifier, all
    /// other fields false, zero or empty.
    static std::shared_ptr<PCPropertyKeyframe> initWithPropertyTimeline(
        const std::shared_ptr<KeyframeStore>& timeline);
    static std::shared_ptr<PCPropertyKeyframe> initWithRecord(
        const std::shared_ptr<KeyframeStore>& timeline, KeyframeRecord record);
    ~PCPropertyKeyframe();
    PCPropertyKeyframe(const PCPropertyKeyframe&) = delete;
    PCPropertyKeyframe& operator=(const PCPropertyKeyframe&) = delete;

    /// The timeline that it belongs, or belonged, to; null when that has gone.
    std::shared_ptr<PCKeyedPropertyTimeline> timeline() const;
    bool isInTimeline() const { return m_owner != nullptr; }
    /// The place in the timeline's list. Throws AssertionFailure when it is in none.
    size_t index() const;
    std::shared_ptr<PCPropertyKeyframe> nextKeyframe() const;
    std::shared_ptr<PCPropertyKeyframe> prevKeyframe() const;

    const Identifier& identifier() const;
    /// Whole milliseconds from the start of the animation.
    int32_t timeInMS() const;
    bool instantTransition() const;
    PCEasingMode easingMode() const;
    bool keyall() const;
    bool liveRecorded() const;
    bool liveRecordedStart() const;
    bool liveRecordedEnd() const;

    /// Register the old value for undo, store, and report the change, even when the value is equal.
    void setInstantTransition(bool instant);
    void setEasingMode(PCEasingMode mode);
    /// Reports the change only when the keyframe has a value. No undo step; the timeline's order is
    /// broken until PCKeyedPropertyTimeline::updateKeyframeSort().
    void setTimeInMS(int32_t timeInMS);
    void setKeyall(bool keyall);
    void setLiveRecorded(bool recorded);
    void setLiveRecordedStart(bool start);
    void setLiveRecordedEnd(bool end);

    /// As stored: relative to the element's setup state.
    PropertyValue propertyValue() const;
    float floatPropertyValue() const { return floatOfValue(propertyValue()); }
    QPointF pointPropertyValue() const { return pointOfValue(propertyValue()); }
    QStringList arrayPropertyValue() const { return arrayOfValue(propertyValue()); }
    QString stringPropertyValue() const { return stringOfValue(propertyValue()); }
    /// Stores the value and reports nothing.
    void setPropertyValue(const PropertyValue& value);
    /// Store the value and report the change.
    void setFloatPropertyValue(float value) { setReportedValue(value); }
    void setPointPropertyValue(QPointF value) { setReportedValue(value); }
    void setArrayPropertyValue(const QStringList& value) { setReportedValue(value); }
    void setStringPropertyValue(const QString& value) { setReportedValue(value); }

    /// False when the property types differ; otherwise exact equality by the kind of the type.
    /// Types 10 and 11 are never equal.
    bool valueIsEqualToKeyframeValue(const PCPropertyKeyframe& other) const;

    /// "<time(INSTANT)(easing)|value>".
    QString description() const;

 private:
    friend class PCKeyedPropertyTimeline;
    PCPropertyKeyframe() = default;

    std::weak_ptr<KeyframeStore> m_store;
    KeyframeStore* m_owner = nullptr;  // set while in the timeline's list
    size_t m_index = 0;                // there
    KeyframeRecord m_record;           // while not in a list

    KeyframeRecord record() const;
    template <typename Change>
    void change(Change changeRecord);
    void reportChange();
    void setReportedValue(const PropertyValue& value);
    void registerUndo(UndoAction inverse);
};

}  // namespace tweenery
