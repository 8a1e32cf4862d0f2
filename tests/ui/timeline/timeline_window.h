#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <algorithm>

#include "support/model_builder.h"
#include "ui/timeline/rows_view.h"
#include "ui/timeline/timeline_accessible.h"
#include "ui/timeline/timeline_pane.h"
#include "ui/timeline/tracks_view.h"
#include "ui/widgets/appearance.h"
#include "ui/window/split_view.h"
#include "ui/window/window_scene.h"

namespace tweenery::test {

/// A window in an animation of three elements: A moves at 0, 1000 and 2000 ms, B turns at 500 ms.
/// 0.2 points a millisecond, so that a tick is 50 ms and 10 points.
class TimelineWindow : public WindowScene {
 public:
    static constexpr int kPaneHeight = 300;

    TimelineWindow() : WindowScene((seenByAssistiveTools(), "A B C")) {
        Appearance::current().setReducesMotion(true);
        selectNewAnimation(project(), QStringLiteral("Walk"));
        const UndoRegistrationPause pause(project().undoManager());
        for (const int time : {0, 1000, 2000}) {
            element("A")->setXTranslation(static_cast<float>(10 + time / 10), time);
        }
        element("B")->setZRotation(1, 500);
        window->resize(1100, 750);
        window->splitView().setBottomPaneHeight(kPaneHeight);
        QCoreApplication::processEvents();
        controller().timelineViewport().setZoomIndex(kZoom);
        controller().timelineViewport().scrollTo({});
        QCoreApplication::processEvents();
    }

    TimelinePane& pane() { return window->timeline(); }
    PCProjectTimeManager& time() { return controller().timeManager(); }
    TimelineOutline& outline() { return controller().timelineOutline(); }
    PCKeyedPropertyTimeline& moves() { return *element("A")->translationXTimeline(); }
    std::vector<int32_t> times(const PCKeyedPropertyTimeline& timeline) {
        std::vector<int32_t> times;
        for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
            times.push_back(timeline.timeOfKeyframe(i));
        }
        return times;
    }
    /// Times of the selected keyframes, in order.
    std::vector<int32_t> selectedTimes() {
        std::vector<int32_t> times;
        for (const auto& keyframe :
             controller().keyframeManager().selectedKeyframesSortedByTimeInMS()) {
            times.push_back(keyframe->timeInMS());
        }
        return times;
    }
    std::vector<QString> rowNames() {
        std::vector<QString> names;
        for (int i = 0; i < outline().rowCount(); ++i) {
            const TimelineRow row = outline().row(i);
            names.push_back(row.isBlank()      ? QString()
                            : row.isTimeline() ? row.timeline->displayString()
                                               : row.element->name());
        }
        return names;
    }

    // Places, in points of the window.

    QPoint inTracks(QPointF point) { return pane().tracks().mapTo(window.get(), point.toPoint()); }
    QPoint keyframeAt(const PCKeyedPropertyTimeline& timeline, int32_t timeInMS) {
        return inTracks(pane().tracks().keyframeRect(outline().rowOf(timeline), timeInMS).center());
    }
    QPoint rulerAt(int32_t timeInMS) {
        constexpr double kInRuler = 35;
        return inTracks({controller().timelineViewport().pointForTime(timeInMS), kInRuler});
    }
    QPoint partOf(int row, RowsView::Part part) {
        return pane().rows().mapTo(window.get(), pane().rows().partRect(row, part).center());
    }
    QAbstractButton* button(QWidget& within, const char* name) {
        const auto buttons = within.findChildren<QAbstractButton*>();
        const auto found = std::find_if(buttons.begin(), buttons.end(), [name](const auto* one) {
            return one->accessibleName() == QLatin1String(name) ||
                   one->text() == QLatin1String(name);
        });
        return found == buttons.end() ? nullptr : *found;
    }
    QPoint middleOfWidget(const QWidget& widget) {
        return widget.mapTo(window.get(), widget.rect().center());
    }
    void clickOn(const QWidget* widget) {
        click(middleOfWidget(*widget));
        QCoreApplication::processEvents();
    }
    void type(const char* text) {
        for (; *text; ++text) {
            QTest::keyClick(window->windowHandle(), *text);
        }
        QCoreApplication::processEvents();
    }
    bool popoverIsOpen() { return pane().popover() && pane().popover()->isVisible(); }

 private:
    static constexpr int kZoom = 7;

    // Before the first window, as in the program.
    static void seenByAssistiveTools() {
        static const bool isInstalled = (installTimelineAccessibility(), true);
        Q_UNUSED(isInstalled);
    }
};

}  // namespace tweenery::test
