#include "editor/documents/recovery_store.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "base/errors.h"
#include "editor/documents/document_fixture.h"
#include "editor/documents/project_path.h"
#include "storage/system_names.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::IsEmpty;

class RecoveryStoreTest : public DocumentFixture {
 protected:
    const RecoveryStore& store = services.recovery;

    static FileWrapper::Snapshot packageWith(double opacity) {
        const auto project = PCProject::init();
        addElement(project->canvas(), u"ball"_s)->setOpacity(opacity);
        project->setPreviewImage(QImage(60, 40, QImage::Format_RGB32));
        return project->fileWrapper()->snapshot();
    }
    /// As a process that has died leaves it.
    void leave(double opacity, const QString& project, const QString& name) const {
        RecoveryFolder(store).keepCopyOfWork(*packageWith(opacity),
                                             {RecoveryNote::Reason::Unsaved, project, name});
    }
    static void makeOlder(const QString& path, int days) {
        const timespec time{QDateTime::currentDateTime().addDays(-days).toSecsSinceEpoch(), 0};
        const timespec times[] = {time, time};
        ASSERT_EQ(::utimensat(AT_FDCWD, qPrintable(path), times, 0), 0);
    }
};

TEST_F(RecoveryStoreTest, ListsWhatDeadProcessesLeftTheNewestFirst) {
    const QString strange = textOfSystemName("/no/where\xff/Ä %25.tweenery");
    leave(0.5, {}, u"Untitled"_s);
    leave(0.25, strange, u"Ä"_s);
    makeOlder(store.leftBehind()[0].work, 0);
    for (const RecoveredWork& work : store.leftBehind()) {
        if (work.note.displayName == u"Untitled"_s) { makeOlder(work.work, 31); }
    }
    RecoveryFolder living(store);
    living.keepCopyOfWork(*packageWith(0.125), {RecoveryNote::Reason::Unsaved, {}, u"Living"_s});

    const auto left = store.leftBehind();
    ASSERT_EQ(left.size(), 2U);
    EXPECT_EQ(left[0].note.projectPath, strange);
    EXPECT_EQ(left[0].note.displayName, u"Ä"_s);
    EXPECT_EQ(storedOpacity(left[0].work), 0.25);
    EXPECT_EQ(QImage::fromData(left[0].preview()).width(), 200);
    EXPECT_FALSE(left[0].isOld(QDateTime::currentDateTime()));
    EXPECT_TRUE(left[1].isOld(QDateTime::currentDateTime())) << "and is there all the same";
    EXPECT_TRUE(store.leftBehindOf(strange));
    EXPECT_FALSE(store.leftBehindOf(path));

    EXPECT_TRUE(store.dismiss(left[1]));
    EXPECT_FALSE(living.takeOver(left[1]));
    EXPECT_TRUE(living.takeOver(left[0]));
    EXPECT_FALSE(RecoveryFolder(store).takeOver(left[0])) << "it is taken";
}

TEST_F(RecoveryStoreTest, KeepsWhatRevertThrewAwayForAMonth) {
    for (const auto& [days, count] : {std::pair(29, 1U), std::pair(31, 0U)}) {
        store.keepReverted(*packageWith(0.5), {RecoveryNote::Reason::Unsaved, path, u"Demo"_s});
        makeOlder(store.leftBehind()[0].work, days);
        EXPECT_EQ(store.leftBehind().size(), count);
        EXPECT_FALSE(store.leftBehindOf(path)) << "it is not what the project lost";
        for (const RecoveredWork& work : store.leftBehind()) {
            store.dismiss(work);
        }
    }
    EXPECT_THAT(recoveryFolders(), IsEmpty());
}

TEST_F(RecoveryStoreTest, GivesBackWorkWithADamagedNoteAndForgetsWhatIsEmpty) {
    for (const QByteArray& note : {QByteArray(), QByteArray("{\"path\": 7"), QByteArray("[]")}) {
        leave(0.5, path, u"Demo"_s);
        QFile file(store.leftBehind()[0].folder + u"/note.json"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(note);
        file.close();
        const auto left = store.leftBehind();
        ASSERT_EQ(left.size(), 1U);
        EXPECT_EQ(left[0].note.displayName, u"Recovered Project"_s);
        EXPECT_TRUE(store.dismiss(left[0]));
    }
    const QString empty = store.folder() + u"/empty"_s;
    QDir().mkpath(empty);
    EXPECT_THAT(store.leftBehind(), IsEmpty());
    EXPECT_EQ(recoveryFolders().size(), 1) << "somebody may be about to fill it";
    makeOlder(empty, 2);
    EXPECT_THAT(store.leftBehind(), IsEmpty());
    EXPECT_THAT(recoveryFolders(), IsEmpty());
}

TEST_F(RecoveryStoreTest, TellsOfAProjectOnlyWhenItHasSavedItselfSince) {
    const auto root = readPackage(path);
    const RecoveryNote note{RecoveryNote::Reason::Unsaved, path, u"Demo"_s};
    RecoveryFolder(store).keepSaved(*root->snapshot(), note);
    EXPECT_THAT(store.leftBehind(), IsEmpty());
    root->pc_replaceSubFileWrapperNamed(u"unknown"_s, "changed");
    savePackage(*root, path);
    auto left = store.leftBehind();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].work, path);
    QDir(path).removeRecursively();
    left = store.leftBehind();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].work, left[0].saved);
}

TEST_F(RecoveryStoreTest, FailsWithAReasonWhereNothingCanBeKept) {
    QFile blocker(directory.filePath(u"state"_s));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    EXPECT_THROW(leave(0.5, path, u"Demo"_s), InputError);
    EXPECT_THAT(store.leftBehind(), IsEmpty());
    const auto document = opened();
    editAndRest(*document, 0.5);
    EXPECT_EQ(storedOpacity(path), 0.5) << "neither a lock nor a copy is needed to save";
}

TEST_F(RecoveryStoreTest, PathsInsideAPackageMeanThePackage) {
    const QString folder = directory.filePath(u"work"_s);
    const struct {
        QString given, meant;
    } cases[] = {
        {path, path},
        {path + u"//"_s, path},
        {path + u"/version"_s, path},
        {path + u"/images/none/new.png"_s, path},
        {folder, {}},
        {folder + u"/Missing.tweenery"_s, {}},
        {u"/"_s, {}},
        {u""_s, {}},
    };
    for (const auto& [given, meant] : cases) {
        EXPECT_EQ(packageMeantBy(given), meant) << given.toStdString();
    }
    ASSERT_TRUE(QFile::link(path, folder + u"/link.tweenery"_s));
    EXPECT_EQ(canonicalProjectPath(folder + u"/link.tweenery"_s), canonicalProjectPath(path));
    EXPECT_EQ(canonicalProjectPath(folder + u"/../work/New.tweenery/"_s),
              canonicalProjectPath(folder) + u"/New.tweenery"_s);
}

}  // namespace
}  // namespace tweenery::test
