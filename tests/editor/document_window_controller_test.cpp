#include "editor/document_window_controller.h"

#include <gtest/gtest.h>

#include "editor/commands.h"
#include "editor/controller_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// Each command does what it says, leaves selected what it made or touched, and is one step.
TEST(DocumentCommands, EditAsOneStep) {
    struct Case {
        QStringList selected;
        const char* command;
        const char* tree;
        const char* selection;
        const char* afterUndo = nullptr;  // what is selected; none: what was
    };
    const std::vector<Case> cases = {
        {{u"A"_s, u"D"_s}, "groupElements", "G{B C} Untitled{A D}", "Untitled", "A D"},
        {{u"G"_s}, "ungroupElements", "A B C D", "B C", "G"},
        {{u"G"_s}, "delete", "A D", "", "G"},
        {{u"B"_s, u"D"_s}, "delete", "A G{C}", "", "D B"},
        {{u"A"_s}, "duplicateElements", "A A_2 G{B C} D", "A 2", ""},
        {{u"A"_s}, "duplicateElementsInPlace", "A A_2 G{B C} D", "A 2", ""},
        {{u"A"_s}, "moveElementsForward", "G{B C} A D", "A", "A"},
        {{u"A"_s}, "moveElementsToFront", "G{B C} D A", "A", "A"},
        {{u"D"_s}, "moveElementsToBack", "D A G{B C}", "D", "D"},
        {{u"A"_s}, "toggleHidden", "A G{B C} D", "A", "A"},
        {{u"A"_s}, "anchorAtTopLeft", "A G{B C} D", "A", "A"},
        {{u"A"_s}, "cut", "G{B C} D", "", "A"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.command);
        ControllerScene scene("A G{B C} D");
        scene.select(c.selected);
        const std::string before = scene.stored();
        scene.perform(c.command);
        EXPECT_EQ(scene.tree(), c.tree);
        EXPECT_EQ(scene.selected().toStdString(), c.selection);
        const std::string after = scene.stored();
        EXPECT_NE(after, before);
        EXPECT_FALSE(scene.project->undoManager().undoActionName().isEmpty());

        scene.perform("undo");
        EXPECT_EQ(scene.stored(), before);
        EXPECT_FALSE(scene.project->undoManager().canUndo());
        if (c.afterUndo) { EXPECT_EQ(scene.selected().toStdString(), c.afterUndo); }
        scene.perform("redo");
        EXPECT_EQ(scene.stored(), after);
        EXPECT_FALSE(scene.project->undoManager().canRedo());
    }
}

TEST(DocumentCommands, AreOfferedWhereTheyCanDoSomething) {
    struct Case {
        const char* command;
        bool nothingSelected, element, group, inAnimation;
    };
    const std::vector<Case> cases = {
        {"groupElements", false, true, true, true},
        {"ungroupElements", false, false, true, false},
        {"copy", false, true, true, true},
        {"paste", true, true, true, true},
        {"delete", false, true, true, true},
        {"moveElementsForward", false, true, true, false},
        {"anchorAtCenter", false, true, true, false},
        {"zoomToSelection", false, true, true, true},
        {"togglePlayPause", false, false, false, true},
        {"deleteAnimation", false, false, false, true},
        {"undo", false, false, false, false},
        {"no such command", false, false, false, false},
    };
    ControllerScene scene("A G{B}");
    const auto isEnabled = [&](const Case& c) {
        return scene.controller.commands().isEnabled(QString::fromLatin1(c.command));
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.command);
        scene.controller.selectAnimation(nullptr);
        scene.select({});
        EXPECT_EQ(isEnabled(c), c.nothingSelected);
        scene.select({u"A"_s});
        EXPECT_EQ(isEnabled(c), c.element);
        scene.select({u"G"_s});
        EXPECT_EQ(isEnabled(c), c.group);
        if (scene.project->animationsManager().animations().empty()) {
            selectNewAnimation(*scene.project, u"Walk"_s);
        }
        scene.controller.selectAnimation(scene.project->animationsManager().animations()[0]);
        scene.select({u"A"_s});
        EXPECT_EQ(isEnabled(c), c.inAnimation);
    }
}

