#include "ui/window/document_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>

#include "editor/commands.h"
#include "support/test_paths.h"
#include "ui/window/window_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

std::string storedCanvas(PCProject& project) {
    return exactState(*project.canvas());
}

TEST(DocumentWindow, AClickSelectsAndADragMovesAsOneStep) {
    WindowScene scene;
    scene.click(scene.middleOf("A"));
    EXPECT_EQ(scene.selected(), u"A");
    const QPointF before = scene.element("B")->position();
    const double magnification = scene.controller().viewport().magnificationFactor();
    scene.drag(scene.middleOf("B"), {40, 30});
    EXPECT_EQ(scene.selected(), u"B");
    const QPointF moved = scene.element("B")->position() - before;
    EXPECT_NEAR(moved.x(), 40 / magnification, 1e-4);
    EXPECT_NEAR(moved.y(), 30 / magnification, 1e-4);
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(scene.element("B")->position(), before);
    EXPECT_FALSE(scene.project().undoManager().canUndo());
}

TEST(DocumentWindow, EscapePutsADragBackAndLeavesNoStep) {
    WindowScene scene;
    const std::string before = storedCanvas(scene.project());
    const QPoint place = scene.middleOf("A");
    scene.press(place);
    scene.move(place + QPoint(30, 10));
    EXPECT_NE(storedCanvas(scene.project()), before);
    scene.key(Qt::Key_Escape);
    scene.release(place + QPoint(30, 10));
    EXPECT_EQ(storedCanvas(scene.project()), before);
    EXPECT_FALSE(scene.project().undoManager().canUndo());
}

// Commands wait while a press lasts.
TEST(DocumentWindow, KeysDoNothingDuringADrag) {
    WindowScene scene;
    const QPoint place = scene.middleOf("A");
    scene.press(place);
    scene.move(place + QPoint(30, 10));
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_H, Qt::Key_Return}) {
        scene.key(key);
    }
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(scene.project().undoManager().isInGesture());
    scene.release(place + QPoint(30, 10));
    EXPECT_EQ(treeText(*scene.project().canvas()), "A B C");
    EXPECT_EQ(scene.controller().interaction().tool(), PCSelectionStateSelect);
}

