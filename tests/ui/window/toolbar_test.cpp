#include "ui/window/toolbar.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "base/user_defaults.h"
#include "ui/widgets/appearance.h"
#include "ui/window/preferences_window.h"
#include "ui/window/toolbar_dialog.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
namespace items = toolbarItems;

class ToolbarTest : public testing::Test {
 protected:
    ToolbarTest() {
        UserDefaults::useMemory();
        Appearance::current().reload();
    }

    QAction* action(const QString& command) {
        QAction*& made = actions[command];
        if (!made) { made = new QAction(command, &window); }
        return made;
    }
    std::unique_ptr<Toolbar> makeToolbar(int width) {
        auto toolbar = std::make_unique<Toolbar>(
            [this](const QString& command) { return action(command); }, nullptr);
        toolbar->resize(width, 44);
        toolbar->show();
        return toolbar;
    }
    static void click(QWidget* widget) {
        QTest::mouseClick(widget->window()->windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(widget->window(), widget->rect().center()));
    }

    QObject window;
    QMap<QString, QAction*> actions;
};

TEST_F(ToolbarTest, ItemsTriggerTheActionsOfTheWindow) {
    const auto toolbar = makeToolbar(1440);
    int count = 0;
    for (const QString& identifier : items::allowed()) {
        const ToolbarItem* item = toolbarItem(identifier);
        if (item->command.isEmpty()) { continue; }
        QWidget* widget = toolbar->item(identifier);
        QSignalSpy triggers(action(item->command), &QAction::triggered);
        click(widget);
        EXPECT_EQ(triggers.count(), 1) << qPrintable(identifier);
        action(item->command)->setEnabled(false);
        EXPECT_FALSE(widget->isEnabled());
        click(widget);
        EXPECT_EQ(triggers.count(), 1) << qPrintable(identifier);
        EXPECT_FALSE(static_cast<QAbstractButton*>(widget)->isChecked())
            << "a press sets no state: " << qPrintable(identifier);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name),
                  item->accessibleName);
        ++count;
    }
    EXPECT_EQ(count, 12);
    EXPECT_EQ(toolbar->item(u"unknown"_s), nullptr);
}

TEST_F(ToolbarTest, StatesHoldBeforeAndAfterTheItemIsMade) {
    items::setOfUser({items::play});
    const auto toolbar = makeToolbar(800);
    toolbar->setLeftPaneItemActive(true);
    toolbar->setBottomPaneEnabled(false);
    toolbar->setPlayItemActive(true);
    EXPECT_TRUE(static_cast<QAbstractButton*>(toolbar->item(items::play))->isChecked());
    const auto panes = toolbar->item(items::panels)->findChildren<ToolbarButton*>();
    ASSERT_EQ(panes.size(), 3);
    EXPECT_EQ(panes[0]->picture(), u"left_pane_off"_s);
    EXPECT_EQ(panes[1]->picture(), u"center_pane_on"_s);
    EXPECT_FALSE(panes[1]->isEnabled());
    toolbar->setLeftPaneItemActive(false);
    EXPECT_EQ(panes[0]->picture(), u"left_pane_on"_s);
    EXPECT_EQ(panes[0]->pos(), QPoint(3, 3));
    EXPECT_EQ(panes[2]->pos(), QPoint(63, 3));
}

TEST_F(ToolbarTest, GroupFxIsServedByItsIdentifierAlone) {
    EXPECT_FALSE(items::allowed().contains(items::additive));
    EXPECT_FALSE(items::byDefault().contains(items::additive));
    const auto toolbar = makeToolbar(800);
    EXPECT_FALSE(toolbar->additiveButtonIsOn());
    Appearance::current().setReducesMotion(true);
    QWidget* item = toolbar->item(items::additive);
    item->show();
    EXPECT_EQ(item->width(), 30);
    QSignalSpy presses(toolbar.get(), &Toolbar::additiveButtonPressed);
    auto* toggle = item->findChild<IconButton*>();
    toggle->click();
    EXPECT_TRUE(toolbar->additiveButtonIsOn());
    EXPECT_EQ(item->width(), 150);
    toggle->click();
    EXPECT_EQ(item->width(), 30);
    EXPECT_EQ(presses.count(), 2);
    Appearance::current().setReducesMotion(false);
}

TEST_F(ToolbarTest, TheOrderOfTheUserIsKeptOverStarts) {
    const QTemporaryDir folder;
    UserDefaults::useSettingsFile(folder.filePath(u"settings.ini"_s));
    EXPECT_EQ(items::ofUser(), items::byDefault());
    const QStringList order = {items::play, items::space, items::space, items::zoomIn};
    items::setOfUser(order);
    UserDefaults::useSettingsFile(folder.filePath(u"settings.ini"_s));
    EXPECT_EQ(items::ofUser(), order);
    UserDefaults::standard().setValue(u"toolbarItems"_s, QStringList{u"gone"_s, items::hand});
    EXPECT_EQ(items::ofUser(), QStringList{items::hand});
    items::setOfUser(items::byDefault());
    EXPECT_FALSE(UserDefaults::standard().value(u"toolbarItems"_s).isValid());
    UserDefaults::useMemory();
}

