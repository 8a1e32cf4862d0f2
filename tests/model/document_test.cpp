#include "model/document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "base/errors.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Document : public testing::Test {
 protected:
    void SetUp() override { document.setBackupDirectory(backups); }

    QTemporaryDir directory;
    const QString path = directory.filePath(u"De.mo.tweenery"_s);
    const QString backups = directory.filePath(u"Back/ups"_s);
    ScriptedAlerts alerts;
    RecordingLog log;
    PCDocument document{alerts, log};

    /// A package of one element; without a version entry for version 0.
    void makePackage(int32_t version) {
        const auto project = PCProject::init();
        buildTree(*project, "ball");
        const auto root = project->fileWrapper();
        PCProjectVersion record;
        record.setModelVersion(version);
        root->pc_deleteSubFileWrapperNamed(u"version"_s);
        if (version != 0) {
            root->pc_replaceSubFileWrapperNamed(u"version"_s,
                                                KeyedArchiver::archivedDataWithRootObject(record));
        }
        root->pc_replaceSubFileWrapperNamed(u"unknown"_s, "carried along");
        QDir(path).removeRecursively();
        writePackageCopy(*root, path);
    }
    QStringList backupNames() const {
        return QDir(backups).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }
    int32_t storedVersion() const {
        return PCProject::modelVersionOfProjectFileWrapper(*readPackage(path));
    }
};

TEST_F(Document, OpensTheCurrentVersionAsItIs) {
    makePackage(14);
    const auto before = readPackage(path);
    ASSERT_TRUE(document.readFromPath(path));
    EXPECT_TRUE(entriesChangedOnDisk(*before, path).isEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_TRUE(backupNames().isEmpty());
    EXPECT_EQ(document.displayName(), u"De.mo"_s);
    EXPECT_EQ(document.project()->projectName(), u"De.mo"_s);
    EXPECT_EQ(treeText(*document.project()->canvas()), "ball");
    EXPECT_TRUE(document.project()->isSetupMode());
}

TEST_F(Document, RefusesANewerVersion) {
    makePackage(15);
    alerts.answers = {0};
    EXPECT_FALSE(document.readFromPath(path));
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].message, u"Tweenery Cannot Open This Project"_s);
    EXPECT_EQ(alerts.shown[0].informativeText,
              u"De.mo.tweenery was created by a newer version of Tweenery. Please upgrade Tweenery "
              "to use the project."_s);
    EXPECT_EQ(alerts.shown[0].buttons, QStringList{u"Ok"_s});
    EXPECT_TRUE(document.path().isEmpty() && backupNames().isEmpty());
}

TEST_F(Document, UpdatesAnOlderVersionWhenAllowed) {
    for (const int32_t version : {13, 0}) {
        makePackage(version);
        const auto before = readPackage(path);
        alerts = {};
        log.lines.clear();
        alerts.answers = {1, 0};
        EXPECT_FALSE(document.readFromPath(path));
        EXPECT_TRUE(entriesChangedOnDisk(*before, path).isEmpty());
        EXPECT_TRUE(backupNames().isEmpty());
        EXPECT_THAT(log.lines, IsEmpty());

        ASSERT_TRUE(document.readFromPath(path));
        ASSERT_EQ(alerts.shown.size(), 2U);
        EXPECT_EQ(alerts.shown[1].message, u"Project Needs to Be Updated"_s);
        EXPECT_EQ(alerts.shown[1].informativeText,
                  u"De.mo.tweenery is an older version and needs to be updated. Do you want to do "
                  "that now?"_s);
        EXPECT_EQ(alerts.shown[1].buttons, QStringList({u"Yes"_s, u"No"_s}));
        EXPECT_THAT(log.lines, ElementsAre("Updating Model of De.mo.tweenery (From v" +
                                           std::to_string(version) + " to v14)"));
        EXPECT_EQ(storedVersion(), 14);
        EXPECT_FALSE(document.isEdited());
        ASSERT_EQ(backupNames().size(), 1);
        EXPECT_TRUE(QRegularExpression(
                        u"^\\d{4}\\.\\d\\d\\.\\d\\d_\\d\\d\\.\\d\\d\\.\\d\\d_De\\.mo\\.tweenery$"_s)
                        .match(backupNames()[0])
                        .hasMatch())
            << backupNames()[0].toStdString();
        const auto backup = readPackage(backups + u'/' + backupNames()[0]);
        EXPECT_EQ(PCProject::modelVersionOfProjectFileWrapper(*backup), version);
        EXPECT_EQ(backup->child(u"unknown"_s)->contents(), QByteArray("carried along"));
        PCProject::clearProjectBackups(backups);
        EXPECT_FALSE(QDir(backups).exists());
    }
}

