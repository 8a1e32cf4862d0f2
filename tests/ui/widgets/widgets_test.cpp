#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "base/user_defaults.h"
#include "ui/widgets/alert_dialog.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/desktop_settings.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/header_view.h"
#include "ui/widgets/notice_bar.h"
#include "ui/widgets/pane_list_view.h"
#include "ui/widgets/progress_panel.h"
#include "ui/widgets/text_field.h"
#include "ui/widgets/toggle_icon_button.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

void show(QWidget& widget) {
    widget.show();
    widget.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
}

QAbstractButton* buttonNamed(QWidget& widget, const QString& text) {
    for (QAbstractButton* button : widget.findChildren<QAbstractButton*>()) {
        if (button->text() == text || button->accessibleName() == text) { return button; }
    }
    ADD_FAILURE() << "no button " << qPrintable(text);
    return nullptr;
}

/// Real events, which go to the window and find their way from there.
void click(QWidget& widget, QPoint point) {
    QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {},
                      widget.mapTo(widget.window(), point));
}

void click(QWidget* widget) {
    if (widget) { click(*widget, widget->rect().center()); }
}

const Alert taken = {u"Image Name Taken"_s, u"Which?"_s, {u"Replace"_s, u"Rename"_s}, u"All"_s};
const Alert density = {u"No suffix"_s, u"1x or 2x?"_s, {u"Cancel"_s, u"1x"_s, u"2x"_s}, {}};
const Alert close = {u"Save?"_s, {}, {u"Save"_s, u"Discard"_s, u"Cancel"_s}, {}, 0};

TEST(AlertDialog, IsAnsweredByKeysAndClicks) {
    struct Case {
        const Alert& alert;
        Qt::Key key;
        QString clicked;
        int button;
    };
    const Case cases[] = {
        {taken, Qt::Key_Return, {}, 1},  {taken, Qt::Key_Escape, {}, 1},
        {taken, {}, u"Replace"_s, 0},    {density, Qt::Key_Return, {}, 2},
        {density, Qt::Key_Enter, {}, 2}, {density, Qt::Key_Escape, {}, 0},
        {density, {}, u"1x"_s, 1},       {close, Qt::Key_Return, {}, 0},
        {close, Qt::Key_Escape, {}, 2},  {close, {}, u"Discard"_s, 1},
    };
    for (const Case& c : cases) {
        AlertDialog dialog(c.alert, nullptr);
        show(dialog);
        if (c.clicked.isNull()) {
            QTest::keyClick(dialog.windowHandle(), c.key);
        } else {
            click(buttonNamed(dialog, c.clicked));
        }
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(dialog.answer().button, c.button) << qPrintable(c.alert.message) << c.key;
        EXPECT_FALSE(dialog.answer().suppressed);
    }
}

TEST(AlertDialog, ReturnAnswersWithTheDefaultWhereverTheKeyboardIs) {
    AlertDialog dialog(taken, nullptr);
    show(dialog);
    auto* box = dialog.findChild<QCheckBox*>();
    box->setFocus();
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Space);
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
    EXPECT_EQ(dialog.answer().button, 1);
    EXPECT_TRUE(dialog.answer().suppressed);
}

