#include <gtest/gtest.h>

#include <QAccessible>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include "editor/canvas/pasteboard_commands.h"
#include "editor/controller_scene.h"
#include "editor/mime_pasteboard.h"
#include "ui/navigators/name_editing.h"
#include "ui/navigators/navigator.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// A navigator in a window that gets real events.
struct Window {
    ControllerScene scene;
    Navigator navigator;

    explicit Window(std::string_view tree) : scene(tree), navigator(scene.controller) {
        navigator.resize(300, 600);
        navigator.show();
        navigator.activateWindow();
        settle();
    }
    static void settle() { QCoreApplication::processEvents(); }

    ElementsView& elements() { return navigator.elementsView(); }
    AnimationsView& animations() { return navigator.animationsView(); }
    PCElement::Ptr at(const char* name) { return named(*scene.project, QString::fromLatin1(name)); }
    QModelIndex cell(const char* name, ElementsModel::Column column = ElementsModel::Name) {
        return elements().elementsModel().indexOf(*at(name), column);
    }
    QPoint pointOf(const QModelIndex& index) {
        QAbstractItemView& view = index.model() == elements().model()
                                      ? static_cast<QAbstractItemView&>(elements())
                                      : animations();
        return view.viewport()->mapTo(&navigator, view.visualRect(index).center());
    }
    void press(QPoint point) {
        QTest::mousePress(navigator.windowHandle(), Qt::LeftButton, {}, point);
    }
    void move(QPoint point) { QTest::mouseMove(navigator.windowHandle(), point); }
    void release(QPoint point) {
        QTest::mouseRelease(navigator.windowHandle(), Qt::LeftButton, {}, point);
        settle();
    }
    void click(QPoint point, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(navigator.windowHandle(), Qt::LeftButton, modifiers, point);
        settle();
    }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(navigator.windowHandle(), static_cast<Qt::Key>(key), modifiers);
        settle();
    }
    NameEditor* editor() { return navigator.findChild<NameEditor*>(); }
    void type(const QString& text) {
        for (const QChar c : text) {
            QTest::keyClick(navigator.windowHandle(), c.toLatin1());
        }
        key(Qt::Key_Return);
    }
    /// The names of the rows that show as selected, from the top.
    std::string selectedRows() {
        QStringList names;
        for (const QModelIndex& index : elements().selectionModel()->selectedRows()) {
            names << elements().elementsModel().element(index)->name();
        }
        names.sort();
        return names.join(u' ').toStdString();
    }
};

TEST(ElementsView, SelectsWhatIsSelectedAndNothingElse) {
    Window window("A G+{B C} D E");
    window.click(window.pointOf(window.cell("E")));
    window.click(window.pointOf(window.cell("C")), Qt::ShiftModifier);
    EXPECT_EQ(window.scene.selected(), u"E D G C"_s);
    window.click(window.pointOf(window.cell("D")), Qt::ControlModifier);
    EXPECT_EQ(window.scene.selected(), u"E G C"_s);
    window.at("A")->setLocked(true);
    window.settle();
    window.click(window.pointOf(window.cell("A")));
    EXPECT_EQ(window.scene.selected(), u""_s);
    EXPECT_EQ(window.selectedRows(), "");

    window.scene.select({u"B"_s, u"D"_s});
    window.settle();
    EXPECT_EQ(window.selectedRows(), "B D");
    window.scene.perform("delete");
    window.settle();
    EXPECT_EQ(window.selectedRows(), "");
    window.scene.perform("undo");
    window.settle();
    EXPECT_EQ(window.selectedRows(), "B D");
}

// By hand it is kept in the element; to show what is selected it is not.
TEST(ElementsView, OpensGroups) {
    Window window("A G{B C} D");
    window.elements().expand(window.cell("G", ElementsModel::Visibility));
    EXPECT_TRUE(window.at("G")->expanded());
    window.scene.perform("undo");
    window.settle();
    EXPECT_FALSE(window.elements().isExpanded(window.cell("G", ElementsModel::Visibility)));

    window.scene.select({u"B"_s});
    window.settle();
    EXPECT_TRUE(window.elements().isExpanded(window.cell("G", ElementsModel::Visibility)));
    EXPECT_FALSE(window.at("G")->expanded());
    EXPECT_FALSE(window.scene.project->undoManager().canUndo());
}

TEST(ElementsView, PressesOnEyesAndLocksLeaveTheSelection) {
    Window window("A B C D");
    window.scene.select({u"D"_s});
    const auto eye = [&](const char* name) {
        return window.pointOf(window.cell(name, ElementsModel::Visibility));
    };
    window.press(eye("D"));
    window.move(eye("D") + QPoint(0, 3));
    window.move(eye("B"));  // past C at once
    window.release(eye("B"));
    EXPECT_TRUE(window.at("D")->hidden() && window.at("C")->hidden() && window.at("B")->hidden());
    EXPECT_FALSE(window.at("A")->hidden());
    EXPECT_EQ(window.scene.selected(), u"D"_s);
    window.scene.perform("undo");
    EXPECT_FALSE(window.at("C")->hidden());
    EXPECT_FALSE(window.scene.project->undoManager().canUndo());

    window.scene.select({u"D"_s});
    window.settle();
    window.click(window.pointOf(window.cell("A", ElementsModel::Lock)));
    EXPECT_TRUE(window.at("A")->locked());
    EXPECT_EQ(window.scene.selected(), u"D"_s);
    window.click(window.pointOf(window.cell("D", ElementsModel::Lock)));
    EXPECT_EQ(window.scene.selected(), u""_s);
}

