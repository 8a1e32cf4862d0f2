#include "ui/timeline/timeline_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <unordered_map>

#include "editor/timeline/timeline_interaction.h"
#include "ui/timeline/keyframe_text.h"
#include "ui/timeline/rows_view.h"
#include "ui/timeline/track_painting.h"
#include "ui/timeline/tracks_view.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr size_t kMostKept = 2000;  // interfaces, before those out of sight are let go

class RowsAccessible;
class TracksAccessible;

// A part that is no widget: of the list of rows, or of the tracks.
class TimelinePart : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
};

// The parts of one widget: the same interface for what it stands for as long as both live.
template <class Key>
class KeptParts {
 public:
    ~KeptParts() { clear(); }
    template <class Part, class Make>
    QAccessibleInterface* part(Key key, Make make) const {
        QAccessible::Id& id = m_ids[key];
        if (auto* known = dynamic_cast<Part*>(QAccessible::accessibleInterface(id));
            known && known->isValid()) {
            return known;
        }
        if (id != 0) { QAccessible::deleteAccessibleInterface(id); }
        auto* made = make();
        id = QAccessible::registerAccessibleInterface(made);
        return made;
    }
    void clear() const {
        for (const auto& [key, id] : m_ids) {
            QAccessible::deleteAccessibleInterface(id);
        }
        m_ids.clear();
    }
    size_t count() const { return m_ids.size(); }

 private:
    mutable std::unordered_map<Key, QAccessible::Id> m_ids;
};

// The list of rows.

class RowsAccessible : public QAccessibleWidget {
 public:
    explicit RowsAccessible(RowsView& view) : QAccessibleWidget(&view, QAccessible::Tree) {}

    RowsView& view() const { return static_cast<RowsView&>(*widget()); }
    TracksView& tracks() const { return *view().parentWidget()->findChild<TracksView*>(); }
    TimelineOutline& outline() const { return view().controller().timelineOutline(); }
    PCKeyframeManager& selection() const { return view().controller().keyframeManager(); }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? u"Timeline"_s : QAccessibleWidget::text(kind);
    }
    int childCount() const override { return static_cast<int>(elementRows().size()); }
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;

    std::vector<int> elementRows() const {
        std::vector<int> rows;
        for (const PCElement::Ptr& element : outline().elementsWithTimelines()) {
            if (const int row = outline().rowOf(*element); row >= 0) { rows.push_back(row); }
        }
        return rows;
    }
    QAccessibleInterface* rowInterface(int row) const;
    QAccessibleInterface* keyframeInterface(const TimelineKeyframe& keyframe) const;
    QAccessibleInterface* tweenInterface(const TimelineKeyframe& end) const;

 private:
    KeptParts<const void*> m_rows;  // by element or timeline
    KeptParts<const void*> m_keyframes;
    KeptParts<const void*> m_tweens;
};

class RowAccessible : public TimelinePart {
 public:
    RowAccessible(const RowsAccessible& list, const TimelineRow& row)
        : m_list(list),
          m_element(row.element),
          m_timeline(row.timeline),
          m_isTimeline(row.timeline) {}

    int row() const {
        if (const auto timeline = m_timeline.lock()) { return m_list.outline().rowOf(*timeline); }
        const auto element = m_element.lock();
        return element && !m_isTimeline ? m_list.outline().rowOf(*element) : -1;
    }
    bool isValid() const override { return row() >= 0; }
    QAccessibleInterface* parent() const override {
        if (!m_isTimeline) { return const_cast<RowsAccessible*>(&m_list); }
        const auto element = m_element.lock();
        return element ? m_list.rowInterface(m_list.outline().rowOf(*element)) : nullptr;
    }
    QAccessible::Role role() const override { return QAccessible::TreeItem; }
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::State state() const override;

    int childCount() const override { return static_cast<int>(childrenNow().size()); }
    QAccessibleInterface* child(int index) const override {
        const auto children = childrenNow();
        const auto place = static_cast<size_t>(index);
        return index >= 0 && place < children.size() ? children[place] : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto children = childrenNow();
        const auto found = std::find(children.begin(), children.end(), child);
        return found == children.end() ? -1 : static_cast<int>(found - children.begin());
    }

