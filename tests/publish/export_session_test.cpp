#include "publish/export_session.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QFile>
#include <csignal>

#include "publish/export_scene.h"
#include "support/files.h"
#include "support/printers.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

const QStringList kObjectiveC{u"CardView.h"_s, u"CardView.m"_s};
const QStringList kImages{u"images/A.png"_s, u"images/B.png"_s};

void setChoices(PCProject& project, bool usesSwift, bool includesImages, bool cleans) {
    PCProjectPreferences& preferences = project.preferences();
    preferences.setGeneratedCodeUsesSwift(usesSwift);
    preferences.setGeneratedCodeIncludesImages(includesImages);
    preferences.setGeneratedCodeCleansImageDirectory(cleans);
}

TEST(ExportSession, WritesWhatIsForetold) {
    struct Case {
        bool usesSwift;
        bool includesImages;
        QStringList written;
    };
    const std::vector<Case> cases{
        {false, true, kObjectiveC + kImages},
        {false, false, kObjectiveC},
        {true, true, QStringList{u"CardView.swift"_s} + kImages},
    };
    for (const Case& c : cases) {
        ExportScene scene;
        setChoices(*scene.project, c.usesSwift, c.includesImages, false);
        const ExportForecast forecast = scene.open().forecast();
        scene.run();
        EXPECT_EQ(scene.written(), c.written);
        EXPECT_EQ(forecast.sources.size() + static_cast<qsizetype>(forecast.imagesCount),
                  c.written.size());
        ASSERT_EQ(scene.outcomes.size(), 1U);
        EXPECT_EQ(scene.outcomes.front().files.paths.size(), c.written.size());
        EXPECT_EQ(scene.project->projectName(), u"Card");
    }
}

TEST(ExportSession, NeedsAnElement) {
    ExportScene scene("");
    scene.open();
    EXPECT_FALSE(scene.session->canExport());
    scene.session->beginExport();
    EXPECT_TRUE(scene.panel.shownFolders.empty());
}

TEST(ExportSession, ACancelledPanelLeavesTheSheet) {
    ExportScene scene;
    scene.panel.folder.clear();
    scene.exportNow();
    ASSERT_EQ(scene.panel.shownFolders.size(), 1U);
    EXPECT_EQ(scene.panel.shownFolders.front().prompt, u"Export");
    EXPECT_TRUE(scene.outcomes.empty());
    EXPECT_TRUE(scene.session->canExport());
}

TEST(ExportSession, BeginsWhereItWasLastExported) {
    ExportScene scene;
    scene.exportNow();
    EXPECT_EQ(scene.open().forecast().lastDirectory, scene.target);
    scene.run();
    EXPECT_EQ(scene.panel.shownFolders.back().folder, scene.target);
}

TEST(ExportSession, LeavesFilesOfOtherNamesAndNamesThem) {
    ExportScene scene;
    setChoices(*scene.project, false, true, false);
    scene.exportNow();
    replaceContents(scene.target + u"/mine.txt"_s, "mine");
    scene.document.setDisplayName(u"Deck"_s);
    named(*scene.project, u"B"_s)->setImageName(u"A.png"_s);
    scene.exportNow();
    EXPECT_EQ(scene.outcomes.back().leftBehind, kObjectiveC + QStringList{u"images/B.png"_s});
    EXPECT_EQ(scene.written(),
              QStringList({u"CardView.h"_s, u"CardView.m"_s, u"DeckView.h"_s, u"DeckView.m"_s,
                           u"mine.txt"_s, u"images/A.png"_s, u"images/B.png"_s}));
}

TEST(ExportSession, AsksBeforeOldImagesGoAndFollowsNoLink) {
    ExportScene scene;
    setChoices(*scene.project, false, true, true);
    scene.exportNow();
    EXPECT_TRUE(scene.alerts.shown.empty()) << "nothing to delete yet";
    const QString outside = scene.folder.filePath(u"outside"_s);
    QDir().mkpath(outside);
    replaceContents(outside + u"/keep.png"_s, "keep");
    QFile::link(outside, scene.target + u"/images/link"_s);
    replaceContents(scene.target + u"/images/old.png"_s, "old");

    scene.alerts.answers = {0, 1};
    scene.exportNow();
    EXPECT_EQ(scene.outcomes.size(), 1U) << "Cancel";
    EXPECT_TRUE(QFile::exists(scene.target + u"/images/old.png"_s));
    const Alert& question = scene.alerts.shown.back();
    EXPECT_TRUE(question.message.contains(u"4 files")) << qPrintable(question.message);
    EXPECT_TRUE(question.informativeText.contains(scene.target + u"/images"_s));
    EXPECT_EQ(question.defaultButton(), 0);
    scene.exportNow();
    EXPECT_EQ(scene.outcomes.back().files.removedFilesCount, 4U);
    EXPECT_EQ(scene.written(), kObjectiveC + kImages);
    EXPECT_EQ(contentsOf(outside + u"/keep.png"_s), "keep");
}