TEST_F(Document, UpdatesWithoutABackupThatFails) {
    makePackage(13);
    QFile blocker(directory.filePath(u"Back"_s));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    alerts.answers = {0};
    EXPECT_TRUE(document.readFromPath(path));
    EXPECT_EQ(storedVersion(), 14);
}

TEST_F(Document, SavesAndReverts) {
    makePackage(14);
    ASSERT_TRUE(document.readFromPath(path));
    const auto ball = named(*document.project(), u"ball"_s);
    EXPECT_FALSE(document.isEdited());
    ball->setOpacity(0.5);
    EXPECT_TRUE(document.isEdited());
    document.project()->undoManager().undo();
    EXPECT_FALSE(document.isEdited());
    ball->setOpacity(0.25);
    document.project()->setPreviewImage(QImage(300, 600, QImage::Format_RGB32));
    document.save();
    EXPECT_FALSE(document.isEdited());
    const auto saved = readPackage(path);
    EXPECT_EQ(saved->child(u"unknown"_s)->contents(), QByteArray("carried along"));
    const auto sizeOf = [&saved](const QString& name) {
        return QImage::fromData(saved->child(u"QuickLook"_s)->child(name)->contents()).size();
    };
    EXPECT_EQ(sizeOf(u"Preview.jpg"_s), QSize(300, 600));
    EXPECT_EQ(sizeOf(u"Preview_Thumbnail.jpg"_s), QSize(50, 100));
    EXPECT_EQ(sizeOf(u"Preview_Thumbnail@2x.jpg"_s), QSize(100, 200));

    ball->setOpacity(1);
    const auto edited = document.project();
    EXPECT_TRUE(document.revert());
    EXPECT_NE(document.project(), edited);
    EXPECT_EQ(document.project()->projectName(), u"De.mo"_s);
    EXPECT_EQ(named(*document.project(), u"ball"_s)->opacity(), 0.25);
    EXPECT_FALSE(document.isEdited() || document.project()->undoManager().canUndo());
    document.save();
    EXPECT_TRUE(entriesChangedOnDisk(*document.project()->packageRoot(), path).isEmpty());

    // A file that somebody else wrote meanwhile is not overwritten unasked.
    named(*document.project(), u"ball"_s)->setOpacity(0.75);
    writeFileAtomically(path + u"/unknown"_s, "changed");
    EXPECT_THROW(document.save(), InputError);
    EXPECT_TRUE(document.isEdited());
    document.save(OnDiskChange::Overwrite);
    EXPECT_TRUE(document.revert());
    EXPECT_EQ(named(*document.project(), u"ball"_s)->opacity(), 0.75);
}