    QStringList actionNames() const override {
        QStringList names{pressAction()};
        names << (m_isTimeline ? QStringList{u"Create Keyframe"_s, u"Loop Mode"_s}
                               : QStringList{toggleAction()});
        return names;
    }
    void doAction(const QString& name) override;

 private:
    const RowsAccessible& m_list;
    std::weak_ptr<PCElement> m_element;
    std::weak_ptr<PCKeyedPropertyTimeline> m_timeline;
    bool m_isTimeline;

    // Timelines of an element; of a timeline the tweens and keyframes in sight.
    std::vector<QAccessibleInterface*> childrenNow() const;
};

class KeyframeAccessible : public TimelinePart {
 public:
    KeyframeAccessible(const RowsAccessible& list, TimelineKeyframe keyframe)
        : m_list(list), m_keyframe(std::move(keyframe)) {}

    bool isValid() const override { return m_keyframe->isInTimeline() && row() >= 0; }
    QAccessibleInterface* parent() const override {
        return isValid() ? m_list.rowInterface(row()) : nullptr;
    }
    QAccessible::Role role() const override { return QAccessible::CheckBox; }
    QString text(QAccessible::Text kind) const override {
        if (!isValid()) { return {}; }
        const auto timeline = m_keyframe->timeline();
        if (kind == QAccessible::Name) { return keyframeName(*timeline, m_keyframe->index()); }
        if (kind != QAccessible::Description) { return {}; }
        return keyframeDescription(*timeline, m_keyframe->index());
    }
    QRect rect() const override {
        if (!isValid()) { return {}; }
        TracksView& tracks = m_list.tracks();
        return tracks.onScreen(tracks.keyframeRect(row(), m_keyframe->timeInMS()));
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.checkable = true;
        state.checked = m_list.selection().keyframeIsSelected(m_keyframe);
        state.focused = m_list.view().hasFocus() && m_list.view().mark().keyframe() == m_keyframe;
        return state;
    }
    QStringList actionNames() const override { return {toggleAction(), pressAction()}; }
    void doAction(const QString& name) override {
        if (!isValid()) { return; }
        PCKeyframeManager& selection = m_list.selection();
        if (name == toggleAction()) {
            if (selection.keyframeIsSelected(m_keyframe)) {
                selection.deselectKeyframe(m_keyframe);
            } else {
                selection.selectKeyframe(m_keyframe);
            }
        } else if (name == pressAction()) {
            selection.deselectAllKeyframes();
            selection.setSelectionToSingleKeyframe(m_keyframe);
        }
    }

 protected:
    const RowsAccessible& m_list;
    TimelineKeyframe m_keyframe;

    int row() const { return m_list.outline().rowOf(*m_keyframe->timeline()); }
};

class TweenAccessible : public KeyframeAccessible {
 public:
    using KeyframeAccessible::KeyframeAccessible;

    QAccessible::Role role() const override { return QAccessible::PushButton; }
    QString text(QAccessible::Text kind) const override {
        if (!isValid()) { return {}; }
        const auto timeline = m_keyframe->timeline();
        if (kind == QAccessible::Name) { return tweenName(*timeline, m_keyframe->index()); }
        return kind == QAccessible::Description ? easingName(*timeline, m_keyframe->index())
                                                : QString();
    }
    QRect rect() const override { return m_list.tracks().onScreen(shownRect()); }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.selectable = true;
        state.selected = m_list.selection().tweenIsSelected(m_keyframe);
        return state;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    // As a click on its middle.
    void doAction(const QString& name) override {
        if (name != pressAction() || !isValid()) { return; }
        TimelineInteraction& interaction = m_list.view().controller().timelineInteraction();
        const QPointF middle = shownRect().center();
        const PointerEvent event{middle, m_list.tracks().mapToGlobal(middle)};
        interaction.press(event);
        interaction.release(event);
    }

 private:
    // What of it is in sight, between its keyframes.
    QRectF shownRect() const {
        if (!isValid()) { return {}; }
        const TracksView& tracks = m_list.tracks();
        const auto before = m_keyframe->prevKeyframe();
        QRectF rect = tracks.keyframeRect(row(), before ? before->timeInMS() : 0);
        rect.setLeft(rect.center().x());
        rect.setRight(tracks.keyframeRect(row(), m_keyframe->timeInMS()).center().x());
        return rect.intersected(QRectF(tracks.rect()));
    }
};

