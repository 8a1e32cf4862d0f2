#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/listener_set.h"
#include "base/undo_action.h"
#include "base/weak_ref.h"
#include "model/properties/easing.h"
#include "model/properties/packed_keyframes.h"
#include "model/properties/property_type.h"
#include "model/properties/repeat_behavior.h"
#include "model/property_keyframe.h"
#include "model/timeline_owner.h"
#include "storage/keyed_archiver.h"
#include "storage/keyed_unarchiver.h"

namespace tweenery {

class PCElement;
class PCKeyedPropertyTimeline;
class EditContext;
class UndoManager;

/// Told of every change of a timeline: its keyframes, their values, its repeat behaviour.
class PCKeyedPropertyTimelineChangeListener {
 public:
    virtual ~PCKeyedPropertyTimelineChangeListener() = default;
    virtual void keyedPropertyTimelineDidChange(PCKeyedPropertyTimeline& timeline) = 0;
};

/// What a timeline's archive says of it without its keyframes being decoded.
struct TimelineSummary {
    PCRepeatBehavior repeatBehavior = PCRepeatBehaviorNever;
    int32_t durationInMS = 0;
    size_t keyframesCount = 0;
};

/// The keyframes of one property of one element in one animation, and the value of that property at
/// any time. Keyframes hold values relative to the element's setup state: ratios for scale and
/// opacity, differences for rotation, offsets for translation. Absolute values exist only at the
/// surface of this class. Times are signed 32-bit milliseconds, 0 or greater.
///
/// The keyframes are kept packed, sorted by time; PCPropertyKeyframe is a handle on one of them,
/// made when asked for and the same as long as somebody holds it. Two that were moved to one time
/// both stay there: the later in the list is the one that shows from then on, and that is found and
/// written by the time.
class PCKeyedPropertyTimeline final : public Archivable,
                                      public KeyframeStore,
                                      public std::enable_shared_from_this<PCKeyedPropertyTimeline> {
    struct Passkey {};

 public:
    using Ptr = std::shared_ptr<PCKeyedPropertyTimeline>;
    using KeyframePtr = std::shared_ptr<PCPropertyKeyframe>;
    using Keyframes = std::vector<KeyframePtr>;
    /// The platform's not-found index.
    static constexpr size_t kNotFound = static_cast<size_t>(-1);

    /// An empty timeline. `element` may be null (the master keyframes timeline).
    static Ptr initForElement(const std::shared_ptr<TimelineOwner>& element, PCPropertyType type);
    /// Reads an archived timeline. Throws InputError when it is none. The result counts as changed.
    static Ptr initWithArchive(const KeyedUnarchiver& archive);
    static Ptr unarchive(const QByteArray& data, const QString& entry);
    /// For one read from a file, when the property stored in it has no file today, such as the
    /// "xScale" of old packages: it becomes `type`, for which the file's name stands, and of points
    /// takes the x or the y.
    void takeTypeOfFile(PCPropertyType type);
    /// True when it has, until it is written.
    bool isOfOlderVersion() const { return m_isOfOlderVersion; }
    /// For the export's private timelines: without the keyframes' identifiers and the marks of
    /// recording and Key All, which no export shows.
    static Ptr EXPORT_unarchive(const QByteArray& data, const QString& entry);
    static TimelineSummary summaryOfArchive(const QByteArray& data, const QString& entry);
    /// For the factories only: the passkey is private.
    PCKeyedPropertyTimeline(Passkey, PCPropertyType type) : m_propertyType(type) {}
    /// An independent timeline with the same type, behaviour, keyframes and element.
    Ptr copy() const;
    ~PCKeyedPropertyTimeline() override;
    PCKeyedPropertyTimeline(const PCKeyedPropertyTimeline&) = delete;
    PCKeyedPropertyTimeline& operator=(const PCKeyedPropertyTimeline&) = delete;

    /// Makes the archive of the timeline as it stands now, on any thread.
    std::function<QByteArray()> archiveMadeLater() const;
    ArchiveClass archiveClass() const override { return {"PCKeyedPropertyTimeline"}; }
    void encodeWithCoder(KeyedEncoder& coder) const override;

    PCPropertyType propertyType() const override { return m_propertyType; }
    /// Null for a timeline just loaded, for the master timeline, and once the element has gone.
    PCElement* element() const;
    void setElement(const std::shared_ptr<TimelineOwner>& element);
    /// The same, as what the timeline knows of it.
    const TimelineOwner* owner() const { return m_owner.get(); }
    EditContext* project() const;
    void setProject(const std::weak_ptr<EditContext>& project) { m_project = project; }
    /// Not owned; told as long as the subscription is kept.
    Subscription addChangeListener(PCKeyedPropertyTimelineChangeListener* listener);
    bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }
    /// Clearing says that the timeline has just been written.
    void setHasUnsavedChanges(bool unsaved) {
        m_hasUnsavedChanges = unsaved;
        m_isAsStored = m_isAsStored || !unsaved;
        m_isOfOlderVersion = m_isOfOlderVersion && unsaved;
    }
    /// True when nothing has changed since the timeline was read or written. A timeline that was
    /// read counts as unsaved all the same.
    bool isAsStored() const { return m_isAsStored; }
    PCRepeatBehavior repeatBehavior() const {
        return static_cast<PCRepeatBehavior>(m_repeatBehavior);
    }
    /// Stores, marks as changed, tells the listeners. A change can be undone.
    void setRepeatBehavior(PCRepeatBehavior behavior);
    /// For the layer animation that shows the element's own place among its siblings: for children
    /// orders the parent element's children-order timeline decides. Values at a time go by the
    /// timeline's own behaviour, as playing and the export do.
    bool autoreversesFromCurrentRepeatBehavior() const;
    /// Infinity, or 0 when the timeline plays once; decided likewise.
    float repeatCountFromCurrentRepeatBehavior() const;
    /// False when there is nothing to loop over: no keyframe, or one alone at 0.
    bool canRepeat() const { return !m_keys.empty() && (m_keys.size() > 1 || m_times[0] != 0); }
    bool isInstantTransition() const { return propertyTypeRow(m_propertyType).onlyJumps; }

