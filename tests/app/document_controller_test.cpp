#include "app/document_controller.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include "editor/controller_scene.h"
#include "support/test_paths.h"

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

}  // namespace
}  // namespace tweenery::test