QAccessibleInterface* RowsAccessible::rowInterface(int row) const {
    if (row < 0) { return nullptr; }
    const TimelineRow content = outline().row(row);
    const void* key = content.isTimeline() ? static_cast<const void*>(content.timeline.get())
                                           : content.element.get();
    return m_rows.part<RowAccessible>(key, [&] { return new RowAccessible(*this, content); });
}

QAccessibleInterface* RowsAccessible::keyframeInterface(const TimelineKeyframe& keyframe) const {
    if (m_keyframes.count() > kMostKept) { m_keyframes.clear(); }
    return m_keyframes.part<KeyframeAccessible>(
        keyframe.get(), [&] { return new KeyframeAccessible(*this, keyframe); });
}

QAccessibleInterface* RowsAccessible::tweenInterface(const TimelineKeyframe& end) const {
    if (m_tweens.count() > kMostKept) { m_tweens.clear(); }
    return m_tweens.part<TweenAccessible>(end.get(),
                                          [&] { return new TweenAccessible(*this, end); });
}

QAccessibleInterface* RowsAccessible::child(int index) const {
    const std::vector<int> rows = elementRows();
    const auto place = static_cast<size_t>(index);
    return index >= 0 && place < rows.size() ? rowInterface(rows[place]) : nullptr;
}

int RowsAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* row = dynamic_cast<const RowAccessible*>(child);
    if (!row) { return -1; }
    const std::vector<int> rows = elementRows();
    const auto found = std::find(rows.begin(), rows.end(), row->row());
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

QAccessibleInterface* RowsAccessible::childAt(int x, int y) const {
    const QPoint point = view().mapFromGlobal(QPoint(x, y));
    const int row = view().rect().contains(point) ? view().rowAt(point.y()) : -1;
    return row >= 0 && !outline().row(row).isBlank() ? rowInterface(row) : nullptr;
}

QString RowAccessible::text(QAccessible::Text kind) const {
    if (!isValid()) { return {}; }
    const auto timeline = m_timeline.lock();
    if (kind == QAccessible::Name) {
        return timeline ? timelineName(*timeline) : m_element.lock()->name();
    }
    return kind == QAccessible::Description && timeline ? loopModeName(timeline->repeatBehavior())
                                                        : QString();
}

QRect RowAccessible::rect() const {
    if (!isValid()) { return {}; }
    RowsView& view = m_list.view();
    const QRect rect = view.rowRect(row()).intersected(view.rect());
    return rect.isEmpty() ? QRect() : QRect(view.mapToGlobal(rect.topLeft()), rect.size());
}

QAccessible::State RowAccessible::state() const {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid) { return state; }
    state.selectable = true;
    state.focusable = true;
    state.selected = m_list.outline().isSelected(row());
    state.offscreen = rect().isEmpty();
    const RowsView& view = m_list.view();
    state.focused = view.hasFocus() && view.mark().row() == row() && !view.mark().keyframe();
    if (m_isTimeline) { return state; }
    state.expandable = true;
    state.expanded = m_list.outline().isExpanded(*m_element.lock());
    state.collapsed = !state.expanded;
    return state;
}

void RowAccessible::doAction(const QString& name) {
    if (!isValid()) { return; }
    if (name == pressAction()) {
        m_list.outline().pressRow(row(), {});
    } else if (name == toggleAction() && !m_isTimeline) {
        m_list.view().activate(row(), RowsView::Part::Chevron);
    } else if (name == u"Create Keyframe") {
        m_list.view().activate(row(), RowsView::Part::Keyframe);
    } else if (name == u"Loop Mode") {
        m_list.view().activate(row(), RowsView::Part::Loop);
    }
}

