#include <gmock/gmock.h>

#include <QLineEdit>
#include <QPaintEvent>
#include <QSlider>
#include <QWheelEvent>

#include "timeline_window.h"
#include "ui/navigators/elements_view.h"
#include "ui/navigators/navigator.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

using testing::ElementsAre;

// The head.

TEST(TimelinePane, TheHeadZoomsByMagnifiersAndSlider) {
    TimelineWindow scene;
    TimelineViewport& viewport = scene.controller().timelineViewport();
    scene.clickOn(scene.button(scene.pane(), "Zoom Timeline In"));
    EXPECT_EQ(viewport.zoomIndex(), 8);
    scene.clickOn(scene.button(scene.pane(), "Zoom Timeline Out"));
    scene.clickOn(scene.button(scene.pane(), "Zoom Timeline Out"));
    EXPECT_EQ(viewport.zoomIndex(), 6);
    auto* slider = scene.pane().findChild<QSlider*>();
    EXPECT_EQ(slider->maximum(), 16);
    EXPECT_EQ(slider->value(), 6);
    // Stops are 4.5 points apart, from 4 points on.
    const QPoint left = slider->mapTo(scene.window.get(), QPoint(4, slider->height() / 2));
    scene.click(left + QPoint(45, 0));
    EXPECT_EQ(viewport.zoomIndex(), 10);
    scene.press(left);
    scene.move(left + QPoint(72, 0));
    scene.release(left + QPoint(200, 0));
    EXPECT_EQ(viewport.zoomIndex(), 16);
}

TEST(TimelinePane, TheEasingOfNewKeyframesIsChosenInAPopover) {
    TimelineWindow scene;
    auto* opener = scene.button(scene.pane(), "Easing");
    scene.clickOn(opener);
    ASSERT_TRUE(scene.popoverIsOpen());
    Popover& popover = *scene.pane().popover();
    EXPECT_TRUE(scene.window->rect().contains(popover.geometry().center()));
    for (const auto& [name, mode] : {std::pair{"ease out", PCEasingModeEaseOut},
                                     {"instant", easingModeInstant},
                                     {"ant-over", PCEasingModeAnticOver}}) {
        auto* button = scene.button(popover, name);
        scene.clickOn(button);
        EXPECT_EQ(scene.project().preferences().defaultEasingMode(), mode);
        EXPECT_TRUE(button->isChecked());
        EXPECT_EQ(opener->accessibleDescription(), QLatin1String(name));
    }
    EXPECT_TRUE(scene.popoverIsOpen());
    scene.clickOn(opener);
    EXPECT_FALSE(scene.popoverIsOpen());
    scene.clickOn(opener);
    scene.key(Qt::Key_Escape);
    EXPECT_FALSE(scene.popoverIsOpen());
    scene.clickOn(opener);
    scene.click(scene.at({20, 20}));
    EXPECT_FALSE(scene.popoverIsOpen());
}

TEST(TimelinePane, ThePopoverWorksByKeyboard) {
    TimelineWindow scene;
    auto* opener = scene.button(scene.pane(), "Easing");
    scene.project().preferences().setDefaultEasingMode(PCEasingModeLinear);
    opener->setFocus();
    scene.key(Qt::Key_Space);
    ASSERT_TRUE(scene.popoverIsOpen());
    scene.key(Qt::Key_Down);   // from linear to anticipate
    scene.key(Qt::Key_Right);  // overshoot
    scene.key(Qt::Key_Return);
    EXPECT_EQ(scene.project().preferences().defaultEasingMode(), PCEasingModeOvershoot);
    scene.key(Qt::Key_Escape);
    EXPECT_FALSE(scene.popoverIsOpen());
    EXPECT_EQ(QApplication::focusWidget(), opener);
}

// Rows.

TEST(TimelinePane, RowsFoldLoopAndTakeKeyframes) {
    TimelineWindow scene;
    EXPECT_THAT(scene.rowNames(), ElementsAre(u"Canvas"_s, u"B"_s, u"Rotation:"_s, u"A"_s,
                                              u"X Translation:"_s, QString()));
    const int row = scene.outline().rowOf(scene.moves());
    for (const auto behavior :
         {PCRepeatBehaviorForever, PCRepeatBehaviorForeverAutoreverse, PCRepeatBehaviorNever}) {
        scene.click(scene.partOf(row, RowsView::Part::Loop));
        EXPECT_EQ(scene.moves().repeatBehavior(), behavior);
    }
    scene.time().setPlayheadPositionInMS(1500);
    scene.click(scene.partOf(row, RowsView::Part::Keyframe));
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 1000, 1500, 2000));
    EXPECT_EQ(scene.moves().floatValueAtTimeInMS(1500), 160);
    scene.controller().undo();
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 1000, 2000));

    scene.click(scene.partOf(row - 1, RowsView::Part::Chevron));
    EXPECT_THAT(scene.rowNames(),
                ElementsAre(u"Canvas"_s, u"B"_s, u"Rotation:"_s, u"A"_s, QString()));
    scene.click(scene.partOf(row - 1, RowsView::Part::Chevron));
    EXPECT_EQ(scene.rowNames().size(), 6U);
}