TEST_F(ToolbarTest, TheDialogOffersWhatIsNotThereYet) {
    ToolbarDialog dialog({items::play, items::verticalSeparator}, nullptr);
    const auto lists = dialog.findChildren<QListWidget*>();
    QListWidget* available = lists[0];
    QListWidget* chosen = lists[1];
    if (available->count() == 2) { std::swap(available, chosen); }
    const auto press = [&](const QString& text) {
        for (auto* button : dialog.findChildren<QAbstractButton*>()) {
            if (button->text() == text) { button->click(); }
        }
    };
    EXPECT_TRUE(available->findItems(u"Play"_s, Qt::MatchExactly).isEmpty());
    EXPECT_FALSE(available->findItems(u"Divider"_s, Qt::MatchExactly).isEmpty());
    chosen->setCurrentRow(0);
    press(u"Move Down"_s);
    press(u"Move Down"_s);
    EXPECT_EQ(dialog.identifiers(), (QStringList{items::verticalSeparator, items::play}));
    press(u"Remove"_s);
    EXPECT_EQ(dialog.identifiers(), QStringList{items::verticalSeparator});
    available->setCurrentItem(available->findItems(u"Export"_s, Qt::MatchExactly).value(0));
    press(u"Add"_s);
    EXPECT_EQ(dialog.identifiers(), (QStringList{items::verticalSeparator, items::importExport}));
    press(u"Reset"_s);
    EXPECT_EQ(dialog.identifiers(), items::byDefault());
}

TEST_F(ToolbarTest, Placing) {
    struct Case {
        std::vector<ToolbarSlot> items;
        int width;
        std::vector<int> x;
        bool overflows;
    };
    const Case cases[] = {
        {{{30, false}, {30, false}}, 200, {12, 46}, false},
        {{{30, false}, {0, true}, {30, false}}, 200, {12, 46, 158}, false},
        {{{0, true}, {30, false}, {0, true}}, 162, {12, 66, 100}, false},
        {{{30, false}, {30, false}, {30, false}}, 122, {12, 46, 80}, false},
        {{{30, false}, {30, false}, {30, false}}, 121, {12}, true},
    };
    for (const Case& c : cases) {
        const ToolbarPlaces places = placeToolbarItems(c.items, c.width);
        EXPECT_EQ(places.x, c.x) << c.width;
        EXPECT_EQ(places.overflows, c.overflows) << c.width;
    }
}

TEST_F(ToolbarTest, AllFitsIntoTheSmallestWindow) {
    const auto toolbar = makeToolbar(800);
    for (const QString& identifier : items::byDefault()) {
        QWidget* widget = toolbar->item(identifier);
        EXPECT_TRUE(!widget || widget->isVisible()) << qPrintable(identifier);
    }
    toolbar->resize(400, 44);
    EXPECT_FALSE(toolbar->item(items::panels)->isVisible());
    EXPECT_TRUE(toolbar->item(items::importExport)->isVisible());
}

TEST_F(ToolbarTest, PreferencesTakeEffectAtOnce) {
    PreferencesWindow preferences;
    preferences.show();
    QSignalSpy changes(&preferences, &PreferencesWindow::preferencesDidChange);
    const auto boxes = preferences.findChildren<QCheckBox*>();
    const std::pair<QString, std::function<bool()>> choices[] = {
        {u"Show guidelines and snap to them"_s, &PCAppPreferences::showsGuidelines},
        {u"Show the skim bar under the pointer"_s, &PCAppPreferences::showsTimelineSkimbar},
        {u"Show the start window"_s, &PCAppPreferences::showsOnboardWindowAtLaunch},
        {u"Increase contrast"_s, [] { return Appearance::current().increasesContrast(); }},
        {u"Reduce motion"_s, [] { return Appearance::current().reducesMotion(); }},
        {u"when a change needs setup mode"_s, &PCAppPreferences::showsSetupFirstAlert},
        {u"whether artwork is 1x or 2x"_s, &PCAppPreferences::showsRetinaArtworkAlert},
        {u"before other animations lose values"_s,
         &PCAppPreferences::showsChangeOtherAnimationsStateAlert},
    };
    for (const auto& [text, value] : choices) {
        const auto found = std::find_if(boxes.begin(), boxes.end(),
                                        [&](QCheckBox* box) { return box->text() == text; });
        ASSERT_NE(found, boxes.end()) << qPrintable(text);
        EXPECT_EQ((*found)->isChecked(), value()) << qPrintable(text);
        const bool before = value();
        (*found)->click();
        EXPECT_NE(value(), before) << qPrintable(text);
        (*found)->click();
    }
    for (QRadioButton* theme : preferences.findChildren<QRadioButton*>()) {
        if (theme->text() == u"Dark"_s) { theme->click(); }
    }
    EXPECT_TRUE(Appearance::current().isDark());
    EXPECT_EQ(changes.count(), 17);
    preferences.hide();
    PCAppPreferences::setShowsSetupFirstAlert(false);
    preferences.show();
    EXPECT_FALSE(boxes[5]->isChecked()) << "an alert was silenced meanwhile";
    Appearance::current().setTheme(PCAppTheme::AsTheSystem);
}

}  // namespace
}  // namespace tweenery::test
