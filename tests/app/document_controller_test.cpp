#include "app/document_controller.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include "editor/controller_scene.h"
#include "model/preferences/app_preferences.h"
#include "support/test_paths.h"
#include "ui/start/start_window.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

class ScriptedPanel : public ProjectPanelPort {
 public:
    QString place;  // null: cancelled

    QStringList chooseProjects(QWidget*) override { return {}; }
    QString choosePlace(QWidget*, const QString&, const QString&, const QString&) override {
        return place;
    }
};

void copyFolder(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QFileInfo& entry :
         QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        const QString target = to + u'/' + entry.fileName();
        if (entry.isDir()) {
            copyFolder(entry.filePath(), target);
        } else {
            QFile::copy(entry.filePath(), target);
            QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
        }
    }
}

class Documents : public testing::Test {
 protected:
    QTemporaryDir folder;
    ScriptedAlerts alerts;
    ScriptedOpenPanel panel;
    MemoryClipboard clipboard;
    RecordingWorkspace workspace;
    SteadyMediaClock clock;
    RecordingLog log;
    ScriptedPanel places;
    DocumentServices services{alerts,
                              log,
                              clock,
                              [] { return QDateTime::currentDateTime(); },
                              RecoveryStore(folder.filePath(u"recovery"_s)),
                              folder.filePath(u"locks"_s)};
    PCDocumentController documents{
        services, {alerts, panel, clipboard, workspace, clock, log}, places};

    QString sample() {
        const QString path = folder.filePath(u"Bounce.tweenery"_s);
        if (!QDir(path).exists()) { copyFolder(sourcePath(u"samples/Bounce.tweenery"_s), path); }
        return path;
    }
    static void edit(DocumentWindow& window) {
        const PCProject::Ptr& project = window.controller().project();
        project->canvas()->setSize({300, 200});
        project->undoManager().endEvent();
    }
    bool allClose() {
        return QTest::qWaitFor([this] { return documents.windows().empty(); });
    }
};

TEST_F(Documents, WhatIsNoProjectIsNamedAndTheOthersOpen) {
    alerts.answers = {0};
    documents.open({folder.filePath(u"gone.tweenery"_s), sample()});
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].message, u"“gone.tweenery” Cannot Be Opened");
    ASSERT_EQ(documents.windows().size(), 1U);
    EXPECT_FALSE(documents.windows()[0]->document().isEdited()) << "opening marks nothing";
    documents.open({sample() + u"/"_s});
    EXPECT_EQ(documents.windows().size(), 1U) << "it came to the front";
}

TEST_F(Documents, QuitAsksOnceForAllThatWouldBeLost) {
    documents.open({sample()});
    edit(*documents.windows()[0]);
    edit(documents.newDocument());
    edit(documents.newDocument());
    EXPECT_EQ(documents.windows()[2]->windowTitle(), u"Untitled 2[*]");

    alerts.answers = {0};
    documents.quit();
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].message, u"Save the Changes to 2 Projects?");
    EXPECT_EQ(documents.windows().size(), 3U);

    alerts.answers = {1};
    documents.quit();
    EXPECT_TRUE(allClose());
    EXPECT_EQ(PCProject::projectWithFileWrapper(readPackage(sample()), log)->canvas()->size(),
              QSizeF(300, 200))
        << "a stored project closes saved, unasked";
}

TEST_F(Documents, SavingAnUntitledOneAsksWhere) {
    DocumentWindow& window = documents.newDocument();
    edit(window);
    window.controller().commands().perform(u"saveDocument"_s);
    EXPECT_TRUE(window.document().isUntitled());
    places.place = folder.filePath(u"Mine.tweenery"_s);
    window.controller().commands().perform(u"saveDocument"_s);
    EXPECT_TRUE(QTest::qWaitFor([&window] { return !window.document().isUntitled(); }));
    EXPECT_EQ(window.windowTitle(), u"Mine[*]");
    EXPECT_TRUE(alerts.shown.empty());
    documents.quit();
    EXPECT_TRUE(allClose());
}

TEST_F(Documents, TheStartWindowStaysUntilSomethingOpens) {
    documents.showStartWindow();
    const QPointer<StartWindow> start = documents.startWindow();
    ASSERT_TRUE(start && start->isVisible());
    alerts.answers = {0};
    Q_EMIT start->projectChosen(folder.filePath(u"Old Splash.tweenery"_s));
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].message, u"Problem Opening Document");
    EXPECT_TRUE(
        alerts.shown[0].informativeText.startsWith(u"There was a problem opening Old Splash\n"_s));
    EXPECT_TRUE(start && start->isVisible());

    Q_EMIT start->sampleChosen(sample());
    ASSERT_EQ(documents.windows().size(), 1U);
    EXPECT_TRUE(documents.windows()[0]->document().isUntitled()) << "a copy";
    EXPECT_FALSE(documents.startWindow());
    documents.showStartWindow();
    Q_EMIT documents.startWindow()->newProjectWanted();
    EXPECT_EQ(documents.windows().size(), 2U);
    EXPECT_FALSE(documents.startWindow());
}

TEST_F(Documents, AStartWithoutAProjectGreets) {
    for (const bool wantsStartWindow : {true, false}) {
        PCAppPreferences::setShowsOnnboardWindowAtLaunch(wantsStartWindow);
        PCDocumentController fresh(services, {alerts, panel, clipboard, workspace, clock, log},
                                   places);
        fresh.greet();
        EXPECT_TRUE(!fresh.startWindow() && fresh.windows().empty()) << "not at once";
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return fresh.startWindow() || !fresh.windows().empty(); }));
        EXPECT_EQ(fresh.startWindow() != nullptr, wantsStartWindow);
    }
    PCAppPreferences::setShowsOnnboardWindowAtLaunch(true);
    PCDocumentController busy(services, {alerts, panel, clipboard, workspace, clock, log}, places);
    busy.greet();
    busy.open({sample()});
    QTest::qWait(250);
    EXPECT_FALSE(busy.startWindow()) << "a window that is there keeps it away";
    busy.raise();
    EXPECT_FALSE(busy.startWindow());
}

}  // namespace
}  // namespace tweenery::test