TEST(TimelinePane, APressOnARowSelectsItsElementAndKeyframes) {
    TimelineWindow scene;
    const int row = scene.outline().rowOf(scene.moves());
    scene.click(scene.partOf(row, RowsView::Part::Name));
    EXPECT_EQ(scene.selected(), u"A");
    EXPECT_THAT(scene.selectedTimes(), ElementsAre(0, 1000, 2000));
    scene.click(scene.partOf(1, RowsView::Part::Name), Qt::ControlModifier);
    EXPECT_EQ(scene.selected(), u"A B");
    scene.click(scene.partOf(0, RowsView::Part::Name));
    EXPECT_EQ(scene.selected(), u"");
}

// The wheel.

void turnWheel(TimelineWindow& scene, QPoint at, QPoint angle, Qt::KeyboardModifiers modifiers) {
    QWheelEvent event(at, scene.window->mapToGlobal(at), {}, angle, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(scene.window->windowHandle(), &event);
}

TEST(TimelinePane, TheWheelScrollsAndZooms) {
    TimelineWindow scene;
    TimelineViewport& viewport = scene.controller().timelineViewport();
    const QPoint point = scene.inTracks({300, 80});
    turnWheel(scene, point, {0, -120}, Qt::ShiftModifier);
    EXPECT_EQ(viewport.scrollOrigin(), QPointF(60, 0));
    turnWheel(scene, point, {-120, 0}, {});
    EXPECT_EQ(viewport.scrollOrigin().x(), 120);
    scene.window->splitView().setBottomPaneHeight(110);
    QCoreApplication::processEvents();
    turnWheel(scene, scene.inTracks({300, 60}), {0, -120}, {});
    EXPECT_GT(viewport.scrollOrigin().y(), 0);
    const int32_t before = viewport.timeAt(300);
    turnWheel(scene, scene.inTracks({300, 60}), {0, 120}, Qt::ControlModifier);
    EXPECT_GT(scene.time().zoomInPointsPerMillisecond(), 0.21F);
    EXPECT_NEAR(viewport.timeAt(300), before, 5);
}

TEST(TimelinePane, CollapsedItShowsHeadAndRuler) {
    TimelineWindow scene;
    scene.window->splitView().setBottomPaneHeight(44);
    QCoreApplication::processEvents();
    ASSERT_EQ(scene.pane().height(), 44);
    EXPECT_EQ(scene.pane().rows().height(), 2);
    for (const int y : {3, 20, 40}) {
        scene.time().setPlayheadPositionInMS(0);
        scene.click(scene.inTracks({500, static_cast<double>(y)}));
        EXPECT_EQ(scene.time().playheadPositionInMS(), 2500) << y;
    }
    const QImage picture = scene.pane().tracks().grab().toImage();
    const QColor ruler = Appearance::current().workbench().timelineActive;
    EXPECT_EQ(picture.pixelColor(615, 35).name().toStdString(), ruler.name().toStdString());
}

// The playhead.

TEST(TimelinePane, ThePlayheadsTimeCanBeTyped) {
    TimelineWindow scene;
    const auto field = [&] { return scene.pane().tracks().findChild<QLineEdit*>(); };
    const auto openField = [&] {
        scene.click(scene.inTracks(scene.pane().tracks().playheadRect().center()));
        QCoreApplication::processEvents();
    };
    struct Case {
        const char* typed;
        int32_t expected;
        int alerts;
    };
    scene.time().setPlayheadPositionInMS(250);
    for (const Case& c : {Case{"1.5", 1500, 0}, {"300 ms", 300, 0}, {"0:02", 2000, 0}}) {
        openField();
        ASSERT_TRUE(field()->isVisible());
        field()->selectAll();
        scene.type(c.typed);
        scene.key(Qt::Key_Return);
        EXPECT_EQ(scene.time().playheadPositionInMS(), c.expected) << c.typed;
        EXPECT_FALSE(field()->isVisible());
    }
    openField();
    scene.type("99");
    scene.key(Qt::Key_Escape);
    EXPECT_EQ(scene.time().playheadPositionInMS(), 2000);
}

// Records what a widget paints.
class PaintRecorder : public QObject {
 public:
    explicit PaintRecorder(QWidget& widget) { widget.installEventFilter(this); }
    QRegion painted;
    int count = 0;

 protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted += static_cast<QPaintEvent*>(event)->region();
            ++count;
        }
        return false;
    }
};