std::vector<QAccessibleInterface*> RowAccessible::childrenNow() const {
    std::vector<QAccessibleInterface*> children;
    const auto element = m_element.lock();
    if (!isValid() || !element) { return children; }
    const TimelineOutline& outline = m_list.outline();
    if (!m_isTimeline) {
        for (const auto& timeline : TimelineOutline::timelinesForElement(*element)) {
            const int row = outline.rowOf(*timeline);
            if (row >= 0) { children.push_back(m_list.rowInterface(row)); }
        }
        return children;
    }
    const auto timeline = m_timeline.lock();
    const TimelineViewport& viewport = m_list.view().controller().timelineViewport();
    const auto rows = viewport.visibleRows();
    if (row() < rows.first || row() >= rows.end) { return children; }
    const auto times = viewport.visibleTimes();
    const size_t count = timeline->keyframesCount();
    for (size_t i = timeline->firstKeyframeIndexAtOrAfterTimeInMS(times.from); i < count; ++i) {
        const auto keyframe = timeline->existingKeyframeAtKeyframeIndex(i);
        if (tweenShows(*timeline, i)) { children.push_back(m_list.tweenInterface(keyframe)); }
        if (keyframe->timeInMS() > times.to) { break; }
        children.push_back(m_list.keyframeInterface(keyframe));
    }
    return children;
}

// The tracks.

RowsView* rowsBeside(const TracksView& tracks) {
    return tracks.parentWidget()->findChild<RowsView*>();
}

class PlayheadAccessible : public TimelinePart, public QAccessibleValueInterface {
 public:
    explicit PlayheadAccessible(TracksView& tracks) : m_tracks(tracks) {}

    bool isValid() const override { return true; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&m_tracks);
    }
    QAccessible::Role role() const override { return QAccessible::Slider; }
    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) { return u"Playhead"_s; }
        return kind == QAccessible::Value ? u"%1 ms"_s.arg(time().playheadPositionInMS())
                                          : QString();
    }
    QRect rect() const override { return m_tracks.onScreen(m_tracks.playheadRect()); }
    QAccessible::State state() const override { return {}; }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : TimelinePart::interface_cast(type);
    }
    QStringList actionNames() const override { return {increaseAction(), decreaseAction()}; }
    void doAction(const QString& name) override {
        const int32_t now = time().playheadPositionInMS();
        if (name == increaseAction()) { moveTo(time().zoomSpecificTickAfterTimeInMS(now)); }
        if (name == decreaseAction()) { moveTo(time().zoomSpecificTickBeforeTimeInMS(now)); }
    }

    QVariant currentValue() const override { return time().playheadPositionInMS(); }
    void setCurrentValue(const QVariant& value) override { moveTo(value.toInt()); }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override {
        return time().msFromPointValue(m_tracks.controller().timelineViewport().columnWidth());
    }
    QVariant minimumStepSize() const override { return 1; }

 private:
    TracksView& m_tracks;

    PCProjectTimeManager& time() const { return m_tracks.controller().timeManager(); }
    void moveTo(int32_t timeInMS) {
        m_tracks.controller().stopPlaybackHere();
        time().setPlayheadPositionInMS(timeInMS);
    }
};

class MasterKeyframeAccessible : public TimelinePart {
 public:
    MasterKeyframeAccessible(TracksView& tracks, TimelineKeyframe keyframe)
        : m_tracks(tracks), m_keyframe(std::move(keyframe)) {}

    bool isValid() const override { return m_keyframe->isInTimeline(); }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&m_tracks);
    }
    QAccessible::Role role() const override { return QAccessible::CheckBox; }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? masterKeyframeName(m_keyframe->timeInMS())
                                                      : QString();
    }
    QRect rect() const override {
        return isValid() ? m_tracks.onScreen(m_tracks.masterKeyframeRect(m_keyframe->timeInMS()))
                         : QRect();
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.checkable = true;
        state.checked = m_tracks.controller().keyframeManager().keyframeIsSelected(m_keyframe);
        return state;
    }
    QStringList actionNames() const override { return {toggleAction()}; }
    void doAction(const QString& name) override {
        if (name != toggleAction() || !isValid()) { return; }
        PCKeyframeManager& selection = m_tracks.controller().keyframeManager();
        const bool wasSelected = selection.keyframeIsSelected(m_keyframe);
        selection.deselectAllKeyframes();
        if (!wasSelected) { selection.selectKeyframe(m_keyframe); }
    }

 private:
    TracksView& m_tracks;
    TimelineKeyframe m_keyframe;
};

class TracksAccessible : public QAccessibleWidget {
 public:
    explicit TracksAccessible(TracksView& view)
        : QAccessibleWidget(&view, QAccessible::LayeredPane, u"Tracks"_s) {}

