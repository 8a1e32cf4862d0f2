#include "editor/timeline/timeline_outline.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tweenery {
namespace {

constexpr std::array kRowOrder{PCPropertyTypeTranslationX,  PCPropertyTypeTranslationY,
                               PCPropertyTypeScaleX,        PCPropertyTypeScaleY,
                               PCPropertyTypeZRotation,     PCPropertyTypeOpacity,
                               PCPropertyTypeImageContents, PCPropertyTypeChildrenZPositions};
static_assert(kRowOrder.size() == kElementTimelineCount);

constexpr uint8_t bitOf(size_t place) {
    return static_cast<uint8_t>(1U << place);
}

// The timelines that have a row, as bits in the order of rows.
uint8_t timelinesWithKeyframes(const PCElement& element) {
    if (element.hasFreshTimelines()) { return 0; }
    uint8_t timelines = 0;
    for (size_t place = 0; place < kRowOrder.size(); ++place) {
        const auto timeline = element.timeline(kRowOrder[place]);
        if (timeline && !timeline->isEmpty()) { timelines |= bitOf(place); }
    }
    return timelines;
}

// Also of one that an old package filed under another property; none where it is not attached.
std::optional<size_t> placeOf(const PCElement& element, const PCKeyedPropertyTimeline& timeline) {
    if (element.hasFreshTimelines()) { return std::nullopt; }
    const auto found = std::find_if(kRowOrder.begin(), kRowOrder.end(), [&](PCPropertyType type) {
        return element.timeline(type).get() == &timeline;
    });
    if (found == kRowOrder.end()) { return std::nullopt; }
    return static_cast<size_t>(found - kRowOrder.begin());
}

}  // namespace

TimelineOutline::TimelineOutline(PCProject& project, PCElementSelectionManager& selection,
                                 PCKeyframeManager& keyframes)
    : m_project(project),
      m_selection(selection),
      m_keyframes(keyframes),
      m_subscriptions{
          project.addTimelineChangeListener(this),
          project.animationsManager().addChangeListener(this), selection.addSelectionListener(this),
          project.notificationCentre().subscribe(ElementNotification::subelements, nullptr,
                                                 [this](const void*) { rowsDidChange(); })} {}

// The list.

const TimelineOutline::List& TimelineOutline::list() const {
    if (std::exchange(m_isStale, false)) { rebuild(); }
    return m_list;
}

void TimelineOutline::rebuild() const {
    m_list.entries.clear();
    m_list.places.clear();
    ++m_list.revision;
    const PCElement::Ptr& canvas = m_project.canvas();
    int row = 0;
    const auto add = [&](const PCElement::Ptr& element, uint8_t timelines) {
        const int rows = rowsOf(*element, timelines);
        m_list.places.emplace(element.get(), m_list.entries.size());
        m_list.entries.push_back({element, timelines, row, rows});
        row += rows;
    };
    add(canvas, timelinesWithKeyframes(*canvas));
    for (const PCElement::Ptr& element : canvas->reversedElementAndAllDescendants()) {
        const uint8_t timelines = timelinesWithKeyframes(*element);
        if (timelines != 0 && element != canvas) { add(element, timelines); }
    }
}

int TimelineOutline::rowsOf(const PCElement& element, uint8_t timelines) const {
    const bool isHidden =
        m_showsOnlySelected && !element.isCanvas() && !m_selection.elementIsSelected(element);
    if (isHidden) { return 0; }
    return isExpanded(element) ? 1 + std::popcount(timelines) : 1;
}

const TimelineOutline::Entry* TimelineOutline::entryOf(const PCElement& element) const {
    const auto found = list().places.find(&element);
    return found == m_list.places.end() ? nullptr : &m_list.entries[found->second];
}

uint64_t TimelineOutline::rowsRevision() const {
    return list().revision;
}

int TimelineOutline::rowCount() const {
    const Entry& last = list().entries.back();
    return last.firstRow + last.rowCount + 1;
}