TEST(ElementsView, RenamesInPlaceWhateverHappensToOtherRows) {
    Window window("A B C");
    window.scene.select({u"B"_s});
    window.settle();
    window.scene.perform("renameElement");
    ASSERT_NE(window.editor(), nullptr);
    window.at("C")->removeFromParentElement();
    window.scene.project->moveElementsToFront({window.at("A")});
    window.settle();
    ASSERT_NE(window.editor(), nullptr) << "the field stays open";
    window.type(u"A"_s);
    EXPECT_NE(window.at("A 1"), nullptr);

    window.scene.select({u"A 1"_s});
    window.settle();
    window.scene.perform("renameElement");
    QTest::keyClick(window.navigator.windowHandle(), 'x');
    window.key(Qt::Key_Escape);
    EXPECT_NE(window.at("A 1"), nullptr) << "Escape keeps the name";
}

// Moves rows by real drop events, whose data comes as it would from this or another window.
TEST(ElementsView, TakesDrops) {
    Window window("A G{B} C D");
    const auto drop = [&](QMimeData& mime, const char* row, int dy) {
        QWidget* list = window.elements().viewport();
        const QPoint point =
            window.elements().visualRect(window.cell(row)).center() + QPoint(0, dy);
        QDragEnterEvent enter(point, Qt::CopyAction, &mime, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list, &enter);
        QDragMoveEvent over(point, Qt::CopyAction, &mime, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list, &over);
        QDropEvent event(point, Qt::CopyAction, &mime, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list, &event);
        const bool isTaken = over.isAccepted() && event.isAccepted();
        window.settle();
        return isTaken;
    };
    QMimeData text;
    text.setText(u"kite"_s);
    EXPECT_FALSE(drop(text, "C", 0));

    QMimeData elements;
    MimePasteboard pasteboard(elements);
    window.scene.select({u"G"_s});
    copySelectedElements(*window.scene.project, window.scene.controller.selectionManager(),
                         pasteboard);
    EXPECT_TRUE(drop(elements, "C", 0));
    EXPECT_EQ(window.scene.tree(), "A G{B} G_1{B_1} C D");

    QMimeData garbage;
    garbage.setData(PCElement::pasteboardType(), "garbage");
    drop(garbage, "C", 0);
    EXPECT_EQ(window.scene.tree(), "A G{B} G_1{B_1} C D");
}

TEST(ElementsView, OffersItsMenuAsTheWindowDoes) {
    Window window("A G{B}");
    const auto offered = [&] {
        QStringList texts;
        const auto menu = window.elements().makeContextMenu();
        for (const QAction* action : menu->actions()) {
            if (action->isEnabled()) { texts << action->text(); }
        }
        return texts.join(u", "_s).toStdString();
    };
    EXPECT_EQ(offered(), "");
    window.scene.select({u"A"_s});
    EXPECT_EQ(offered(), "Duplicate, Duplicate In Place, Delete, Group, Rename");
    window.scene.select({u"G"_s});
    EXPECT_EQ(offered(), "Duplicate, Duplicate In Place, Delete, Group, Ungroup, Rename");
    window.scene.select({u"A"_s, u"G"_s});
    EXPECT_EQ(offered(), "Duplicate, Duplicate In Place, Delete, Group");
}

/// The names of the rows below "setup", the selected one in brackets.
std::string animationRows(Window& window) {
    QStringList names;
    const QAbstractItemModel& model = *window.animations().model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        const QString name = index.data().toString();
        const bool isSelected = window.animations().selectionModel()->isSelected(index);
        names << (isSelected ? u"[%1]"_s.arg(name) : name);
    }
    return names.join(u", "_s).toStdString();
}

TEST(AnimationsView, MirrorsTheSelectedAnimation) {
    Window window("A");
    PCAnimationsManager& manager = window.scene.project->animationsManager();
    EXPECT_EQ(animationRows(window), "[setup]");
    for (const QString& name : {u"Run"_s, u"Walk"_s}) {
        manager.renameAnimation(manager.addNewEmptyAnimation(), name);
    }
    manager.renameAnimation(manager.animations()[1], u"Crawl"_s);
    EXPECT_EQ(animationRows(window), "[setup], Run, Crawl") << "renaming moves no row";
    window.settle();
    window.click(window.pointOf(window.animations().model()->index(2, 0)));
    EXPECT_EQ(manager.selectedAnimation()->name(), u"Crawl"_s);
    window.key(Qt::Key_Up);
    EXPECT_EQ(manager.selectedAnimation()->name(), u"Run"_s);
    manager.deleteAnimation(manager.animations()[1]);
    EXPECT_EQ(animationRows(window), "setup, [Run]");
    window.click(window.pointOf(window.animations().model()->index(1, 0)), Qt::ControlModifier);
    EXPECT_EQ(animationRows(window), "setup, [Run]") << "one row is always selected";
    window.key(Qt::Key_Delete);
    EXPECT_EQ(animationRows(window), "[setup]");
    window.key(Qt::Key_Delete);
    window.key(Qt::Key_F2);
    EXPECT_EQ(animationRows(window), "[setup]");
    EXPECT_EQ(window.editor(), nullptr) << "setup has no name to edit";
}