    // Value queries, absolute.

    PropertyValue valueAtTimeInMS(int32_t timeInMS) const;
    float floatValueAtTimeInMS(int32_t timeInMS) const;
    QPointF pointValueAtTimeInMS(int32_t timeInMS) const;
    QStringList arrayValueAtTimeInMS(int32_t timeInMS) const;
    QString stringValueAtTimeInMS(int32_t timeInMS) const;
    /// The time inside the timeline, with loops and autoreverse taken off.
    float effectiveTimeForTimeInMS(int32_t timeInMS) const;
    /// The same in whole milliseconds, which is how keyframes are looked up.
    int32_t effectiveMillisecondsForTimeInMS(int32_t timeInMS) const {
        return wholeMilliseconds(effectiveTimeForTimeInMS(timeInMS));
    }
    static int32_t wholeMilliseconds(float effectiveTime) {
        // The largest times round up past the integers when they become floats.
        return effectiveTime >= 2147483648.0F ? INT32_MAX : static_cast<int32_t>(effectiveTime);
    }
    PropertyValue valueOfKeyframe(const PCPropertyKeyframe& keyframe) const;
    /// The same for the keyframe at `index` (below keyframesCount()).
    PropertyValue valueOfKeyframeAtIndex(size_t index) const;
    float floatValueOfKeyframeAtIndex(size_t index) const;
    /// What the timeline answers when it has nothing better; nothing without an element.
    PropertyValue setupValue() const;
    /// The stored value of that keyframe as it stands, or setupValue() when there is none.
    PropertyValue keyframeValueAtOrBeforeTimeInMS(int32_t timeInMS) const;
    PropertyValue keyframeValueAtOrAfterTimeInMS(int32_t timeInMS) const;
    bool timeInMSIsBeforeFirstKeyframe(int32_t timeInMS) const;
    bool isEmpty() const { return m_keys.empty(); }
    size_t keyframesCount() const { return m_keys.size(); }
    int32_t durationInMS() const { return m_keys.empty() ? 0 : m_times.back(); }
    bool validateTimeForKeyframesAreSorted() const;

