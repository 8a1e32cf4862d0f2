#include "ui/export/export_sheet.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QPushButton>

#include "support/printers.h"
#include "ui/window/window_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// A window with the export sheet over it, driven as a person does.
class SheetScene : public WindowScene {
 public:
    explicit SheetScene(std::string_view tree = "A B C") : WindowScene(tree) {
        panel.folder = folder.filePath(u"out"_s);
        project().preferences().setGeneratedCodeUsesSwift(false);
        project().preferences().setGeneratedCodeIncludesImages(true);
        project().preferences().setGeneratedCodeCleansImageDirectory(false);
    }

    ExportSheet* sheet() {
        auto* found = window->findChild<ExportSheet*>();
        return found && found->isVisible() ? found : nullptr;
    }
    void open() {
        key(Qt::Key_Return, Qt::ControlModifier);
        ASSERT_TRUE(sheet());
        ASSERT_TRUE(QTest::qWaitFor([this] {
            return sheet()->session().preview() && !sheet()->session().forecast().sources.isEmpty();
        }));
        QCoreApplication::processEvents();
    }
    QAbstractButton* button(const QString& name) {
        for (auto* button : sheet()->findChildren<QAbstractButton*>()) {
            const bool isIt = button->accessibleName() == name || button->text() == name;
            if (isIt && button->isVisible()) { return button; }
        }
        return nullptr;
    }
    void press(const QString& name) {
        QAbstractButton* target = button(name);
        ASSERT_TRUE(target) << qPrintable(name);
        click(target->mapTo(window.get(), target->rect().center()));
        QCoreApplication::processEvents();
    }
};

TEST(ExportSheet, EveryToggleIsPressedNamedAndStored) {
    SheetScene scene;
    scene.open();
    PCProjectPreferences& preferences = scene.project().preferences();
    for (const ExportToggle& toggle : exportToggles()) {
        const QString name = QString::fromLatin1(toggle.toolTip);
        QAbstractButton* button = scene.button(name);
        ASSERT_TRUE(button) << toggle.toolTip;
        EXPECT_EQ(button->toolTip(), name);
        const bool wasOn = toggle.isOn(preferences);
        scene.press(name);
        EXPECT_EQ(toggle.isOn(preferences), toggle.isSwitch ? !wasOn : true) << toggle.toolTip;
        EXPECT_EQ(button->isChecked(), toggle.isOn(preferences)) << toggle.toolTip;
        const auto* accessible = QAccessible::queryAccessibleInterface(button);
        EXPECT_EQ(accessible->text(QAccessible::Name), name);
        EXPECT_EQ(accessible->state().checked != 0, button->isChecked());
        if (toggle.isSwitch) { scene.press(name); }
    }
    scene.press(u"Include Images In Export"_s);
    EXPECT_EQ(scene.button(u"Delete contents of images directory"_s)->isEnabled(),
              preferences.generatedCodeIncludesImages());
}

TEST(ExportSheet, OtherCommandsAndKeysWait) {
    SheetScene scene;
    scene.click(scene.middleOf("A"));
    scene.open();
    const size_t count = scene.project().canvas()->children().size();
    const QPoint middle = scene.middleOf("B");
    scene.key(Qt::Key_Delete);
    scene.key(Qt::Key_D, Qt::ControlModifier);
    scene.key(Qt::Key_5);
    scene.key(Qt::Key_Right);
    scene.click(middle);
    EXPECT_EQ(scene.project().canvas()->children().size(), count);
    EXPECT_EQ(scene.element("A")->opacity(), 1);
    EXPECT_EQ(scene.selected(), u"A");
    EXPECT_FALSE(scene.project().undoManager().canUndo());
    for (int i = 0; i < 40; ++i) {
        scene.key(Qt::Key_Tab);
        ASSERT_TRUE(scene.sheet()->isAncestorOf(scene.window->focusWidget()));
    }
    scene.key(Qt::Key_Escape);
    EXPECT_FALSE(scene.sheet());
    scene.key(Qt::Key_Delete);
    EXPECT_EQ(scene.project().canvas()->children().size(), count - 1);
}

