#include "ui/start/start_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include "model/preferences/app_preferences.h"
#include "support/files.h"
#include "support/printers.h"
#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// The start window with the program's own samples, which the build has not copied anywhere.
class StartScene {
 public:
    QTemporaryDir folder;
    std::unique_ptr<StartWindow> window;

    explicit StartScene(const QStringList& recents = {}) {
        window = std::make_unique<StartWindow>(recentProjectsAt(recents), sourcePath(u"samples"_s));
        window->show();
        QCoreApplication::processEvents();
    }
    QAbstractButton* button(const QString& name) {
        for (auto* button : window->findChildren<QAbstractButton*>()) {
            if (button->accessibleName() == name || button->text() == name) { return button; }
        }
        ADD_FAILURE() << qPrintable(name);
        return nullptr;
    }
    void click(QWidget& widget, QPoint point) {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                          widget.mapTo(window.get(), point));
        QCoreApplication::processEvents();
    }
    void press(const QString& name) {
        QAbstractButton* target = button(name);
        if (target) { click(*target, target->rect().center()); }
    }
    void key(Qt::Key key) {
        QTest::keyClick(window->windowHandle(), key);
        QCoreApplication::processEvents();
    }
    void doubleClick(int row) {
        RecentsList& list = window->recents();
        const QPoint point = row < 0 ? QPoint(50, list.viewport()->height() - 10)
                                     : list.visualItemRect(list.item(row)).center();
        QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {},
                           list.viewport()->mapTo(window.get(), point));
        QCoreApplication::processEvents();
    }
};

TEST(StartWindow, TellsWhatIsChosen) {
    StartScene scene({u"/projects/Card.tweenery"_s, u"/gone/Old Splash.tweenery"_s});
    QSignalSpy made(scene.window.get(), &StartWindow::newProjectWanted);
    QSignalSpy panel(scene.window.get(), &StartWindow::openPanelWanted);
    QSignalSpy chosen(scene.window.get(), &StartWindow::projectChosen);
    QSignalSpy sample(scene.window.get(), &StartWindow::sampleChosen);
    scene.press(u"New Project"_s);
    scene.press(u"Open…"_s);
    scene.press(u"Paper Boat Project"_s);
    EXPECT_EQ(made.size(), 1);
    EXPECT_EQ(panel.size(), 1);
    ASSERT_EQ(sample.size(), 1);
    EXPECT_EQ(sample[0][0].toString(), sourcePath(u"samples/Paper Boat.tweenery"_s));
    EXPECT_TRUE(scene.window->isVisible());

    scene.doubleClick(-1);
    EXPECT_EQ(chosen.size(), 0) << "the empty part of the list";
    scene.doubleClick(1);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][0].toString(), u"/gone/Old Splash.tweenery");
    scene.window->recents().setFocus();
    scene.key(Qt::Key_Return);
    EXPECT_EQ(chosen.size(), 2);
}

TEST(StartWindow, WhatIsMissingSaysSoAndGoesOffTheList) {
    StartScene scene({u"/gone/Old Splash.tweenery"_s});
    RecentProject project = recentProjectsAt({u"/gone/Old Splash.tweenery"_s}).front();
    look(project);
    EXPECT_TRUE(project.isMissing);
    RecentsList& list = scene.window->recents();
    list.update(project);
    EXPECT_EQ(list.item(0)->data(Qt::AccessibleDescriptionRole).toString(), u"/gone, missing");
    QSignalSpy removed(scene.window.get(), &StartWindow::recentRemoved);
    list.setFocus();
    scene.key(Qt::Key_Delete);
    EXPECT_EQ(list.count(), 0);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0][0].toString(), project.path);
}

TEST(StartWindow, ShowAtLaunchIsStoredAtOnce) {
    PCAppPreferences::setShowsOnnboardWindowAtLaunch(true);
    StartScene scene;
    QAbstractButton* box = scene.button(u"Show at launch"_s);
    EXPECT_TRUE(box->isChecked());
    scene.click(*box, {8, box->height() / 2});
    EXPECT_FALSE(PCAppPreferences::showsOnboardWindowAtLaunch());
    scene.click(*box, {8, box->height() / 2});
    EXPECT_TRUE(PCAppPreferences::showsOnboardWindowAtLaunch());
}

TEST(StartWindow, TheLogoDropsAndAPressPlaysItAgain) {
    StartScene scene;
    TitleView& title = scene.window->title();
    EXPECT_EQ(title.playing(), u"LogoDown");
    const QImage early = title.grab().toImage();
    QTest::qWait(700);
    EXPECT_NE(title.grab().toImage(), early);
    scene.press(u"Logo"_s);
    EXPECT_EQ(title.playing(), u"LogoPopUp");
    EXPECT_TRUE(QTest::qWaitFor([&] { return title.playing() == u"LogoDown"; }));
}

TEST(StartWindow, ContentsComeFromAListThatMayBeDamaged) {
    const QTemporaryDir folder;
    EXPECT_TRUE(samplesIn(folder.path()).empty());
    replaceContents(folder.filePath(u"samples.json"_s), "[{\"title\": ");
    EXPECT_TRUE(samplesIn(folder.path()).empty());
    replaceContents(folder.filePath(u"a.tweenery"_s), "");
    replaceContents(folder.filePath(u"samples.json"_s),
                    "[{\"title\": \"A\", \"project\": \"a.tweenery\", \"video\": \"gone.gif\"},"
                    " {\"title\": \"B\", \"project\": \"../b.tweenery\"}, 7]");
    const auto samples = samplesIn(folder.path());
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_EQ(samples[0].project, folder.filePath(u"a.tweenery"_s));
    EXPECT_TRUE(samples[0].video.isEmpty());
}

TEST(StartWindow, EscapeCloses) {
    StartScene scene;
    QSignalSpy closed(scene.window.get(), &StartWindow::closed);
    scene.key(Qt::Key_Escape);
    EXPECT_EQ(closed.size(), 1);
    EXPECT_FALSE(scene.window->isVisible());
}

}  // namespace
}  // namespace tweenery::test