    /// Values nearer to 0 than 0.05 become 0.05 with their sign (0 itself becomes 0.05), so that a
    /// ratio to them stays finite.
    static float floatParsedByThreshold(float value);
    /// The value at `effectiveTime` on the segment from (startTime, startValue) to (endTime,
    /// endValue), all in milliseconds, by the end's easing mode.
    static float interpolateFloatForEffectiveTimeInMS(int32_t effectiveTime, int32_t startTime,
                                                      float startValue, int32_t endTime,
                                                      float endValue, PCEasingMode easing);

    // Keyframe lookup, by binary search.

    Keyframes keyframesSortedByTime() const;
    /// Of several at the time the last, which is the one that shows.
    KeyframePtr existingKeyframeAtTimeInMS(int32_t timeInMS) const;
    size_t firstKeyframeIndexAtOrAfterTimeInMS(int32_t timeInMS) const;
    /// Despite its name the last keyframe at or before that time.
    size_t firstKeyframeIndexAtOrBeforeTimeInMS(int32_t timeInMS) const;
    KeyframePtr keyframeAtOrAfterTimeInMS(int32_t timeInMS) const override;
    KeyframePtr keyframeAtOrBeforeTimeInMS(int32_t timeInMS) const override;
    KeyframePtr existingKeyframeAtKeyframeIndex(size_t index) const;
    /// Of two at the same distance the earlier; null for an empty timeline.
    KeyframePtr keyframeClosestToTimeInMS(int32_t timeInMS) const;
    /// The same as an index; kNotFound for an empty timeline.
    size_t indexOfKeyframeClosestToTimeInMS(int32_t timeInMS) const;
    /// Both bounds included.
    Keyframes keyframesBetweenStartTime(int32_t startTime, int32_t endTime) const;

    // The packed keyframes, read without making handles; `index` is below keyframesCount().

    /// Good until the timeline changes.
    PackedKeyframes packedKeyframes() const {
        return {m_times.data(), m_keys.data(), static_cast<uint32_t>(m_keys.size())};
    }
    /// Beside the packed keyframes, where one holds something else than a number; else null.
    const PropertyValue* valueObjects() const {
        return m_otherValues ? m_otherValues->data() : nullptr;
    }
    int32_t timeOfKeyframe(size_t index) const override { return m_times[index]; }
    PCEasingMode easingModeOfKeyframe(size_t index) const {
        return static_cast<PCEasingMode>(m_keys[index].easingMode);
    }
    bool keyframeIsInstant(size_t index) const { return m_keys[index].has(kInstant); }
    PropertyValue storedValueOfKeyframe(size_t index) const;
    KeyframeRecord recordOfKeyframe(size_t index) const override;
    /// The handle of the keyframe at `index` while somebody holds it, else null: makes none.
    KeyframePtr heldKeyframe(size_t index) const;

    // Edits. Each returns the keyframe written. Undo steps go to the project's undo manager.