TEST(AnimationsView, AddsWithTheNameOpen) {
    Window window("A");
    window.scene.perform("addAnimation");
    Window::settle();
    ASSERT_NE(window.editor(), nullptr);
    EXPECT_EQ(window.editor()->selectedText(), u"Untitled Animation"_s);
    for (const char c : {'f', 'l', 'y'}) {
        QTest::keyClick(window.navigator.windowHandle(), c);
    }
    window.scene.perform("addAnimation");  // keeps what was typed
    EXPECT_EQ(animationRows(window), "setup, fly, [Untitled Animation]");
    window.type(u"fly"_s);
    EXPECT_EQ(animationRows(window), "setup, fly, [fly 2]");
    window.scene.perform("undo");
    EXPECT_EQ(animationRows(window), "setup, fly, [Untitled Animation]");

    for (const int row : {0, 1}) {
        const auto menu =
            window.animations().makeContextMenu(window.animations().model()->index(row, 0));
        for (const QAction* action : menu->actions()) {
            EXPECT_EQ(action->isEnabled(), row > 0) << qPrintable(action->text());
        }
    }
}

// Keys that move in a list are its own; letters and digits go on to the window.
TEST(Lists, KeepTheirKeysOnly) {
    Window window("A B");
    for (QWidget* list :
         {static_cast<QWidget*>(&window.elements()), static_cast<QWidget*>(&window.animations())}) {
        for (const auto& [key, modifiers, isKept] :
             std::vector<std::tuple<Qt::Key, Qt::KeyboardModifiers, bool>>{
                 {Qt::Key_Up, Qt::NoModifier, true},
                 {Qt::Key_Down, Qt::ShiftModifier, true},
                 {Qt::Key_Home, Qt::NoModifier, true},
                 {Qt::Key_Home, Qt::ControlModifier, false},
                 {Qt::Key_A, Qt::NoModifier, false},
                 {Qt::Key_5, Qt::NoModifier, false},
                 {Qt::Key_Space, Qt::NoModifier, false}}) {
            QKeyEvent override(QEvent::ShortcutOverride, key, modifiers);
            override.ignore();
            QCoreApplication::sendEvent(list, &override);
            EXPECT_EQ(override.isAccepted(), isKept) << "shortcut " << key;
            QKeyEvent press(QEvent::KeyPress, key, modifiers, u"a"_s);
            list->setFocus();
            press.accept();
            static_cast<QObject*>(list)->event(&press);
            EXPECT_EQ(press.isAccepted(), isKept) << key;
        }
    }
}

TEST(Lists, AreNamedForAssistiveTools) {
    Window window("kite G+{B}");
    const auto* tree = QAccessible::queryAccessibleInterface(&window.elements());
    EXPECT_EQ(tree->text(QAccessible::Name), u"Elements"_s);
    EXPECT_EQ(tree->role(), QAccessible::Tree);
    QStringList names;
    for (int i = 0; i < tree->childCount(); ++i) {
        const auto* cell = tree->child(i);
        names << cell->text(QAccessible::Name);
        const bool isHeader = i < ElementsModel::ColumnCount;
        const bool isName = i % ElementsModel::ColumnCount == ElementsModel::Name;
        EXPECT_EQ(cell->state().checkable, !isHeader && !isName) << i;
    }
    EXPECT_EQ(names, (QStringList{u"Visible"_s, u"Locked"_s, u"Name"_s, u"Visible, G"_s,
                                  u"Locked, G"_s, u"G"_s, u"Visible, B"_s, u"Locked, B"_s, u"B"_s,
                                  u"Visible, kite"_s, u"Locked, kite"_s, u"kite"_s}));
    const auto* list = QAccessible::queryAccessibleInterface(&window.animations());
    EXPECT_EQ(list->text(QAccessible::Name), u"Animations"_s);
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), u"setup"_s);
}

TEST(Navigator, KeepsARowOfBothListsWhereverTheStripIsDragged) {
    Window window("A");
    for (const auto& [asked, given] :
         std::vector<std::pair<int, int>>{{300, 300}, {-50, 58}, {900, 600 - 90}}) {
        window.navigator.setDividerPosition(asked);
        EXPECT_EQ(window.navigator.dividerPosition(), given);
    }
    window.navigator.setDividerPosition(300);
    window.navigator.resize(300, 1200);
    EXPECT_EQ(window.navigator.dividerPosition(), 600);
}

}  // namespace
}  // namespace tweenery::test
