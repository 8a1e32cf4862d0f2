#pragma once

#include <functional>

#include "base/ports.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/timeline/animation_timelines.h"
#include "editor/timeline/keyframe_manager.h"
#include "editor/timeline/project_time_manager.h"
#include "model/project.h"

namespace tweenery {

/// What the commands of the timeline ask of the window's controller.
class KeyframeCommandsHost {
 public:
    /// Runs the edit as one step of undo of that name, which ends a run first.
    virtual void asOneStep(const QString& name, const std::function<void()>& edit) = 0;

 protected:
    ~KeyframeCommandsHost() = default;
};

/// Earlier or later in time.
enum class TimeDirection { Earlier = -1, Later = 1 };

/// Every edit of keyframes that is no gesture. Each is one step of undo with a name, and brings
/// back all that it changed; works on keyframes by what they are, never by when; and does nothing
/// in setup mode or where it has nothing to act on. Times and lengths are whole milliseconds, 0 or
/// more. Those that return text return why they could not be done, for the user; null after they
/// were.
class KeyframeCommands {
 public:
    using Keyframe = PCKeyedPropertyTimeline::KeyframePtr;
    using Keyframes = PCKeyedPropertyTimeline::Keyframes;
    using Timeline = PCKeyedPropertyTimeline::Ptr;

    /// All outlive this.
    KeyframeCommands(PCProject& project, PCKeyframeManager& keyframes,
                     PCElementSelectionManager& selection, PCProjectTimeManager& time,
                     KeyframeCommandsHost& host);
    KeyframeCommands(const KeyframeCommands&) = delete;
    KeyframeCommands& operator=(const KeyframeCommands&) = delete;

    // What there is to act on.

    bool isInAnimation() const { return !m_project.isSetupMode(); }
    bool hasKeyframes() const { return !m_keyframes.selectedKeyframes().empty(); }
    bool hasKeyframesOrTweens() const {
        return hasKeyframes() || !m_keyframes.selectedTweens().empty();
    }
    /// The rows of the selected keyframes; of the selected elements when there are none.
    Timelines rows() const;
    bool hasRows() const;
    /// From the earliest to the latest of the selected keyframes; 0 without two.
    int32_t lengthOfSelection() const;
    /// Keyframes that are no longer there are no longer selected, as after undo.
    void deselectDeleted();

    // Keyframes.

    /// A master keyframe at the playhead, and the mark on every keyframe that is there.
    void keyAll();
    /// The value that the timeline has at the playhead becomes a keyframe.
    void createKeyframe(const Timeline& timeline);
    /// The same on all rows().
    void createKeyframes();
    /// Selected tweens jump from then on, selected keyframes go. Where a master keyframe goes, the
    /// keyframes of its time stay and lose the mark.
    void deleteSelection();
    /// Instant ones tween from then on, and the others jump; not the orders of children.
    void switchTransitionType();
    bool canSwitchTransitionType() const;
    /// Decides the title: true when the earliest one jumps.
    bool selectionIsInstant() const;
    /// Of the selected tweens, or of the selected keyframes when there are none. easingModeInstant
    /// makes them jump.
    void setEasing(PCEasingMode mode);
    PCEasingMode defaultEasing() const { return m_project.preferences().defaultEasingMode(); }
    /// Of keyframes to come. No step of undo.
    void setDefaultEasing(PCEasingMode mode) { m_project.preferences().setDefaultEasingMode(mode); }

    // Rows.

    void deleteTimeline(const Timeline& timeline);
    /// All rows of the element.
    void deleteAllTimelines(const PCElement& element);
    /// The same for rows(), and for all rows of their elements.
    void deleteTimelines();
    void deleteAllTimelines();
    /// A combined row of scale or translation becomes two. Throws AssertionFailure for others.
    void splitTimeline(const PCKeyedPropertyTimeline& timeline);
    /// Once, forever, there and back. What has nothing to loop over stays, or becomes, once.
    void cycleLoopMode(const Timeline& timeline) { cycleLoopModes({timeline}); }
    /// All rows() take the mode that comes after that of the first.
    void cycleLoopModes() { cycleLoopModes(rows()); }

    // Selecting.

    void selectAll();
    void selectAtPlayhead();
    /// Those later than the playhead, not at it.
    void selectAfterPlayhead();
    /// All on the rows().
    void selectRows();
    void selectRow(const PCKeyedPropertyTimeline& timeline);
    void deselectAll();
    /// The keyframe after the latest, or before the earliest, on its row becomes the only one.
    void selectNeighbour(TimeDirection direction);

    // The playhead.

    /// To the next time at which any row, or Key All, has a keyframe. Nothing when there is none.
    void goToKeyframe(TimeDirection direction);

    // Time.

    /// Each selected keyframe to the tick before, or after, its own time. Nothing happens when the
    /// earliest, or the latest, would reach its neighbour or 0.
    void moveByTick(TimeDirection direction);
    /// By 1 ms. Nothing happens when one would reach a neighbour that is not selected, or leave
    /// the range of times.
    void nudge(TimeDirection direction);
    /// What was first becomes last, with the easings turned round.
    void reverse();
    /// The earliest stays, the latest comes `lengthInMS` after it, the others in proportion. Null
    /// text, or why not: a keyframe would reach or pass one of its row.
    QString stretchTo(int32_t lengthInMS);
    /// All rows and Key All: what is at the playhead or later comes `lengthInMS` later.
    QString insertTime(int32_t lengthInMS);
    /// What stands from the playhead on, for less than `lengthInMS`, goes; what comes after it
    /// closes up.
    QString removeTime(int32_t lengthInMS);

    // One keyframe.

    /// The one that is selected, if it is one.
    Keyframe singleKeyframe() const;
    /// The time: past others of its row, but not onto one. The value: absolute, of the property's
    /// kind, or nothing to leave it; see keyframe_value_text.h.
    QString setTimeAndValue(const Keyframe& keyframe, int32_t timeInMS,
                            const std::optional<PropertyValue>& value);

    // The clipboard; see keyframe_clip.h.

    void copy(PasteboardPort& pasteboard) const;
    void cut(PasteboardPort& pasteboard);
    static bool canPasteFrom(const PasteboardPort& pasteboard);
    /// The earliest comes to the playhead, the others after it; keyframes at those times are
    /// replaced. What was pasted is selected. Throws InputError for what is damaged.
    QString paste(const PasteboardPort& pasteboard);

 private:
    PCProject& m_project;
    PCKeyframeManager& m_keyframes;
    PCElementSelectionManager& m_selection;
    PCProjectTimeManager& m_time;
    KeyframeCommandsHost& m_host;

    using TimeOf = std::function<int32_t(int32_t timeInMS)>;

    void edit(const QString& name, const std::function<void()>& change);
    void select(const Keyframes& keyframes);
    void deleteKeyframes();
    void clearKeyallMarksAt(const std::unordered_set<int32_t>& times);
    void deleteTimelines(const QString& name, const Timelines& timelines);
    void cycleLoopModes(const Timelines& timelines);
    Timelines timelinesAndMaster() const;
    std::vector<RowKeyframes> selectedRows() const;
    void setTimes(const QString& name, const TimeOf& newTime);
    int32_t playhead() const { return m_time.playheadPositionInMS(); }
};

}  // namespace tweenery