    /// Takes an absolute value, stores the relative one.
    /// What overflows is cut to the greatest number; not a number becomes 0.
    KeyframePtr setFloatPropertyValue(float value, int32_t timeInMS);
    KeyframePtr setPointPropertyValue(QPointF value, int32_t timeInMS);
    KeyframePtr setArrayPropertyValue(const QStringList& value, int32_t timeInMS);
    KeyframePtr setStringPropertyValue(const QString& value, int32_t timeInMS);
    /// Stores `value` as it stands, whatever its kind.
    KeyframePtr setStoredPropertyValue(const PropertyValue& value, int32_t timeInMS);
    /// The same for a keyframe of this timeline, wherever it stands.
    void setStoredPropertyValue(const PropertyValue& value, const KeyframePtr& keyframe);
    /// The keyframe at the time, or a new one with the default easing, without a value.
    KeyframePtr retrieveOrCreateKeyframeAtTimeInMS(int32_t timeInMS);
    /// Pins the present value: reads it at the time and writes it back there.
    KeyframePtr setExistingValueAtTimeInMS(int32_t timeInMS);
    /// Nothing happens for a keyframe that is not in this timeline. Undone, it is the same handle
    /// with its time and value, but a new identifier and the default easing.
    void deleteKeyframe(const KeyframePtr& keyframe);
    /// A new keyframe 1 ms later with the source's stored value and instant flag, before one that
    /// is there already. Null when there is no later time.
    KeyframePtr duplicateKeyframe(const KeyframePtr& keyframe);
    /// Moves the keyframe closest to `fromTime`.
    void moveKeyframeAtTimeInMS(int32_t fromTime, int32_t toTime);
    /// Moves these keyframes by `deltaInMS`, all at once: one step of undo, one report, one sort,
    /// which leaves those of one time in their order. Others than this timeline's stay. Throws
    /// AssertionFailure, and moves none, when a new time is no 32-bit number.
    void moveKeyframes(const Keyframes& keyframes, int64_t deltaInMS);
    void removeAllKeyframes();

    // Edits of many keyframes, in one sort and one report each. Undo brings back all that they had.

    struct KeyframeTime {
        KeyframePtr keyframe;
        int32_t timeInMS = 0;
    };
    /// The same to a time for each.
    void setTimes(const std::vector<KeyframeTime>& times);
    /// Others than this timeline's stay. What is left may have nothing to loop over; then it stops
    /// repeating.
    void deleteKeyframes(const Keyframes& keyframes);
    /// Each record takes the place of the keyframe that shows at its time, which keeps its
    /// identifier, or comes in with a new one. Returns the keyframes written. No two records are of
    /// one time.
    Keyframes writeKeyframes(const std::vector<KeyframeRecord>& records);
    /// duplicateKeyframe() of each; one that has no later time, or is another timeline's, gets
    /// none. Returns pairs of a source and its copy.
    std::vector<std::pair<KeyframePtr, KeyframePtr>> duplicateKeyframes(const Keyframes& keyframes);
    /// For what registers nothing itself, before it: key-all marks, removeAllKeyframes().
    void registerUndoOfContents();

    /// Replaces the list; the keyframes become this timeline's.
    void setKeyframes(const Keyframes& keyframes);
    void updateKeyframeSort();

    // Export queries. Only ever called on the export's private copies.

    /// Holds the last value until then; `tweens` says whether by a keyframe that tweens or jumps.
    void EXPORT_setDurationInTimeInMS(int32_t durationInMS, bool tweens);
    /// True when every stored value equals the value at time 0 and the value at every other time
    /// does as well; true for an empty timeline.
    bool EXPORT_isNonChanging() const;
    bool EXPORT_allKeyframeValuesEqual(const PropertyValue& value) const;
    QString EXPORT_propertyTypeAsString() const;
    QString EXPORT_propertyValueAsStringAtTimeInMS(int32_t timeInMS) const;

    QString displayString() const;
    QString debugDescription() const;

    // For the handles.

    Ptr timeline() override { return shared_from_this(); }
    const Identifier& identifierOfKeyframe(size_t index) const override {
        return m_identifiers[index];
    }
    void rewriteKeyframe(size_t index, const KeyframeRecord& record) override;
    void forgetHandle(size_t index) override;
    void didChange() override;
    void registerUndoOfKeyframe(UndoAction inverse) override;