TEST(ExportSheet, RowsPlayAndStopAndStartAnewWithTheSheet) {
    SheetScene scene;
    const auto animation = selectNewAnimation(scene.project(), u"walk"_s);
    const PCElement::Ptr a = scene.element("A");
    animation->applyTimeline(
        timelineWithKeys(a, PCPropertyTypeTranslationX, "0:0 1000:100", PCRepeatBehaviorForever),
        *a);
    scene.open();
    EXPECT_EQ(scene.button(u"walk"_s)->accessibleDescription(), u"∞");
    scene.press(u"walk"_s);
    EXPECT_TRUE(scene.button(u"walk"_s)->isChecked());
    EXPECT_TRUE(scene.sheet()->session().preview()->isAnyRunning());
    scene.press(u"walk"_s);
    EXPECT_FALSE(scene.button(u"walk"_s)->isChecked());
    scene.press(u"walk"_s);
    scene.press(u"Cancel"_s);
    scene.open();
    EXPECT_FALSE(scene.button(u"walk"_s)->isChecked());
}

TEST(ExportSheet, TheButtonIsForScenesWithAnElement) {
    SheetScene scene("");
    scene.key(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return scene.sheet()->session().preview() != nullptr; }));
    EXPECT_FALSE(scene.button(u"Export"_s)->isEnabled());
}

TEST(ExportSheet, ANoteLeadsToWhatItIsAbout) {
    SheetScene scene;
    scene.element("B")->setImageName(u"gone.png"_s);
    scene.open();
    auto* row = scene.sheet()->findChild<ExportNoteRow*>();
    ASSERT_TRUE(row);
    EXPECT_TRUE(row->accessibleName().startsWith(u"B: "_s)) << qPrintable(row->accessibleName());
    scene.click(row->mapTo(scene.window.get(), row->rect().center()));
    QCoreApplication::processEvents();
    EXPECT_FALSE(scene.sheet());
    EXPECT_EQ(scene.selected(), u"B");
    EXPECT_FALSE(QFile::exists(scene.panel.folder));
}

TEST(ExportSheet, ReturnExportsAndTheWindowSaysWhere) {
    SheetScene scene;
    scene.open();
    scene.key(Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !scene.sheet(); }));
    EXPECT_TRUE(QFile::exists(scene.panel.folder + u"/TestView.m"_s));
    QPushButton* show = nullptr;
    for (auto* button : scene.window->findChildren<QPushButton*>()) {
        if (button->text() == u"Show in Files" && button->isVisible()) { show = button; }
    }
    ASSERT_TRUE(show);
    scene.click(show->mapTo(scene.window.get(), show->rect().center()));
    ASSERT_EQ(scene.workspace.opened.size(), 1);
    EXPECT_TRUE(scene.workspace.opened.first().endsWith(u"/out"_s));
    scene.click(scene.at({5, 5}));
    EXPECT_FALSE(show->isVisible());
}

TEST(ExportSheet, FitsTheSmallestWindow) {
    SheetScene scene;
    scene.window->resize(DocumentWindow::leastSize());
    scene.open();
    for (const QString& name : {u"Cancel"_s, u"Export"_s, u"Export Objective-C"_s}) {
        QAbstractButton* button = scene.button(name);
        const QRect place(button->mapTo(scene.window.get(), QPoint()), button->size());
        EXPECT_TRUE(scene.window->rect().contains(place)) << qPrintable(name);
    }
}

TEST(ExportSheet, AWindowThatGoesTakesItsSheetAlong) {
    SheetScene scene;
    scene.open();
    scene.sheet()->session().beginExport();
    scene.window.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(scene.alerts.shown.empty());
}

}  // namespace
}  // namespace tweenery::test