TEST(AlertDialog, PortRunsItModally) {
    QtAlertPort port;
    QTimer::singleShot(0, [] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_TRUE(dialog);
        EXPECT_EQ(dialog->windowTitle(), density.message);
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(port.runModal(density).button, 0);
}

TEST(HeaderView, TellsOfADragByItsSteps) {
    HeaderView header;
    header.setTitle(u"Animations"_s);
    header.resize(300, 30);
    show(header);
    QList<QPointF> deltas;
    QObject::connect(&header, &HeaderView::dragDidChangeBy, &header,
                     [&](QPointF delta) { deltas << delta; });
    QSignalSpy releases(&header, &HeaderView::mouseDidRelease);
    QWindow* window = header.windowHandle();
    QTest::mousePress(window, Qt::LeftButton, {}, {100, 10});
    for (const int y : {11, 12, 14}) {
        QTest::mouseMove(window, {100, y});
    }
    EXPECT_EQ(deltas, (QList<QPointF>{{0, 1}, {0, 1}, {0, 2}}));
    QTest::mouseRelease(window, Qt::LeftButton, {}, {100, 14});
    EXPECT_EQ(releases.count(), 1);
    QTest::mousePress(window, Qt::LeftButton, {}, {100, 10});
    header.hide();
    EXPECT_EQ(releases.count(), 2) << "a release that never comes";
}

TEST(HeaderView, HasAButtonOnlyWithAnAction) {
    HeaderView header;
    header.setTitle(u"Elements"_s);
    header.resize(300, 30);
    show(header);
    QSignalSpy clicks(&header, &HeaderView::actionClicked);
    click(header, {300 - 16, 15});
    EXPECT_EQ(clicks.count(), 0);
    header.setAction(u"Add Element"_s);
    click(header, {300 - 16, 15});
    EXPECT_EQ(clicks.count(), 1);

    QAccessibleInterface* strip = QAccessible::queryAccessibleInterface(&header);
    EXPECT_EQ(strip->role(), QAccessible::Pane);
    EXPECT_EQ(strip->text(QAccessible::Name), u"Elements"_s);
    ASSERT_EQ(strip->childCount(), 1);
    EXPECT_EQ(strip->child(0)->text(QAccessible::Name), u"Add Element"_s);
}

TEST(PaneListView, StacksPanesTwoApart) {
    QWidget first;
    QWidget second;
    first.resize(350, 90);
    second.resize(350, 80);
    std::vector<QWidget*> panes = {&first, &second};
    PaneListView list;
    list.resize(350, 100);
    list.setPanes([&panes] { return panes; });
    list.reloadData();
    show(list);
    EXPECT_EQ(first.geometry(), QRect(0, 0, 350, 90));
    EXPECT_EQ(second.geometry(), QRect(0, 92, 350, 80));
    EXPECT_EQ(list.widget()->height(), 92 + 82);
    EXPECT_EQ(list.viewport()->width(), 350) << "the scroll bar takes no room";
    panes.clear();
    list.reloadData();
    EXPECT_EQ(list.widget()->height(), 0);
    EXPECT_EQ(first.parentWidget(), nullptr);
}

TEST(ToggleIconButton, ReactsInItsCircleAndKeepsItsState) {
    ToggleIconButton button;
    show(button);
    button.resize(56, 56);
    QSignalSpy clicks(&button, &QAbstractButton::clicked);
    struct Case {
        QPoint point;
        int count;
    };
    for (const Case& c :
         {Case{{3, 3}, 0}, Case{{52, 52}, 0}, Case{{28, 28}, 1}, Case{{1, 28}, 1}}) {
        clicks.clear();
        click(button, c.point);
        EXPECT_EQ(clicks.count(), c.count) << c.point.x() << ' ' << c.point.y();
        EXPECT_FALSE(button.isOn());
    }
}

TEST(TextField, CommitsOnlyWhatChanged) {
    QWidget window;
    TextField field(&window);
    QPushButton other(u"other"_s, &window);
    other.move(0, 60);
    field.setText(u"kite"_s);
    show(window);
    QSignalSpy commits(&field, &TextField::committed);
    const auto visit = [&](const QString& typed, Qt::Key end) {
        field.setFocus(Qt::TabFocusReason);
        QTest::qWait(1);
        if (!typed.isEmpty()) { QTest::keyClicks(&field, typed); }
        if (end != Qt::Key_unknown) { QTest::keyClick(&field, end); }
        other.setFocus(Qt::TabFocusReason);
    };
    visit({}, Qt::Key_unknown);
    visit(u"x"_s, Qt::Key_Escape);
    EXPECT_EQ(commits.count(), 0);
    EXPECT_EQ(field.text(), u"kite"_s);
    visit(u"sun"_s, Qt::Key_Return);
    EXPECT_EQ(commits.count(), 1) << "once, not again when the focus goes";
    EXPECT_EQ(field.text(), u"sun"_s) << "what was there was selected";
    visit(u"moon"_s, Qt::Key_unknown);
    EXPECT_EQ(commits.count(), 2);
}

TEST(NoticeBar, GoesWithItsAnswer) {
    NoticeBar bar;
    bar.resize(600, 40);
    int reloads = 0;
    const auto showIt = [&] {
        bar.showNotice(NoticeKind::Warning, u"Changed on disk."_s,
                       {{u"Reload"_s, [&] { ++reloads; }}, {u"Keep Mine"_s, {}}});
        show(bar);
    };
    showIt();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&bar)->role(), QAccessible::Notification);
    EXPECT_LT(buttonNamed(bar, u"Reload"_s)->x(), buttonNamed(bar, u"Keep Mine"_s)->x());
    click(buttonNamed(bar, u"Reload"_s));
    EXPECT_EQ(reloads, 1);
    EXPECT_FALSE(bar.isVisible());
    QSignalSpy closes(&bar, &NoticeBar::closed);
    showIt();
    click(buttonNamed(bar, u"Close"_s));
    EXPECT_EQ(closes.count(), 1);
    EXPECT_EQ(reloads, 1);
    EXPECT_FALSE(bar.isVisible());
}