TimelineRow TimelineOutline::row(int row) const {
    if (row + 1 >= rowCount()) { return {}; }
    const auto after =
        std::upper_bound(m_list.entries.begin(), m_list.entries.end(), row,
                         [](int wanted, const Entry& entry) { return wanted < entry.firstRow; });
    // Those before that have no rows stand at the same number.
    const Entry& entry = *std::find_if(std::make_reverse_iterator(after), m_list.entries.rend(),
                                       [](const Entry& other) { return other.rowCount > 0; });
    int left = row - entry.firstRow;
    if (left == 0) { return {entry.element, nullptr}; }
    for (size_t place = 0; place < kRowOrder.size(); ++place) {
        const bool hasRow = (entry.timelines & bitOf(place)) != 0;
        if (hasRow && --left == 0) {
            return {entry.element, entry.element->timeline(kRowOrder[place])};
        }
    }
    return {};
}

int TimelineOutline::rowOf(const PCElement& element) const {
    const Entry* entry = entryOf(element);
    return entry && entry->rowCount > 0 ? entry->firstRow : -1;
}

int TimelineOutline::rowOf(const PCKeyedPropertyTimeline& timeline) const {
    const PCElement* element = timeline.element();
    const Entry* entry = element ? entryOf(*element) : nullptr;
    if (!entry || entry->rowCount < 2) { return -1; }
    const auto place = placeOf(*element, timeline);
    if (!place || (entry->timelines & bitOf(*place)) == 0) { return -1; }
    const auto before = static_cast<uint8_t>(entry->timelines & (bitOf(*place) - 1));
    return entry->firstRow + 1 + std::popcount(before);
}

TimelineOutline::Elements TimelineOutline::elementsWithTimelines() const {
    Elements elements;
    for (const Entry& entry : list().entries) {
        elements.push_back(entry.element);
    }
    return elements;
}

TimelineOutline::Timelines TimelineOutline::timelinesForElement(const PCElement& element) {
    const uint8_t shown = timelinesWithKeyframes(element);
    Timelines timelines;
    for (size_t place = 0; place < kRowOrder.size(); ++place) {
        if ((shown & bitOf(place)) != 0) {
            timelines.push_back(element.timeline(kRowOrder[place]));
        }
    }
    return timelines;
}

int32_t TimelineOutline::lastKeyframeTimeInMS() const {
    if (m_lastKeyframeTime) { return *m_lastKeyframeTime; }
    int32_t last = 0;
    for (const Entry& entry : list().entries) {
        for (size_t place = 0; place < kRowOrder.size(); ++place) {
            if ((entry.timelines & bitOf(place)) == 0) { continue; }
            last = std::max(last, entry.element->timeline(kRowOrder[place])->durationInMS());
        }
    }
    m_lastKeyframeTime = last;
    return last;
}

// Expansion.

bool TimelineOutline::isExpanded(const PCElement& element) const {
    return !m_collapsed.contains(element.identifier());
}

void TimelineOutline::setExpanded(const PCElement& element, bool isExpanded) {
    const bool changes = isExpanded ? m_collapsed.erase(element.identifier()) > 0
                                    : m_collapsed.insert(element.identifier()).second;
    if (changes) { rowsDidChange(); }
}

void TimelineOutline::setShowsOnlySelected(bool only) {
    if (only == m_showsOnlySelected) { return; }
    m_showsOnlySelected = only;
    rowsDidChange();
}

// Selection.

bool TimelineOutline::isSelected(int number) const {
    const TimelineRow row = this->row(number);
    if (row.isBlank()) { return false; }
    if (row.isTimeline()) { return m_selectedTimelines.contains(row.timeline); }
    if (m_selection.elementIsSelected(*row.element)) { return true; }
    const bool hasSelectedTimeline = std::any_of(
        m_selectedTimelines.begin(), m_selectedTimelines.end(),
        [&row](const auto& timeline) { return timeline->element() == row.element.get(); });
    const bool nothingIsSelected =
        m_selectedTimelines.empty() && m_selection.selectedElementsCount() == 0;
    return hasSelectedTimeline || (nothingIsSelected && row.element->isCanvas());
}

