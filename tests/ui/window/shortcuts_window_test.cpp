#include "ui/window/shortcuts_window.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>
#include <QWindow>

#include "editor/commands.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

struct Shown {
    QStringList titles;
    QStringList keys;
};

Shown rowsOf(const QTreeWidget& list) {
    Shown shown;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        const QTreeWidgetItem* section = list.topLevelItem(i);
        for (int j = 0; j < section->childCount() && !section->isHidden(); ++j) {
            if (section->child(j)->isHidden()) { continue; }
            shown.titles << section->child(j)->text(0);
            shown.keys << section->child(j)->text(1);
        }
    }
    return shown;
}

TEST(ShortcutsWindow, ListsAllAndFindsByWordsOfTitleKeysAndMenu) {
    QWidget window;
    window.show();
    showShortcuts(window);
    showShortcuts(window);
    ASSERT_EQ(window.findChildren<QDialog*>().size(), 1) << "one list for a window";
    auto* dialog = window.findChild<QDialog*>();
    auto* list = dialog->findChild<QTreeWidget*>();
    EXPECT_FALSE(dialog->isModal());
    const Shown all = rowsOf(*list);
    for (const Command& command : allCommands()) {
        const QString first = command.shortcuts.section(u"; "_s, 0, 0);
        if (first.isEmpty()) { continue; }
        EXPECT_EQ(all.keys.filter(first).isEmpty(), false) << qPrintable(command.title);
    }

    EXPECT_FALSE(all.keys.contains(QString())) << "what has no keys does not belong here";

    struct Case {
        QString search;
        QString found;  // a title
        bool isOnly;
    };
    const std::vector<Case> cases = {
        {u"save as"_s, u"Save As"_s, true},
        {u"ctrl+shift+z"_s, u"Redo"_s, true},
        {u"view zoom"_s, u"Zoom In"_s, false},
        {u"wheel pinch"_s, u"Zoom about the pointer"_s, true},
        {u"15°"_s, u"Rotate in steps of 15°"_s, true},
    };
    auto* search = dialog->findChild<QLineEdit*>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return search->hasFocus(); }));
    for (const Case& c : cases) {
        search->clear();
        for (const QChar letter : c.search) {
            QTest::sendKeyEvent(QTest::Click, dialog->windowHandle(), Qt::Key_unknown, letter, {});
        }
        const Shown shown = rowsOf(*list);
        EXPECT_TRUE(shown.titles.contains(c.found)) << qPrintable(c.search);
        EXPECT_LT(shown.titles.size(), all.titles.size()) << qPrintable(c.search);
        if (c.isOnly) { EXPECT_EQ(shown.titles.size(), 1) << qPrintable(c.search); }
    }
    search->setText(u"no such thing"_s);
    EXPECT_TRUE(rowsOf(*list).titles.isEmpty());
    QTest::keyClick(dialog->windowHandle(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChildren<QDialog*>().isEmpty(); }));
}

}  // namespace
}  // namespace tweenery::test