 private:
    using Key = PackedKeyframe;
    using Held = PackedKeyframe::Held;
    using enum PackedKeyframe::Flag;
    using Handles = std::vector<PCPropertyKeyframe*>;
    using OtherValues = std::vector<PropertyValue>;

    PCPropertyType m_propertyType;
    int8_t m_repeatBehavior = PCRepeatBehaviorNever;
    bool m_hasUnsavedChanges = false;
    bool m_isAsStored = false;
    bool m_isOfOlderVersion = false;
    WeakRef<TimelineOwner> m_owner;
    std::vector<int32_t> m_times;
    std::vector<Key> m_keys;  // parallel to m_times, like the three below
    std::vector<Identifier> m_identifiers;
    std::unique_ptr<OtherValues> m_otherValues;  // only when one is no number
    mutable std::unique_ptr<Handles> m_handles;  // once one was asked for
    std::weak_ptr<EditContext> m_project;        // of a timeline without an element
    std::unique_ptr<ListenerSet<PCKeyedPropertyTimelineChangeListener>>
        m_listeners;  // once one came

    enum class Fields { All, Exported };
    static Ptr decode(const KeyedUnarchiver& archive, Fields fields);
    static void encodeKeyframe(KeyedEncoder& coder, const KeyframeRecord& record,
                               PCPropertyType type);

    /// A keyframe's time and its place in the list.
    struct Placement {
        KeyframePtr keyframe;
        int32_t timeInMS = 0;
        size_t index = 0;
    };
    using Placements = std::vector<Placement>;
    using IndexedHandles = std::vector<std::pair<size_t, KeyframePtr>>;
    /// Everything that edits change, with the handles that were held.
    struct Snapshot {
        Ptr lists;
        IndexedHandles handles;
    };

    /// Before the edit that it undoes.
    void registerUndo(UndoAction inverse);
    bool isPlayedBack() const;
    std::shared_ptr<const Snapshot> snapshot() const;
    IndexedHandles heldHandles() const;
    void restore(const Snapshot& former);
    void attachByIdentifier(const IndexedHandles& handles);
    void takeOut(const KeyframePtr& keyframe);
    void putIn(const KeyframePtr& keyframe, size_t index);
    void recreate(const KeyframePtr& keyframe, size_t index);
    void insertHandle(const KeyframePtr& keyframe, size_t index, const KeyframeRecord& record);
    void eraseKeyframe(const KeyframePtr& keyframe);
    void stopRepeatingIfInVain();
    Placements placementsOf(const Keyframes& keyframes) const;
    void place(const Placements& placements);

    PCRepeatBehavior currentRepeatBehavior() const;
    FactorAndOffset factorAndOffset() const;
    float setupNumber() const;
    const PropertyValue* otherValueAt(int32_t timeInMS) const;
    KeyframePtr handleAt(size_t index) const;
    KeyframeRecord recordOfDuplicate(const PCPropertyKeyframe& keyframe) const;
    void attach(PCPropertyKeyframe& handle, size_t index);
    void detach(PCPropertyKeyframe& handle);
    void renumberHandles(size_t from);
    void restoreOrder();
    std::vector<size_t> indicesByTime() const;
    void arrange(const std::vector<size_t>& order);
    void writeRecord(size_t index, const KeyframeRecord& record);
    void writeValue(size_t index, const PropertyValue& value);
    void insertRecord(size_t index, const KeyframeRecord& record, PCPropertyKeyframe* handle);
    void appendRecord(const KeyframeRecord& record);
    void eraseAt(size_t index);
    void detachAll();
    void reserveLists(size_t count);
    void clearLists();
    void contentsDidChange();
    void tellOfChange();
    void forgetSamples() const;
    KeyframeRecord newKeyframeRecord(int32_t timeInMS) const;
    UndoManager* undoManager() const;
    PropertyValue heldValueAt(int32_t effectiveTime) const;
    bool staysAt(const PropertyValue& value) const;
};

}  // namespace tweenery