    TracksView& view() const { return static_cast<TracksView&>(*widget()); }
    // After the widget's own children: the playhead, then the master keyframes in sight.
    int childCount() const override {
        return QAccessibleWidget::childCount() + 1 + static_cast<int>(masters().size());
    }
    QAccessibleInterface* child(int index) const override {
        const int own = QAccessibleWidget::childCount();
        if (index < own) { return QAccessibleWidget::child(index); }
        if (index == own) { return playhead(); }
        const auto keyframes = masters();
        const auto place = static_cast<size_t>(index - own - 1);
        return place < keyframes.size() ? masterInterface(keyframes[place]) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int i = 0; i < childCount(); ++i) {
            if (this->child(i) == child) { return i; }
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* playhead() const {
        return m_parts.part<PlayheadAccessible>(this,
                                                [&] { return new PlayheadAccessible(view()); });
    }

 private:
    KeptParts<const void*> m_parts;

    std::vector<TimelineKeyframe> masters() const {
        const auto animation =
            view().controller().project()->animationsManager().selectedAnimation();
        if (!animation) { return {}; }
        const auto times = view().controller().timelineViewport().visibleTimes();
        return animation->masterKeyframesTimeline()->keyframesBetweenStartTime(times.from,
                                                                               times.to);
    }
    QAccessibleInterface* masterInterface(const TimelineKeyframe& keyframe) const {
        return m_parts.part<MasterKeyframeAccessible>(
            keyframe.get(), [&] { return new MasterKeyframeAccessible(view(), keyframe); });
    }
};

QAccessibleInterface* TracksAccessible::childAt(int x, int y) const {
    const QPointF point = view().mapFromGlobal(QPoint(x, y));
    const TimelineScene scene = view().controller().timelineScene();
    if (scene.viewport.isInRuler(point)) {
        const auto master = masterKeyframeAt(scene, point.x());
        if (master) { return masterInterface(master); }
        return view().playheadRect().contains(point) ? playhead() : nullptr;
    }
    const auto keyframe = keyframeAt(scene, point);
    auto* rows =
        dynamic_cast<RowsAccessible*>(QAccessible::queryAccessibleInterface(rowsBeside(view())));
    return keyframe && rows ? rows->keyframeInterface(keyframe) : nullptr;
}

QAccessibleInterface* makeTimelineInterface(const QString&, QObject* object) {
    if (auto* rows = qobject_cast<RowsView*>(object)) { return new RowsAccessible(*rows); }
    if (auto* tracks = qobject_cast<TracksView*>(object)) { return new TracksAccessible(*tracks); }
    return nullptr;
}

RowsAccessible* accessibleOf(RowsView& rows) {
    return dynamic_cast<RowsAccessible*>(QAccessible::queryAccessibleInterface(&rows));
}

}  // namespace

void installTimelineAccessibility() {
    QAccessible::installFactory(makeTimelineInterface);
}

void announcePlayhead(TracksView& tracks) {
    if (!QAccessible::isActive()) { return; }
    auto* accessible =
        dynamic_cast<TracksAccessible*>(QAccessible::queryAccessibleInterface(&tracks));
    if (!accessible) { return; }
    QAccessibleInterface* playhead = accessible->playhead();
    QAccessibleValueChangeEvent event(playhead, playhead->valueInterface()->currentValue());
    QAccessible::updateAccessibility(&event);
}

void announceSelection(RowsView& rows, const TimelineKeyframe& keyframe) {
    if (!QAccessible::isActive()) { return; }
    RowsAccessible* accessible = accessibleOf(rows);
    if (!accessible || !keyframe->isInTimeline()) { return; }
    if (rows.controller().timelineOutline().rowOf(*keyframe->timeline()) < 0) { return; }
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(accessible->keyframeInterface(keyframe), changed);
    QAccessible::updateAccessibility(&event);
}

void announceMark(RowsView& rows) {
    if (!QAccessible::isActive() || rows.mark().row() < 0) { return; }
    RowsAccessible* accessible = accessibleOf(rows);
    if (!accessible) { return; }
    const auto keyframe = rows.mark().keyframe();
    QAccessibleEvent event(keyframe ? accessible->keyframeInterface(keyframe)
                                    : accessible->rowInterface(rows.mark().row()),
                           QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

}  // namespace tweenery