// No command of the menu is without somebody who performs it, but for those of window and program.
TEST(DocumentCommands, StandInTheTableOnce) {
    std::set<QString> names;
    std::map<QString, QString> shortcuts;
    for (const Command& command : allCommands()) {
        EXPECT_TRUE(names.insert(command.name).second) << qPrintable(command.name);
        for (const QString& shortcut : command.shortcuts.split(u"; "_s, Qt::SkipEmptyParts)) {
            const auto [place, isNew] = shortcuts.try_emplace(shortcut, command.name);
            EXPECT_TRUE(isNew) << qPrintable(shortcut) << " is that of "
                               << qPrintable(place->second) << " and of "
                               << qPrintable(command.name);
        }
    }
}

TEST(DocumentCommands, AskBeforeKeyedValuesAreLost) {
    for (const bool agrees : {true, false}) {
        ControllerScene scene("A B");
        selectNewAnimation(*scene.project, u"Walk"_s);
        named(*scene.project, u"A"_s)->setOpacity(0.5F, 100);
        scene.project->undoManager().endEvent();
        scene.project->fileWrapper();
        scene.select({u"B"_s});
        scene.perform("delete");
        EXPECT_EQ(scene.tree(), "A");
        EXPECT_TRUE(scene.alerts.shown.empty());

        scene.select({u"A"_s});
        scene.alerts.answers = {agrees ? 0 : 1};
        scene.perform("delete");
        ASSERT_EQ(scene.alerts.shown.size(), 1U);
        EXPECT_EQ(scene.alerts.shown[0].message, u"About to Perform Destructive Operation");
        EXPECT_EQ(scene.tree(), agrees ? "" : "A");
    }
}

// The animation of the edit comes back with it, without a step of its own.
TEST(DocumentCommands, UndoGoesToTheAnimationOfTheEdit) {
    ControllerScene scene("A B");
    const auto walk = selectNewAnimation(*scene.project, u"Walk"_s);
    scene.select({u"A"_s});
    scene.controller.shiftSelectedElementsByDelta({5, 0});
    scene.project->undoManager().endEvent();
    scene.perform("selectSetup");
    EXPECT_TRUE(scene.project->isSetupMode());
    scene.select({u"B"_s});
    scene.perform("undo");
    EXPECT_EQ(scene.project->animationsManager().selectedAnimation(), walk);
    EXPECT_EQ(scene.selected(), u"A");
    EXPECT_FALSE(scene.project->undoManager().canUndo());
}

TEST(DocumentCommands, PasteTakesElementsFilesAndPicturesInThatOrder) {
    ControllerScene scene("A");
    scene.select({u"A"_s});
    scene.perform("copy");
    EXPECT_FALSE(scene.clipboard.items.items.empty());
    scene.select({});
    scene.perform("copy");
    EXPECT_FALSE(scene.clipboard.items.items.empty()) << "nothing selected clears nothing";
    scene.perform("paste");
    EXPECT_EQ(scene.tree(), "A_1 A");
    EXPECT_EQ(scene.selected(), u"A 1");

    scene.clipboard.items.items.clear();
    scene.clipboard.foreign = QImage(8, 6, QImage::Format_ARGB32);
    scene.clipboard.foreign.fill(Qt::red);
    scene.perform("paste");
    EXPECT_EQ(scene.selected(), u"Pasted Image");
    EXPECT_EQ(named(*scene.project, u"Pasted Image"_s)->size(), QSizeF(8, 6));

    scene.clipboard.items.items = {{PCElement::pasteboardType(), QVariantList{u"garbage"_s}}};
    scene.alerts.answers = {0};
    const std::string before = scene.stored();
    scene.perform("paste");
    EXPECT_EQ(scene.alerts.shown.size(), 1U);
    EXPECT_EQ(scene.stored(), before);
}

TEST(DocumentCommands, EndARunWhereItIs) {
    ControllerScene scene("A");
    selectNewAnimation(*scene.project, u"Walk"_s);
    scene.select({u"A"_s});
    scene.perform("togglePlayPause");
    EXPECT_EQ(scene.selected(), u"");
    scene.clock.seconds += 0.25;
    scene.controller.timeManager().displaylinkAdapter()->tick();
    scene.controller.stopPlaybackHere();
    EXPECT_EQ(scene.controller.timeManager().playheadPositionInMS(), 250);
    EXPECT_EQ(scene.selected(), u"A");
}

}  // namespace
}  // namespace tweenery::test
