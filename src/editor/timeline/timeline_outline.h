#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/handler_set.h"
#include "base/notification_centre.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/timeline/keyframe_manager.h"
#include "model/project.h"

namespace tweenery {

/// One row of the timeline: of an element, of one of its timelines, or the blank one at the end.
struct TimelineRow {
    PCElement::Ptr element;                 // null: the blank row
    PCKeyedPropertyTimeline::Ptr timeline;  // null: the row of the element itself, or the blank one

    bool isBlank() const { return element == nullptr; }
    bool isTimeline() const { return timeline != nullptr; }
};

/// Which rows the timeline has, and which of them are selected. The canvas comes first, then every
/// element with keyframes in the selected animation, in the order of the list of elements, each
/// above its timelines, unless the user collapsed it; at the end comes a blank row. Elements that
/// come are expanded.
///
/// Keeps one entry for each element with keyframes and nothing for rows or keyframes. Brings itself
/// up to date when it is asked, after any number of changes. Main thread only.
class TimelineOutline : private PCKeyedPropertyTimelineChangeListener,
                        private PCAnimationsManagerChangeListener,
                        private PCElementSelectionManagerListener {
 public:
    using Elements = PCElement::Elements;
    using Timelines = std::vector<PCKeyedPropertyTimeline::Ptr>;
    using Rows = std::vector<int>;

    /// All outlive this.
    TimelineOutline(PCProject& project, PCElementSelectionManager& selection,
                    PCKeyframeManager& keyframes);
    TimelineOutline(const TimelineOutline&) = delete;
    TimelineOutline& operator=(const TimelineOutline&) = delete;

    /// Called whenever something may look different: rows, keyframes in them, which are selected;
    /// often, so that whoever draws waits for the end of the event loop's turn.
    Subscription addChangeHandler(std::function<void()> handler) {
        return m_changeHandlers.add(std::move(handler));
    }
    /// Another number whenever other rows stand in the list than before.
    uint64_t rowsRevision() const;

    // Rows, by numbers from 0.

    int rowCount() const;
    /// `row` is below rowCount().
    TimelineRow row(int row) const;
    /// -1 without a row.
    int rowOf(const PCElement& element) const;
    int rowOf(const PCKeyedPropertyTimeline& timeline) const;
    /// The canvas, and every element with keyframes, whether it has rows or not.
    Elements elementsWithTimelines() const;
    /// Those that are not empty, in the order of rows.
    static Timelines timelinesForElement(const PCElement& element);
    /// Of all timelines of elementsWithTimelines(), in milliseconds; 0 without a keyframe.
    int32_t lastKeyframeTimeInMS() const;

    bool isExpanded(const PCElement& element) const;
    void setExpanded(const PCElement& element, bool isExpanded);
    /// Rows of the canvas and of selected elements only.
    bool showsOnlySelected() const { return m_showsOnlySelected; }
    void setShowsOnlySelected(bool only);

    // Selection. Elements are selected in the whole window; of timelines, the list itself knows.

    /// An element's row is selected with the element, and with one of its timelines; that of the
    /// canvas when nothing else is.
    bool isSelected(int row) const;
    Rows selectedRows() const;
    /// The user has made these rows the selected ones, which selects their elements, unless they
    /// are locked, and all keyframes of their timelines, and no other. Nothing happens in setup
    /// mode.
    void selectRows(const Rows& rows);
    /// A press on a row: alone, with Control beside the others, or out of them, with Shift all from
    /// the one pressed before.
    void pressRow(int row, Qt::KeyboardModifiers modifiers);

 private:
    struct Entry {
        PCElement::Ptr element;
        uint8_t timelines = 0;  // a bit for each that is not empty, in the order of rows
        int firstRow = 0;
        int rowCount = 0;  // its own and, unless it is collapsed, those of its timelines
    };
    struct List {
        std::vector<Entry> entries;
        std::unordered_map<const PCElement*, size_t> places;  // in them
        uint64_t revision = 0;
    };

    PCProject& m_project;
    PCElementSelectionManager& m_selection;
    PCKeyframeManager& m_keyframes;
    mutable List m_list;
    mutable bool m_isStale = true;
    mutable std::optional<int32_t> m_lastKeyframeTime;
    std::unordered_set<Identifier> m_collapsed;
    bool m_showsOnlySelected = false;
    std::unordered_set<PCKeyedPropertyTimeline::Ptr> m_selectedTimelines;
    int m_pressedRow = 0;
    HandlerSet m_changeHandlers;
    std::array<Subscription, 4> m_subscriptions;

    const List& list() const;
    void rebuild() const;
    int rowsOf(const PCElement& element, uint8_t timelines) const;
    const Entry* entryOf(const PCElement& element) const;
    void rowsDidChange();
    void selectionDidChange();
    void keyedPropertyTimelineDidChange(PCKeyedPropertyTimeline& timeline) override;
    void animationManagerDidSelectAnimation(PCAnimationsManager& manager,
                                            const PCAnimation::Ptr& animation) override;
    void elementSelectionManagerDidSelectElement(PCElementSelectionManager& manager,
                                                 const PCElement::Ptr& element) override;
    void elementSelectionManagerDidDeselectElement(PCElementSelectionManager& manager,
                                                   const PCElement::Ptr& element) override;
};

}  // namespace tweenery