TEST(ExportSession, WhenTheImagesFolderIsALinkOnlyTheLinkGoes) {
    ExportScene scene;
    setChoices(*scene.project, false, true, true);
    const QString outside = scene.folder.filePath(u"outside"_s);
    QDir().mkpath(outside);
    QDir().mkpath(scene.target);
    replaceContents(outside + u"/keep.png"_s, "keep");
    QFile::link(outside, scene.target + u"/images"_s);
    scene.alerts.answers = {1};
    scene.exportNow();
    EXPECT_EQ(QDir(outside).entryList(QDir::Files), QStringList({u"keep.png"_s}));
    EXPECT_FALSE(QFileInfo(scene.target + u"/images"_s).isSymLink());
}

TEST(ExportSession, OneAlertTellsAllThatCouldNotBeWritten) {
    struct Case {
        const char* name;
        std::function<void(const QString& target)> spoil;
        qsizetype lines;
        bool ends;
    };
    const std::vector<Case> cases{
        {"a folder stands in the place of each of two files",
         [](const QString& target) {
             QDir().mkpath(target + u"/CardView.h/x"_s);
             QDir().mkpath(target + u"/images/A.png/x"_s);
         },
         2, true},
        {"the images folder is a link without the clean option",
         [](const QString& target) {
             QDir().mkpath(target);
             QFile::link(target, target + u"/images"_s);
         },
         1, true},
        {"the folder cannot be made",
         [](const QString& target) { replaceContents(target, "a file"); }, 1, false},
    };
    for (const Case& c : cases) {
        ExportScene scene;
        setChoices(*scene.project, false, true, false);
        c.spoil(scene.target);
        scene.alerts.answers = {0};
        scene.exportNow();
        ASSERT_EQ(scene.alerts.shown.size(), 1U) << c.name;
        const QString text = scene.alerts.shown.front().informativeText;
        EXPECT_EQ(text.count(u'\n') + 1, c.lines) << c.name << ": " << qPrintable(text);
        EXPECT_EQ(scene.outcomes.size(), c.ends ? 1U : 0U) << c.name;
    }
}

TEST(ExportSession, AFullDiskLeavesEarlierFilesWhole) {
    ExportScene scene;
    setChoices(*scene.project, false, true, false);
    scene.exportNow();
    const QByteArray before = contentsOf(scene.target + u"/CardView.m"_s);
    scene.open();
    rlimit unlimited{};
    ::getrlimit(RLIMIT_FSIZE, &unlimited);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limited{200, unlimited.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limited);
    scene.alerts.answers = {0};
    scene.run();
    ::setrlimit(RLIMIT_FSIZE, &unlimited);
    ASSERT_EQ(scene.alerts.shown.size(), 1U);
    EXPECT_EQ(contentsOf(scene.target + u"/CardView.m"_s), before);
    EXPECT_EQ(scene.written(), kObjectiveC + kImages) << "and no part of a file";
}

TEST(ExportSession, AStopLeavesWholeFilesAndTheSheet) {
    ExportScene scene("A B C D E F G H");
    setChoices(*scene.project, false, true, false);
    scene.exportNow();
    QFile::remove(scene.target + u"/images/H.png"_s);
    scene.open();
    scene.session->beginExport();
    scene.session->stop();
    EXPECT_TRUE(scene.wait([&] { return !scene.session->isRunning(); }));
    EXPECT_EQ(scene.outcomes.size(), 1U);
    EXPECT_TRUE(scene.session->message().startsWith(u"Stopped. "_s));
    EXPECT_TRUE(scene.session->canExport());
    EXPECT_FALSE(scene.written().contains(u"images/H.png"_s));
    EXPECT_EQ(scene.written().filter(u".png"_s).size(), 7) << "those of before are whole";
}

TEST(ExportSession, AnObstacleIsToldAndNothingIsWritten) {
    ExportScene scene;
    scene.project->preferences().setGeneratedCodeUsesSwift(false);
    const auto animation = selectNewAnimation(*scene.project, u"run_sliced_2000000000"_s);
    const PCElement::Ptr a = named(*scene.project, u"A"_s);
    animation->applyTimeline(timelineWithKeys(a, PCPropertyTypeOpacity, "0:0 1000:-1"), *a);
    scene.project->animationsManager().setSelectedAnimation(nullptr);
    scene.open();
    EXPECT_FALSE(scene.session->forecast().obstacle.isEmpty());
    scene.alerts.answers = {0};
    scene.run();
    EXPECT_EQ(scene.alerts.shown.size(), 1U);
    EXPECT_FALSE(QFile::exists(scene.target));
    EXPECT_TRUE(scene.session->canExport());
}

TEST(ExportSession, OfChoicesPressedMeanwhileTheLastOnesAreForetold) {
    ExportScene scene;
    setChoices(*scene.project, false, true, false);
    scene.open();
    for (const char* label : {"Swift", "Objective-C", "Swift", "Include Images"}) {
        scene.session->press(scene.toggle(label));
    }
    EXPECT_TRUE(scene.wait([&] { return scene.session->forecast().imagesCount == 0; }));
    EXPECT_EQ(scene.session->forecast().sources, QStringList({u"CardView.swift"_s}));
}

}  // namespace
}  // namespace tweenery::test