TEST(TimelinePane, AMovingPlayheadPaintsTwoStripsOnly) {
    TimelineWindow scene;
    scene.time().setPlayheadPositionInMS(500);
    QCoreApplication::processEvents();
    PaintRecorder recorder(scene.pane().tracks());
    for (int time = 510; time <= 1500; time += 110) {
        scene.time().setPlayheadPositionInMS(time);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(recorder.count, 1);
    const double from = scene.controller().timelineViewport().pointForTime(500);
    const double to = scene.controller().timelineViewport().pointForTime(1500);
    EXPECT_TRUE(recorder.painted.contains(QPoint(int(from), 100)));
    EXPECT_TRUE(recorder.painted.contains(QPoint(int(to), 100)));
    EXPECT_FALSE(recorder.painted.contains(QPoint(int(from) - 20, 100)));
    EXPECT_FALSE(recorder.painted.contains(QPoint(int(to) + 20, 100)));
}

TEST(TimelinePane, ChangesOfATurnArePaintedOnce) {
    TimelineWindow scene;
    PaintRecorder recorder(scene.pane().tracks());
    for (int i = 1; i <= 100; ++i) {
        scene.element("C")->setOpacity(0.01F * static_cast<float>(i), i * 10);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(recorder.count, 1);
    EXPECT_EQ(scene.rowNames().size(), 8U);
}

// The keyboard.

TEST(TimelinePane, ThePaneUnderThePointerHasTheKeys) {
    TimelineWindow scene;
    scene.window->canvas().setFocus();
    const QPoint inside = scene.inTracks({300, 200});
    const QPoint outside = scene.at({20, 20});
    const auto pane = [&] { return scene.controller().keyboardPane(); };
    scene.move(outside);
    scene.move(inside);
    EXPECT_EQ(pane(), KeyboardPane::Canvas);  // it has only come
    scene.move(inside + QPoint(3, 0));
    EXPECT_EQ(pane(), KeyboardPane::Timeline);
    EXPECT_EQ(QApplication::focusWidget(), &scene.pane().rows());
    scene.move(outside);
    EXPECT_EQ(pane(), KeyboardPane::Canvas);
    EXPECT_EQ(QApplication::focusWidget(), &scene.window->canvas());

    QLineEdit field(scene.window.get());
    field.show();
    field.setFocus();
    scene.move(inside);
    scene.move(inside + QPoint(3, 0));
    EXPECT_EQ(QApplication::focusWidget(), &field);
    scene.click(inside);
    EXPECT_EQ(QApplication::focusWidget(), &scene.pane().rows());
}

TEST(TimelinePane, F6ReachesThePaneAndTabStaysInIt) {
    TimelineWindow scene;
    scene.window->canvas().setFocus();
    scene.key(Qt::Key_F6);
    EXPECT_EQ(scene.controller().keyboardPane(), KeyboardPane::Timeline);
    for (int i = 0; i < 8; ++i) {
        scene.key(Qt::Key_Tab);
        EXPECT_TRUE(scene.pane().isAncestorOf(QApplication::focusWidget())) << i;
    }
    scene.key(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(scene.controller().keyboardPane(), KeyboardPane::Canvas);
}

TEST(TimelinePane, AMarkMovesOverRowsAndKeyframes) {
    TimelineWindow scene;
    scene.pane().setFocus();
    const auto press = [&](Qt::Key key) { scene.key(key, Qt::ControlModifier); };
    press(Qt::Key_Down);  // Canvas
    for (int i = 0; i < 4; ++i) {
        press(Qt::Key_Down);
    }
    EXPECT_EQ(scene.pane().rows().mark().row(), scene.outline().rowOf(scene.moves()));
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_THAT(scene.selectedTimes(), ElementsAre());
    scene.key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_THAT(scene.selectedTimes(), ElementsAre(1000));
    press(Qt::Key_Down);  // the blank row has nothing to mark
    EXPECT_EQ(scene.pane().rows().mark().row(), scene.outline().rowOf(scene.moves()));
    scene.key(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_THAT(scene.selectedTimes(), ElementsAre(0, 1000, 2000));
}

// What assistive tools see.

class Seen {
 public:
    explicit Seen(QAccessibleInterface* interface) : m_interface(interface) {}
    QAccessibleInterface* operator->() const { return m_interface; }
    QAccessibleInterface* get() const { return m_interface; }
    QString name() const { return m_interface->text(QAccessible::Name); }
    QString description() const { return m_interface->text(QAccessible::Description); }
    std::vector<std::string> children() const {
        std::vector<std::string> names;
        for (int i = 0; i < m_interface->childCount(); ++i) {
            QAccessibleInterface* child = m_interface->child(i);
            EXPECT_EQ(child->parent(), m_interface);
            EXPECT_EQ(m_interface->indexOfChild(child), i);
            names.push_back(child->text(QAccessible::Name).toStdString());
        }
        return names;
    }
    Seen child(const QString& name) const {
        for (int i = 0; i < m_interface->childCount(); ++i) {
            if (m_interface->child(i)->text(QAccessible::Name) == name) {
                return Seen(m_interface->child(i));
            }
        }
        ADD_FAILURE() << "nothing named " << qPrintable(name);
        return *this;
    }
    void perform(const QString& action) const { m_interface->actionInterface()->doAction(action); }

 private:
    QAccessibleInterface* m_interface;
};

Seen seen(QWidget& widget) {
    return Seen(QAccessible::queryAccessibleInterface(&widget));
}

TEST(TimelineAccessible, RowsAreATreeWithTheKeyframesInSight) {
    TimelineWindow scene;
    const Seen tree = seen(scene.pane().rows());
    EXPECT_EQ(tree->role(), QAccessible::Tree);
    EXPECT_EQ(tree.name(), u"Timeline");
    EXPECT_THAT(tree.children(), ElementsAre("Canvas", "B", "A"));
    const Seen row = tree.child(u"A"_s).child(u"X Translation"_s);
    EXPECT_EQ(row.description(), u"No loop");
    row.perform(u"Loop Mode"_s);
    EXPECT_EQ(row.description(), u"Loop");
    EXPECT_THAT(
        row.children(),
        ElementsAre("X Translation, 0 ms", "X Translation, 0 to 1000 ms", "X Translation, 1000 ms",
                    "X Translation, 1000 to 2000 ms", "X Translation, 2000 ms"));
    const Seen keyframe = row.child(u"X Translation, 1000 ms"_s);
    EXPECT_EQ(keyframe.description(), u"110, linear");
    EXPECT_FALSE(keyframe->state().checked);
    keyframe.perform(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(keyframe->state().checked);
    EXPECT_THAT(scene.selectedTimes(), ElementsAre(1000));
    const QPoint place = scene.window->mapToGlobal(scene.keyframeAt(scene.moves(), 1000));
    EXPECT_LE((keyframe->rect().center() - place).manhattanLength(), 2);
    EXPECT_EQ(Seen(seen(scene.pane().tracks())->childAt(place.x(), place.y())).get(),
              keyframe.get());

    scene.time().setPlayheadPositionInMS(300);
    row.perform(u"Create Keyframe"_s);
    EXPECT_THAT(scene.times(scene.moves()), ElementsAre(0, 300, 1000, 2000));
    // Out of sight, out of the list.
    scene.controller().timelineViewport().scrollTo({300, 0});
    EXPECT_EQ(row.children().back(), "X Translation, 2000 ms");
    EXPECT_EQ(row.children().size(), 2U);  // the last one, and the tween to it
    const auto gone = scene.moves().keyframesSortedByTime()[2];
    scene.moves().deleteKeyframe(gone);
    EXPECT_FALSE(keyframe->isValid());
}

TEST(TimelineAccessible, ThePlayheadIsASliderThatCanBeSet) {
    TimelineWindow scene;
    const Seen playhead = seen(scene.pane().tracks()).child(u"Playhead"_s);
    EXPECT_EQ(playhead->role(), QAccessible::Slider);
    playhead->valueInterface()->setCurrentValue(1234);
    EXPECT_EQ(scene.time().playheadPositionInMS(), 1234);
    EXPECT_EQ(playhead->valueInterface()->currentValue().toInt(), 1234);
    playhead.perform(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(scene.time().playheadPositionInMS(), 1250);
}

}  // namespace
}  // namespace tweenery::test
