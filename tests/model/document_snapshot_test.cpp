// Saving on another thread while the project is edited.

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <future>

#include "base/errors.h"
#include "model/document.h"
#include "support/directory_snapshot.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

class DocumentSnapshots : public testing::Test {
 protected:
    QTemporaryDir directory;
    const QString path = directory.filePath(u"Demo.tweenery"_s);
    ScriptedAlerts alerts;
    RecordingLog log;
    PCDocument document{alerts, log};
    PCElement::Ptr ball;
    PCAnimation::Ptr animation;

    void SetUp() override {
        PCProject& project = *document.project();
        project.setPreviewImage(QImage(60, 40, QImage::Format_RGB32));
        ball = addElement(project.canvas(), u"ball"_s);
        animation = selectNewAnimation(project, u"Bounce"_s);
        ball->setXTranslation(5, 100);
        document.saveAs(path);
    }
    /// What a save in place would write now, without one.
    DirectorySnapshot wouldBeSaved() {
        const QString copy = directory.filePath(u"Copy.tweenery"_s);
        writePackageCopy(*document.fileWrapperOfProject(), copy, true);
        return snapshotOf(copy);
    }
    WrittenPackage write(const DocumentSnapshot& snapshot) const {
        return writeSnapshot(snapshot.package, path);
    }
    /// One edit of each thing that is stored by itself, each another one than the last time.
    void editEverything() {
        const int count = ++m_edits;
        PCProject& project = *document.project();
        ball->setXTranslation(static_cast<float>(count), 100 + count);
        ball->setOpacity(1.0 / count);
        ball->setName(u"ball %1"_s.arg(count));
        project.preferences().setCanvasZoomLevel(static_cast<float>(count));
        project.animationsManager().renameAnimation(animation, u"Bounce %1"_s.arg(count));
        project.imageSetManager().addOrReplaceImageSetWithPCImage(
            std::make_shared<PCImage>(QImage(4 + count, 4, QImage::Format_RGB32), u"logo.png"_s));
    }

 private:
    int m_edits = 1;
};

TEST_F(DocumentSnapshots, WriteWhatASaveInPlaceWouldHaveWritten) {
    editEverything();
    const DocumentSnapshot snapshot = document.snapshot();
    const DirectorySnapshot expected = wouldBeSaved();
    editEverything();
    document.project()->animationsManager().setSelectedAnimation(nullptr);
    const WrittenPackage written = write(snapshot);
    EXPECT_EQ(snapshotOf(path), expected);

    document.didWrite(snapshot, written, path);
    EXPECT_TRUE(document.isEdited());
    const DirectorySnapshot later = wouldBeSaved();
    EXPECT_NE(later, expected);
    document.save();
    EXPECT_EQ(snapshotOf(path), later);
    EXPECT_FALSE(document.isEdited());
}

TEST_F(DocumentSnapshots, MayWaitForOneAnother) {
    editEverything();
    const DocumentSnapshot first = document.snapshot();
    editEverything();
    const DocumentSnapshot second = document.snapshot();
    document.didWrite(first, write(first), path);
    EXPECT_TRUE(document.isEdited());
    document.didWrite(second, write(second), path);
    EXPECT_FALSE(document.isEdited());
    EXPECT_EQ(snapshotOf(path), wouldBeSaved());
    EXPECT_TRUE(entriesChangedOnDisk(*document.project()->packageRoot(), path).isEmpty());

    // What the first one wrote and the second one kept is linked, not written again.
    const auto inode = [this] {
        return document.project()->packageRoot()->child(u"canvas"_s)->origin()->inode;
    };
    const uint64_t before = inode();
    document.project()->animationsManager().renameAnimation(animation, u"Only the name"_s);
    document.save();
    EXPECT_EQ(inode(), before);
}

// Timelines count as unsaved once they are decoded; those that come out the same keep their files.
TEST_F(DocumentSnapshots, LinkTheTimelinesThatWereOnlyRead) {
    const auto inodeOfTimeline = [&] {
        const auto stored = readPackage(path)->child(u"animations"_s);
        return stored->child(animation->identifier())
            ->child(ball->identifier().toString())
            ->child(filenameOfTimelineType(PCPropertyTypeTranslationX))
            ->origin()
            ->inode;
    };
    const uint64_t before = inodeOfTimeline();
    PCDocument again(alerts, log);
    ASSERT_TRUE(again.readFromPath(path));
    PCAnimationsManager& manager = again.project()->animationsManager();
    manager.setSelectedAnimation(manager.animations().front());
    again.save();
    EXPECT_EQ(inodeOfTimeline(), before);
    named(*again.project(), u"ball"_s)->setXTranslation(6, 100);
    again.save();
    EXPECT_NE(inodeOfTimeline(), before);
}

TEST_F(DocumentSnapshots, LeaveTheDocumentEditedWhenTheyCannotBeWritten) {
    editEverything();
    const DirectorySnapshot before = snapshotOf(path);
    const DocumentSnapshot snapshot = document.snapshot();
    EXPECT_THROW(writeSnapshot(snapshot.package, directory.filePath(u"gone/Demo.tweenery"_s)),
                 InputError);
    EXPECT_TRUE(document.isEdited());
    EXPECT_EQ(snapshotOf(path), before);
    document.save();
    EXPECT_EQ(snapshotOf(path), wouldBeSaved());
}

TEST_F(DocumentSnapshots, AreWrittenWhileTheProjectIsEdited) {
    for (int round = 0; round < 10; ++round) {
        editEverything();
        const DocumentSnapshot snapshot = document.snapshot();
        const DirectorySnapshot expected = wouldBeSaved();
        std::future<WrittenPackage> writing =
            std::async(std::launch::async, [&] { return write(snapshot); });
        editEverything();
        const DocumentSnapshot next = document.snapshot();
        document.project()->undoManager().undo();
        document.project()->undoManager().redo();
        document.didWrite(snapshot, writing.get(), path);
        EXPECT_EQ(snapshotOf(path), expected);
        EXPECT_TRUE(document.isEdited());
        document.didWrite(next, write(next), path);
        EXPECT_FALSE(document.isEdited());
    }
}

TEST_F(DocumentSnapshots, OpenAsProjectsOfTheirOwn) {
    const DocumentSnapshot snapshot = document.snapshot();
    const std::string before = exactState(*document.project()->canvas());
    std::future<std::string> reading = std::async(std::launch::async, [&] {
        const PCProject::Ptr reader = snapshot.projectForReading();
        reader->animationsManager().animations().front()->loadAllTimelines();
        named(*reader, u"ball"_s)->setOpacity(0.125);
        reader->fileWrapper();
        return exactState(*snapshot.projectForReading()->canvas());
    });
    editEverything();
    EXPECT_EQ(reading.get(), before);
    EXPECT_EQ(snapshot.projectForReading()->projectName(), u"Demo"_s);
}

// The user may revert while the document is being saved.
TEST_F(DocumentSnapshots, OfAProjectThatIsNoMoreSayNothingOfTheNewOne) {
    editEverything();
    const DocumentSnapshot snapshot = document.snapshot();
    const WrittenPackage written = write(snapshot);
    ASSERT_TRUE(document.revert());
    named(*document.project(), u"ball 2"_s)->setOpacity(0.75);
    document.didWrite(snapshot, written, path);
    EXPECT_TRUE(document.isEdited());
}

}  // namespace
}  // namespace tweenery::test
