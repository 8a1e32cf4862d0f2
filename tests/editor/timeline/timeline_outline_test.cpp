#include "editor/timeline/timeline_outline.h"

#include <gtest/gtest.h>

#include "editor/controller_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

/// Rows as "canvas | A | A.X | ", with a star before those that are selected.
class TimelineOutlineTest : public testing::Test {
 protected:
    ControllerScene scene{"A G{B C} D"};
    PCAnimation::Ptr animation = selectNewAnimation(*scene.project, u"Fly"_s);
    TimelineOutline& outline = scene.controller.timelineOutline();
    int changes = 0;
    Subscription subscription = outline.addChangeHandler([this] { ++changes; });

    PCElement& element(const QString& name) { return *named(*scene.project, name); }
    PCKeyedPropertyTimeline& timeline(const QString& name, PCPropertyType type) {
        return *element(name).timeline(type);
    }
    void key(const QString& name, PCPropertyType type, int32_t timeInMS = 100) {
        timeline(name, type).setExistingValueAtTimeInMS(timeInMS);
    }
    std::string rows() {
        QStringList names;
        for (int i = 0; i < outline.rowCount(); ++i) {
            const auto [element, timeline] = outline.row(i);
            QString name = outline.isSelected(i) ? u"*"_s : QString();
            if (element) { name += element->isCanvas() ? u"canvas"_s : element->name(); }
            if (timeline) {
                name += u'.' + timeline->displayString();
                EXPECT_EQ(outline.rowOf(*timeline), i);
            } else if (element) {
                EXPECT_EQ(outline.rowOf(*element), i);
            }
            names << name;
        }
        return names.join(u" | "_s).toStdString();
    }
    std::string selectedKeyframes() {
        QStringList names;
        for (const auto& keyframe : scene.controller.keyframeManager().selectedKeyframes()) {
            names << keyframe->timeline()->element()->name() +
                         keyframe->timeline()->displayString();
        }
        names.sort();
        return names.join(u' ').toStdString();
    }
};

TEST_F(TimelineOutlineTest, ShowsElementsWithKeyframesFrontFirstAndTheirTimelinesInOrder) {
    EXPECT_EQ(rows(), "*canvas | ");
    for (const PCPropertyType type : elementTimelineTypes()) {
        key(u"B"_s, type);
    }
    key(u"A"_s, PCPropertyTypeOpacity);
    key(u"D"_s, PCPropertyTypeOpacity);
    EXPECT_EQ(rows(),
              "*canvas | D | D.Opacity: | B | B.X Translation: | B.Y Translation: | B.X Scale: | "
              "B.Y Scale: | B.Rotation: | B.Opacity: | B.Image Source: | B.Z-Position: | A | "
              "A.Opacity: | ");
    EXPECT_EQ(outline.rowOf(element(u"C"_s)), -1);
    EXPECT_EQ(outline.rowOf(timeline(u"C"_s, PCPropertyTypeOpacity)), -1);
}

TEST_F(TimelineOutlineTest, RowsComeAndGoWithKeyframesElementsAndAnimations) {
    key(u"A"_s, PCPropertyTypeOpacity, 100);
    key(u"A"_s, PCPropertyTypeOpacity, 300);
    const uint64_t revision = outline.rowsRevision();
    changes = 0;
    key(u"A"_s, PCPropertyTypeOpacity, 700);
    EXPECT_GT(changes, 0);
    EXPECT_EQ(outline.rowsRevision(), revision);
    EXPECT_EQ(outline.lastKeyframeTimeInMS(), 700);
    key(u"D"_s, PCPropertyTypeZRotation, 900);
    EXPECT_NE(outline.rowsRevision(), revision);
    EXPECT_EQ(outline.lastKeyframeTimeInMS(), 900);
    EXPECT_EQ(rows(), "*canvas | D | D.Rotation: | A | A.Opacity: | ");
    element(u"D"_s).removeFromParentElement();
    EXPECT_EQ(rows(), "*canvas | A | A.Opacity: | ");
    EXPECT_EQ(outline.lastKeyframeTimeInMS(), 700);
    scene.project->undoManager().endEvent();
    PCKeyedPropertyTimeline& opacity = timeline(u"A"_s, PCPropertyTypeOpacity);
    opacity.deleteKeyframes(opacity.keyframesSortedByTime());
    EXPECT_EQ(rows(), "*canvas | ");
    EXPECT_EQ(outline.lastKeyframeTimeInMS(), 0);
    scene.project->undo();
    EXPECT_EQ(outline.rowCount(), 4);
    scene.controller.selectAnimation(nullptr);
    EXPECT_EQ(rows(), "*canvas | ");
    scene.controller.selectAnimation(animation);
    EXPECT_EQ(outline.rowCount(), 4);
}