TEST(ProgressPanel, WaitsASecondAndStopsWhenAsked) {
    ProgressPanel panel;
    QSignalSpy stops(&panel, &ProgressPanel::stopped);
    panel.start(u"Short"_s);
    panel.finish();
    panel.start(u"Exporting"_s);
    QTest::qWait(500);
    EXPECT_FALSE(panel.isVisible());
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel.isVisible(); }, 3000));
    click(buttonNamed(panel, u"Stop"_s));
    EXPECT_EQ(stops.count(), 1);
    panel.finish();
    EXPECT_FALSE(panel.isVisible());
}

TEST(Appearance, TheUsersChoiceStandsOverTheDesktops) {
    UserDefaults::useMemory();
    Appearance& appearance = Appearance::current();
    appearance.reload();
    DesktopSettings desktop(nullptr);
    QSignalSpy changes(&appearance, &Appearance::changed);
    desktop.apply(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 1U);
    EXPECT_TRUE(appearance.isDark());
    appearance.setTheme(PCAppTheme::Light);
    EXPECT_FALSE(appearance.isDark());
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), frameColors(false, false).frame);
    appearance.setTheme(PCAppTheme::AsTheSystem);
    EXPECT_TRUE(appearance.isDark());
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), frameColors(true, false).frame);
    EXPECT_EQ(changes.count(), 3);
    desktop.apply(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 0U);
    EXPECT_FALSE(appearance.isDark()) << "no preference: the palette decides";
    desktop.setPaletteIsDark(true);
    EXPECT_TRUE(appearance.isDark());
    desktop.setPaletteIsDark(false);
    desktop.apply(u"org.gnome.desktop.interface"_s, u"enable-animations"_s, false);
    EXPECT_EQ(appearance.duration(std::chrono::milliseconds(250)).count(), 0);
    desktop.apply(u"org.gnome.desktop.interface"_s, u"enable-animations"_s, true);
    EXPECT_EQ(appearance.duration(std::chrono::milliseconds(250)).count(), 250);
}

TEST(Fonts, FallBackToAFamilyWithLightWeights) {
    const auto hasLight = [](const QString& family) { return family != u"Roboto"; };
    EXPECT_EQ(bestTypeface({u"Roboto"_s, u"Lato"_s, u"Inter"_s}, hasLight), u"Inter"_s);
    EXPECT_EQ(bestTypeface({u"Roboto"_s, u"Lato"_s}, hasLight), u"Lato"_s);
    EXPECT_EQ(bestTypeface({u"DejaVu Sans"_s}, hasLight), QString());
    const QFont font = frameFont();
    EXPECT_DOUBLE_EQ(tabularWidth(font, u"111"_s), tabularWidth(font, u"888"_s));
}

}  // namespace
}  // namespace tweenery::test