// An autosave while the pointer is down takes what is on the screen, and what follows is no less
// unsaved for it.
TEST_F(Document, SavesInTheMiddleOfAGesture) {
    makePackage(14);
    ASSERT_TRUE(document.readFromPath(path));
    const auto ball = named(*document.project(), u"ball"_s);
    const auto storedOpacity = [this] {
        PCDocument other{alerts, log};
        other.readFromPath(path);
        return named(*other.project(), u"ball"_s)->opacity();
    };
    for (const bool isCancelled : {false, true}) {
        UndoGesture gesture(document.project()->undoManager());
        ball->setOpacity(0.5);
        document.save();
        EXPECT_FALSE(document.isEdited());
        EXPECT_EQ(storedOpacity(), 0.5);
        if (isCancelled) {
            gesture.cancel();
        } else {
            ball->setOpacity(0.25);
        }
        EXPECT_TRUE(document.isEdited());
        document.save();
        EXPECT_EQ(storedOpacity(), 0.25);
        EXPECT_FALSE(document.isEdited());
    }
    EXPECT_TRUE(document.project()->undoManager().undo());
    EXPECT_EQ(ball->opacity(), 1);
    EXPECT_TRUE(document.isEdited());
}

// Whatever goes wrong, the document is as it was.
TEST_F(Document, FailsWithoutAChange) {
    makePackage(14);
    ASSERT_TRUE(document.readFromPath(path));
    const auto project = document.project();
    named(*project, u"ball"_s)->setOpacity(0.5);
    const auto expectUnchanged = [&] {
        EXPECT_EQ(document.project(), project);
        EXPECT_EQ(document.path(), path);
        EXPECT_EQ(document.displayName(), u"De.mo"_s);
        EXPECT_TRUE(document.isEdited());
    };
    EXPECT_THROW(document.readFromPath(directory.filePath(u"gone.tweenery"_s)), InputError);
    expectUnchanged();

    QDir(path).removeRecursively();
    alerts.answers = {0};
    EXPECT_FALSE(document.revert());
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].message, u"The Project Could Not Be Reverted"_s);
    EXPECT_TRUE(alerts.shown[0].informativeText.contains(u"De.mo.tweenery"_s));
    expectUnchanged();
    document.save();
    EXPECT_FALSE(document.isEdited());

    // Somebody else writes into the package while the user is asked about the update.
    struct Meddler : AlertPort {
        QString file;
        AlertAnswer runModal(const Alert&) override {
            writeFileAtomically(file, "changed");
            return {};
        }
    } meddler;
    QDir(path).removeRecursively();
    makePackage(13);
    meddler.file = path + u"/unknown"_s;
    PCDocument older{meddler, log};
    older.setBackupDirectory(backups);
    const auto untitled = older.project();
    EXPECT_THROW(older.readFromPath(path), InputError);
    EXPECT_EQ(older.project(), untitled);
    EXPECT_TRUE(older.path().isEmpty());
    EXPECT_EQ(storedVersion(), 13);
}

TEST_F(Document, IsShownByItsNameWithoutExtension) {
    for (const auto& [name, shown] : {std::pair(u"Demo.tweenery"_s, u"Demo"_s),
                                      {u"a/De.mo.tweenery/"_s, u"De.mo"_s},
                                      {u"/a/Demo.tweenery//"_s, u"Demo"_s},
                                      {u".tweenery"_s, u".tweenery"_s},
                                      {u"Demo"_s, u"Demo"_s},
                                      {u"Demo."_s, u"Demo."_s},
                                      {u"a.b/Demo"_s, u"Demo"_s}}) {
        document.setDisplayName(name);
        EXPECT_EQ(document.displayName(), shown) << name.toStdString();
    }
}

TEST_F(Document, StartsUntitled) {
    EXPECT_FALSE(document.revert());
    document.setDisplayName(u"Untitled.tweenery"_s);
    EXPECT_EQ(document.project()->projectName(), u"Untitled"_s);
    EXPECT_THROW(document.save(), AssertionFailure);
    document.saveAs(path);
    EXPECT_EQ(document.project()->projectName(), u"De.mo"_s);
    EXPECT_EQ(storedVersion(), 14);
    EXPECT_TRUE(readPackage(path)->child(u"animations"_s));
}

}  // namespace
}  // namespace tweenery::test