TEST_F(TimelineOutlineTest, WhatTheUserCollapsedStaysSoAndWhatIsNewIsExpanded) {
    key(u"A"_s, PCPropertyTypeOpacity);
    outline.setExpanded(element(u"A"_s), false);
    key(u"A"_s, PCPropertyTypeZRotation);
    key(u"B"_s, PCPropertyTypeOpacity);
    EXPECT_EQ(rows(), "*canvas | B | B.Opacity: | A | ");
    EXPECT_EQ(outline.rowOf(timeline(u"A"_s, PCPropertyTypeOpacity)), -1);
    outline.setExpanded(element(u"A"_s), true);
    EXPECT_EQ(rows(), "*canvas | B | B.Opacity: | A | A.Rotation: | A.Opacity: | ");
}

TEST_F(TimelineOutlineTest, SelectingRowsSelectsElementsAndKeyframes) {
    for (const auto& name : {u"A"_s, u"B"_s, u"D"_s}) {
        key(name, PCPropertyTypeOpacity);
    }
    timeline(u"A"_s, PCPropertyTypeZRotation).setFloatPropertyValue(1, 0);
    scene.project->canvas()->childrenZPositionsTimeline()->setExistingValueAtTimeInMS(0);
    element(u"D"_s).setLocked(true);
    // canvas 0, its order 1, D 2, D.Opacity 3, B 4, B.Opacity 5, A 6, A.Rotation 7, A.Opacity 8
    struct Row {
        int row;
        Qt::KeyboardModifiers modifiers;
        const char* elements;
        const char* keyframes;
        TimelineOutline::Rows rows;
    };
    const std::array table{
        Row{4, Qt::NoModifier, "B", "", {4}},
        Row{8, Qt::NoModifier, "A", "AOpacity:", {6, 8}},
        Row{5, Qt::ControlModifier, "A B", "AOpacity: BOpacity:", {4, 5, 6, 8}},
        Row{8, Qt::ControlModifier, "A B", "BOpacity:", {4, 5, 6}},
        Row{6, Qt::ControlModifier, "B", "BOpacity:", {4, 5}},
        Row{5, Qt::NoModifier, "B", "BOpacity:", {4, 5}},
        Row{7, Qt::ShiftModifier, "A B", "ARotation: BOpacity:", {4, 5, 6, 7}},
        Row{2, Qt::NoModifier, "", "", {0}},
        Row{3, Qt::NoModifier, "", "DOpacity:", {3}},
        Row{9, Qt::NoModifier, "", "", {0}},
        Row{4, Qt::ControlModifier, "B", "", {4}},
        Row{0, Qt::NoModifier, "", "", {0}},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.row);
        outline.pressRow(row.row, row.modifiers);
        QStringList elements = scene.selected().split(u' ');
        elements.sort();
        EXPECT_EQ(elements.join(u' '), QString::fromLatin1(row.elements));
        EXPECT_EQ(selectedKeyframes(), row.keyframes);
        EXPECT_EQ(outline.selectedRows(), row.rows);
    }
    outline.selectRows({1});  // the row above shows as selected with it
    EXPECT_TRUE(outline.isSelected(0) && outline.isSelected(1));
    outline.selectRows({8});
    scene.select({u"B"_s});
    EXPECT_EQ(outline.selectedRows(), TimelineOutline::Rows{4});
    scene.controller.selectAnimation(nullptr);
    outline.selectRows({0});
    EXPECT_EQ(scene.selected(), u"");
}

TEST_F(TimelineOutlineTest, RowsOfSelectedElementsOnly) {
    for (const auto& name : {u"A"_s, u"B"_s, u"D"_s}) {
        key(name, PCPropertyTypeOpacity);
    }
    outline.setShowsOnlySelected(true);
    EXPECT_EQ(rows(), "*canvas | ");
    scene.select({u"B"_s, u"C"_s});
    EXPECT_EQ(rows(), "canvas | *B | B.Opacity: | ");
    outline.selectRows({2});
    EXPECT_EQ(rows(), "canvas | *B | *B.Opacity: | ");
    EXPECT_EQ(outline.lastKeyframeTimeInMS(), 100);
    scene.select({});
    EXPECT_EQ(rows(), "*canvas | ");
    outline.setShowsOnlySelected(false);
    EXPECT_EQ(outline.rowCount(), 8);
}

}  // namespace
}  // namespace tweenery::test