TimelineOutline::Rows TimelineOutline::selectedRows() const {
    Rows rows;
    for (const PCElement::Ptr& element : m_selection.selectedElements()) {
        rows.push_back(rowOf(*element));
    }
    for (const PCKeyedPropertyTimeline::Ptr& timeline : m_selectedTimelines) {
        rows.push_back(rowOf(*timeline));
    }
    std::erase(rows, -1);
    std::sort(rows.begin(), rows.end());
    if (rows.empty()) { rows.push_back(0); }
    return rows;
}

void TimelineOutline::selectRows(const Rows& numbers) {
    if (m_project.isSetupMode()) { return; }
    std::vector<TimelineRow> rows;
    std::unordered_set<const PCElement*> elements;  // whose own row is among them
    for (const int number : numbers) {
        rows.push_back(row(number));
        if (!rows.back().isTimeline()) { elements.insert(rows.back().element.get()); }
    }
    m_keyframes.deselectAllKeyframes();
    for (const PCElement::Ptr& element : m_selection.selectedElements()) {
        const bool isStillSelected = m_selection.elementIsSelected(*element);
        if (isStillSelected && !elements.contains(element.get())) {
            m_selection.deselectElement(element);
        }
    }
    m_selectedTimelines.clear();
    for (const auto& [element, timeline] : rows) {
        const bool isSelectable = element && !element->isCanvas() && !element->locked();
        if (isSelectable && !m_selection.elementIsSelected(*element)) {
            m_selection.selectElement(element);
        }
        if (timeline) {
            m_selectedTimelines.insert(timeline);
            m_keyframes.selectAllKeyframesForTimeline(*timeline);
        }
    }
    selectionDidChange();
}

void TimelineOutline::pressRow(int row, Qt::KeyboardModifiers modifiers) {
    Rows rows{row};
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        const int from = std::min(m_pressedRow, rowCount() - 1);
        for (int other = std::min(from, row); other <= std::max(from, row); ++other) {
            if (other != row) { rows.push_back(other); }
        }
        return selectRows(rows);
    }
    m_pressedRow = row;
    if (modifiers.testFlag(Qt::ControlModifier)) {
        rows = selectedRows();
        if (std::erase(rows, row) == 0) { rows.push_back(row); }
    }
    selectRows(rows);
}

// What changes.

void TimelineOutline::rowsDidChange() {
    m_isStale = true;
    m_lastKeyframeTime.reset();
    m_changeHandlers.call();
}

void TimelineOutline::selectionDidChange() {
    if (m_showsOnlySelected) { return rowsDidChange(); }
    m_changeHandlers.call();
}

// Most changes leave the rows as they are.
void TimelineOutline::keyedPropertyTimelineDidChange(PCKeyedPropertyTimeline& timeline) {
    m_lastKeyframeTime.reset();
    const PCElement* element = timeline.element();
    if (element && !m_isStale) {
        const auto place = placeOf(*element, timeline);
        if (!place) { return; }
        const Entry* entry = entryOf(*element);
        const bool hasRow = entry && (entry->timelines & bitOf(*place)) != 0;
        if (hasRow == timeline.isEmpty()) { m_isStale = true; }
    }
    m_changeHandlers.call();
}

void TimelineOutline::animationManagerDidSelectAnimation(PCAnimationsManager&,
                                                         const PCAnimation::Ptr&) {
    m_selectedTimelines.clear();
    rowsDidChange();
}

void TimelineOutline::elementSelectionManagerDidSelectElement(PCElementSelectionManager&,
                                                              const PCElement::Ptr&) {
    selectionDidChange();
}

void TimelineOutline::elementSelectionManagerDidDeselectElement(PCElementSelectionManager&,
                                                                const PCElement::Ptr& element) {
    std::erase_if(m_selectedTimelines, [&element](const auto& timeline) {
        return timeline->element() == element.get();
    });
    selectionDidChange();
}

}  // namespace tweenery