TEST(DocumentWindow, PlainKeysAreCommandsUnlessATextIsEdited) {
    WindowScene scene;
    scene.click(scene.middleOf("A"));
    scene.key(Qt::Key_H);
    EXPECT_EQ(scene.controller().interaction().tool(), PCSelectionStateHand);
    scene.key(Qt::Key_V);
    EXPECT_EQ(scene.controller().interaction().tool(), PCSelectionStateSelect);
    const QPointF before = scene.element("A")->position();
    scene.key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(scene.element("A")->position(), before + QPointF(10, 0));
    scene.key(Qt::Key_5);
    EXPECT_EQ(scene.element("A")->opacity(), 0.5);

    scene.key(Qt::Key_F2);
    for (const Qt::Key key : {Qt::Key_H, Qt::Key_5}) {
        QTest::keyClick(scene.window->focusWidget(), key);
    }
    QTest::keyClick(scene.window->focusWidget(), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(scene.controller().interaction().tool(), PCSelectionStateSelect);
    EXPECT_EQ(scene.controller().selectionManager().firstSelectedElement()->name(), u"h5");
    scene.key(Qt::Key_Delete);
    EXPECT_EQ(treeText(*scene.project().canvas()), "B C");
}

// The key that ends a name is no command, though Return plays.
TEST(DocumentWindow, ANewAnimationIsNamedAndDoesNotPlay) {
    WindowScene scene;
    scene.key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    for (const Qt::Key key : {Qt::Key_G, Qt::Key_O, Qt::Key_Return}) {
        QTest::keyClick(scene.window->focusWidget(), key);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(scene.project().animationsManager().selectedAnimation()->name(), u"go");
    EXPECT_FALSE(scene.controller().isPlayingBack());
    scene.key(Qt::Key_Return);
    EXPECT_TRUE(scene.controller().isPlayingBack());
}

// Every command of menu, window and canvas is performed by somebody.
TEST(DocumentWindow, EveryCommandHasAnAction) {
    const QSet<QString> ofTheProgram{
        u"newDocument"_s,         u"openDocument"_s,     u"saveDocument"_s,  u"saveDocumentAs"_s,
        u"revertDocument"_s,      u"saveDocumentCopy"_s, u"quit"_s,          u"openPreferences"_s,
        u"nextWindow"_s,          u"openHelp"_s,         u"showShortcuts"_s, u"about"_s,
        u"exportGeneratedCode"_s, u"openRecent"_s};
    WindowScene scene("A G{B}");
    const auto walk = selectNewAnimation(scene.project(), u"Walk"_s);
    named(scene.project(), u"A"_s)->setXTranslation(1, 0);
    named(scene.project(), u"A"_s)->setXTranslation(2, 500);
    named(scene.project(), u"G"_s)->setXTranslation(1, 0);
    scene.controller().playback().setLoopRange(0, 500);
    KeyframeCommands& keyframes = scene.controller().keyframeCommands();
    const auto isEnabledSomewhere = [&](const QString& name) {
        for (const auto& animation : {PCAnimation::Ptr(), walk}) {
            for (const QStringList& names : {QStringList{u"A"_s}, QStringList{u"G"_s}}) {
                scene.controller().selectAnimation(animation);
                scene.controller().selectionManager().selectElements(
                    allNamed(scene.project(), names));
                keyframes.deselectAll();
                keyframes.selectRows();
                if (scene.controller().commands().isEnabled(name)) { return true; }
            }
        }
        return false;
    };
    for (const Command& command : allCommands()) {
        if (ofTheProgram.contains(command.name)) { continue; }
        if (command.name == u"undo" || command.name == u"redo") { continue; }
        EXPECT_TRUE(isEnabledSomewhere(command.name)) << qPrintable(command.name);
        EXPECT_NE(scene.window->menu().action(command.name), nullptr);
    }
}

TEST(DocumentWindow, AnimationsShowTheBottomPane) {
    WindowScene scene;
    QAction* toggle = scene.window->menu().action(u"toggleBottomPane"_s);
    const auto walk = selectNewAnimation(scene.project(), u"Walk"_s);
    QCoreApplication::processEvents();
    EXPECT_TRUE(toggle->isEnabled());
    EXPECT_EQ(toggle->text(), u"Show Bottom Pane");
    toggle->trigger();
    EXPECT_EQ(toggle->text(), u"Hide Bottom Pane");
    scene.controller().selectAnimation(nullptr);
    QCoreApplication::processEvents();
    EXPECT_FALSE(toggle->isEnabled());
}

TEST(DocumentWindow, TheTitleTellsTheZoomOnceItChanged) {
    WindowScene scene;
    EXPECT_EQ(scene.window->windowTitle(), u"Test[*]");
    scene.key(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(scene.window->windowTitle(), u"Test[*] @ 100% view");
}

// A picture becomes an element where it falls, a project opens.
TEST(DocumentWindow, TakesWhatIsDroppedOnTheCanvas) {
    WindowScene scene("A");
    const auto drop = [&](const QString& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QWidget* pane = scene.window->canvas().viewport();
        const QPoint point = scene.at({500, 300});
        QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(pane, &enter);
        QDropEvent event(point, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(enter.isAccepted() ? pane : scene.window.get(), &event);
        QCoreApplication::processEvents();
    };
    QImage picture(4, 4, QImage::Format_ARGB32);
    picture.fill(Qt::blue);
    const QString file = scene.folder.filePath(u"dot@2x.png"_s);
    ASSERT_TRUE(picture.save(file));
    drop(file);
    EXPECT_EQ(scene.selected(), u"dot");
    EXPECT_TRUE(scene.project().undoManager().canUndo());
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(treeText(*scene.project().canvas()), "A");

    const QString project = sourcePath(u"samples/Bounce.tweenery"_s);
    drop(project + u"/version"_s);
    EXPECT_EQ(scene.opened, QStringList(project));
}

TEST(DocumentWindow, ClosingAsksItsOwner) {
    WindowScene scene;
    scene.window->close();
    EXPECT_EQ(scene.closeRequests, 1);
    EXPECT_TRUE(scene.window->isVisible());
}

}  // namespace
}  // namespace tweenery::test
