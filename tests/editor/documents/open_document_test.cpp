#include "editor/documents/open_document.h"

#include <future>

#include "base/errors.h"
#include "editor/documents/document_fixture.h"
#include "storage/interference.h"
#include "storage/posix_files.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using CloseNeed = OpenDocument::CloseNeed;
using Opening = OpenDocument::Opening;
using Action = Notice::Action;
using Topic = Notice::Topic;

const char* const changedText = "This project was changed on disk by another program.";
const char* const goneText = "This project was moved or removed by another program.";

/// Makes everything that is written at a document's place, not its recovery copies, fail.
class FailingPlace {
 public:
    FailingPlace(OpenDocument& document, int error) {
        std::promise<QThread*> promise;
        document.disk().placeThread().post(
            [&promise] { promise.set_value(QThread::currentThread()); });
        QThread* thread = promise.get_future().get();
        setInterference([thread, error](Moment moment) {
            if (moment == Moment::PackageIsBuilt && QThread::currentThread() == thread) {
                throw InputError(u"canvas"_s, failureText(u"could not be written"_s, error));
            }
        });
    }
    ~FailingPlace() { setInterference({}); }
};

class OpenDocumentTest : public DocumentFixture {};

TEST_F(OpenDocumentTest, SavesItselfWhenTheUserRestsAndNeverInAGesture) {
    const auto document = opened();
    EXPECT_EQ(document->windowTitle(), u"Demo[*]"_s);
    EXPECT_FALSE(document->isEdited());
    rest(*document, 100);
    EXPECT_THAT(recoveryFolders(), IsEmpty());

    edit(*document, 0.5);
    EXPECT_TRUE(document->isEdited());
    rest(*document, 1);
    EXPECT_EQ(storedOpacity(path), 1);
    rest(*document, 1);
    EXPECT_EQ(storedOpacity(path), 0.5);
    EXPECT_FALSE(document->isEdited());

    document->project()->undoManager().beginGesture();
    edit(*document, 0.25);
    rest(*document, 60);
    EXPECT_EQ(storedOpacity(path), 0.5);
    document->project()->undoManager().endGesture();
    rest(*document, 0);
    EXPECT_EQ(storedOpacity(path), 0.25);
    EXPECT_EQ(document->closeNeed(), CloseNeed::Nothing);
}

TEST_F(OpenDocumentTest, SavesByItsOwnTimer) {
    SteadyMediaClock steady;
    DocumentServices real{
        alerts, log, steady, [this] { return now; }, services.recovery, services.lockFolder};
    OpenDocument document(real);
    ASSERT_EQ(document.open(path), Opening::Opened);
    edit(document, 0.5);
    EXPECT_TRUE(waitUntil([&] { return !document.isEdited(); }));
    EXPECT_EQ(storedOpacity(path), 0.5);
}

TEST_F(OpenDocumentTest, ClosesSavedAndLeavesNothing) {
    auto document = opened();
    RecordingObserver observer;
    const Subscription subscription = document->addObserver(&observer);
    editAndRest(*document, 0.5);
    EXPECT_EQ(recoveryFolders().size(), 1);
    EXPECT_EQ(messageOf([&](const auto& done) { document->save(done); }), "");
    EXPECT_THAT(observer.saved, ElementsAre(u"Saved at 14:05"_s));
    edit(*document, 0.25);
    EXPECT_EQ(document->closeNeed(), CloseNeed::Save);
    close(std::move(document));
    EXPECT_EQ(storedOpacity(path), 0.25);
    EXPECT_THAT(recoveryFolders(), IsEmpty());
    EXPECT_THAT(services.recovery.leftBehind(), IsEmpty());
    EXPECT_EQ(OpenDocument(services).open(path), Opening::Opened) << "the lock is gone too";
}

TEST_F(OpenDocumentTest, KeepsAnUntitledProjectUntilItHasAPlace) {
    OpenDocument document(services);
    RecordingObserver observer;
    const Subscription subscription = document.addObserver(&observer);
    document.openUntitled(u"Untitled"_s);
    EXPECT_EQ(document.closeNeed(), CloseNeed::Nothing);
    addElement(document.project()->canvas(), u"ball"_s);
    for (const double opacity : {0.5, 0.25}) {
        editAndRest(document, opacity);
        ASSERT_EQ(recoveryFolders().size(), 1);
        const QString folder = services.recovery.folder() + u'/' + recoveryFolders()[0];
        EXPECT_EQ(storedOpacity(folder + u"/Work.tweenery"_s), opacity);
    }
    EXPECT_EQ(document.closeNeed(), CloseNeed::Question);
    EXPECT_NE(messageOf([&](const auto& done) { document.close(done); }), "");
    EXPECT_NE(messageOf([&](const auto& done) { document.save(done); }), "");
    EXPECT_EQ(observer.placesNeeded, 1);

    const QString place = directory.filePath(u"work/New.tweenery"_s);
    EXPECT_EQ(messageOf([&](const auto& done) { document.saveAs(place, done); }), "");
    EXPECT_TRUE(waitUntil([&] { return document.disk().isIdle(); }));
    EXPECT_EQ(document.windowTitle(), u"New[*]"_s);
    EXPECT_THAT(recoveryFolders(), IsEmpty());
    editAndRest(document, 0.75);
    EXPECT_EQ(storedOpacity(place), 0.75);
    OpenDocument second(services);
    EXPECT_EQ(second.open(place), Opening::HeldByOther);
}

TEST_F(OpenDocumentTest, SavesAsOverProjectsOnlyAndCopiesWithoutMoving) {
    const auto document = opened();
    edit(*document, 0.5);
    const QString other = directory.filePath(u"work/Other.tweenery"_s);
    const QString folder = directory.filePath(u"work/Folder.tweenery"_s);
    QDir().mkpath(folder + u"/mine"_s);
    EXPECT_EQ(messageOf([&](const auto& done) { document->saveCopy(other, done); }), "");
    EXPECT_EQ(storedOpacity(other), 0.5);
    EXPECT_EQ(document->path(), path);
    EXPECT_TRUE(document->isEdited());
    for (const auto operation : {&OpenDocument::saveAs, &OpenDocument::saveCopy}) {
        EXPECT_NE(messageOf([&](const auto& done) { (*document.*operation)(folder, done); }), "");
        EXPECT_TRUE(QDir(folder + u"/mine"_s).exists());
        EXPECT_EQ(document->path(), path);
    }
    const auto holder = opened(other);
    for (const auto operation : {&OpenDocument::saveAs, &OpenDocument::saveCopy}) {
        EXPECT_THAT(messageOf([&](const auto& done) { (*document.*operation)(other, done); }),
                    HasSubstr("is open, here or in another"));
    }
}

TEST_F(OpenDocumentTest, RevertsToWhatTheUserSavedAndKeepsWhatItThrowsAway) {
    const auto document = opened();
    RecordingObserver observer;
    const Subscription subscription = document->addObserver(&observer);
    EXPECT_FALSE(document->canRevert());
    edit(*document, 0.5);
    EXPECT_EQ(messageOf([&](const auto& done) { document->save(done); }), "");
    EXPECT_FALSE(document->canRevert());
    editAndRest(*document, 0.25);
    editAndRest(*document, 0.125);
    EXPECT_TRUE(document->canRevert());
    EXPECT_EQ(messageOf([&](const auto& done) { document->revert(done); }), "");
    EXPECT_EQ(observer.replaced, 1);
    EXPECT_EQ(ballOf(*document)->opacity(), 0.5);
    EXPECT_EQ(storedOpacity(path), 0.5);
    EXPECT_FALSE(document->isEdited() || document->canRevert());
    EXPECT_TRUE(waitUntil([&] { return document->disk().isIdle(); }));

    const auto left = services.recovery.leftBehind();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].note.reason, RecoveryNote::Reason::Reverted);
    EXPECT_EQ(storedOpacity(left[0].work), 0.125);
    editAndRest(*document, 0.75);
    EXPECT_EQ(storedOpacity(path), 0.75);
    EXPECT_THAT(noticesOf(*document), IsEmpty());
}

TEST_F(OpenDocumentTest, TellsOfFailuresKeepsTheWorkAndTriesAgain) {
    const struct {
        int error;
        const char* text;
    } cases[] = {
        {ENOSPC, "Not saved: the disk is full. A recovery copy is safe."},
        {EROFS, "Not saved: the disk can only be read. A recovery copy is safe."},
        {EACCES, "Not saved: you may not write there. A recovery copy is safe."},
        {ESTALE, "Not saved: the network drive went away. A recovery copy is safe."},
    };
    for (const auto& [error, text] : cases) {
        SCOPED_TRACE(text);
        auto document = opened();
        const double before = storedOpacity(path);
        {
            const FailingPlace failing(*document, error);
            editAndRest(*document, before / 2);
            EXPECT_THAT(noticesOf(*document), ElementsAre(text));
            EXPECT_EQ(storedOpacity(path), before);
            EXPECT_EQ(document->closeNeed(), CloseNeed::Question);
            const QString folder = services.recovery.folder() + u'/' + recoveryFolders()[0];
            EXPECT_EQ(storedOpacity(folder + u"/Work.tweenery"_s), before / 2);
            document->dismiss(Topic::NotSaved);
            rest(*document, AutosaveSchedule::kRetry);
            EXPECT_THAT(noticesOf(*document), IsEmpty()) << "dismissed, and nothing new to tell";
        }
        rest(*document, AutosaveSchedule::kRetry);
        EXPECT_EQ(storedOpacity(path), before / 2);
        EXPECT_THAT(noticesOf(*document), IsEmpty());
        close(std::move(document));
        EXPECT_THAT(recoveryFolders(), IsEmpty());
    }
}

TEST_F(OpenDocumentTest, SavesElsewhereAfterAFailure) {
    const auto document = opened();
    RecordingObserver observer;
    const Subscription subscription = document->addObserver(&observer);
    const FailingPlace failing(*document, ENOSPC);
    editAndRest(*document, 0.5);
    document->answer(Topic::NotSaved, Action::SaveElsewhere);
    EXPECT_EQ(observer.placesNeeded, 1);
    EXPECT_EQ(messageOf([&](const auto& done) { document->save(done); }), "the disk is full");
    setInterference({});
    document->answer(Topic::NotSaved, Action::TryAgain);
    EXPECT_TRUE(waitUntil([&] { return !document->isEdited(); }));
    EXPECT_THAT(noticesOf(*document), IsEmpty());
}

TEST_F(OpenDocumentTest, KeepsTheWorkWhileTheDiskDoesNotAnswer) {
    const auto document = opened();
    std::promise<void> answer;
    document->disk().placeThread().post([&] { answer.get_future().wait(); });
    edit(*document, 0.5);
    clock.seconds += AutosaveSchedule::kRest;
    document->tick();
    EXPECT_TRUE(waitUntil([&] { return document->disk().canKeepRecovery() == false; }));
    EXPECT_TRUE(waitUntil([&] {
        document->disk().setHung();
        return !noticesOf(*document).empty() && document->disk().canKeepRecovery();
    }));
    EXPECT_THAT(noticesOf(*document),
                ElementsAre("Not saved: the disk does not answer. A recovery copy is safe."));
    edit(*document, 0.25);
    clock.seconds += AutosaveSchedule::kRest;
    document->tick();
    const QString folder = services.recovery.folder() + u'/' + recoveryFolders()[0];
    EXPECT_TRUE(waitUntil([&] { return document->disk().canKeepRecovery(); }));
    EXPECT_EQ(storedOpacity(folder + u"/Work.tweenery"_s), 0.25);
    EXPECT_EQ(storedOpacity(path), 1);

    answer.set_value();
    EXPECT_TRUE(waitUntil([&] { return document->disk().isIdle(); }));
    rest(*document, AutosaveSchedule::kRetry);
    EXPECT_EQ(storedOpacity(path), 0.25);
    EXPECT_THAT(noticesOf(*document), IsEmpty());
}

TEST_F(OpenDocumentTest, NoticesWhatOthersDoToThePackage) {
    const struct {
        const char* name;
        std::function<void()> act;
        const char* text;
    } cases[] = {
        {"entry written in place", [&] { changeOnDisk(u"unknown"_s, "more"); }, changedText},
        {"entry added", [&] { changeOnDisk(u"new"_s, "x"); }, changedText},
        {"entry removed", [&] { QFile::remove(path + u"/unknown"_s); }, changedText},
        {"replaced",
         [&] {
             const auto root = readPackage(path);
             root->pc_replaceSubFileWrapperNamed(u"unknown"_s, "another save");
             savePackage(*root, path);
         },
         changedText},
        {"deep below", [&] { changeOnDisk(u"images/new"_s, "x"); }, changedText},
        {"renamed", [&] { QDir().rename(path, path + u"2"_s); }, goneText},
        {"removed", [&] { QDir(path).removeRecursively(); }, goneText},
    };
    for (const auto& [name, act, text] : cases) {
        SCOPED_TRACE(name);
        QDir(path).removeRecursively();
        SetUp();
        changeOnDisk(u"unknown"_s, "some");
        auto document = opened();
        editAndRest(*document, 0.5);
        EXPECT_TRUE(waitUntil([&] { return document->disk().isIdle(); }));
        EXPECT_THAT(noticesOf(*document), IsEmpty()) << "its own save does not count";
        act();
        EXPECT_TRUE(waitUntil([&] { return !noticesOf(*document).empty(); }));
        EXPECT_THAT(noticesOf(*document), ElementsAre(text));
        editAndRest(*document, 0.25);
        EXPECT_NE(storedOpacity(path), 0.25) << "not before the user has chosen";
        EXPECT_EQ(document->closeNeed(), CloseNeed::Question);
        const bool isGone = text == goneText;
        document->answer(Topic::OnDisk, isGone ? Action::PutBack : Action::KeepMine);
        EXPECT_TRUE(waitUntil([&] { return !document->isEdited(); }));
        EXPECT_EQ(storedOpacity(path), 0.25);
        close(std::move(document));
    }
}

TEST_F(OpenDocumentTest, ReloadsAndKeepsTheEditsThatAreLost) {
    const auto document = opened();
    edit(*document, 0.5);
    {
        const auto root = readPackage(path);
        const auto project = PCProject::projectForReadingWithFileWrapper(root);
        named(*project, u"ball"_s)->setOpacity(0.125);
        savePackage(*project->fileWrapper(), path);
    }
    rest(*document);
    EXPECT_THAT(noticesOf(*document), ElementsAre(changedText));
    document->answer(Topic::OnDisk, Action::Reload);
    EXPECT_TRUE(waitUntil([&] { return noticesOf(*document).empty(); }));
    EXPECT_TRUE(waitUntil([&] { return document->disk().isIdle(); }));
    EXPECT_EQ(ballOf(*document)->opacity(), 0.125);
    EXPECT_FALSE(document->isEdited());
    const auto left = services.recovery.leftBehind();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(storedOpacity(left[0].work), 0.5);
    editAndRest(*document, 0.75);
    EXPECT_EQ(storedOpacity(path), 0.75);
}

TEST_F(OpenDocumentTest, OpensReadOnlyOrAsACopyWhatAnotherHas) {
    const auto holder = opened();
    OpenDocument reader(services), copy(services);
    EXPECT_EQ(reader.open(path), Opening::HeldByOther);
    EXPECT_EQ(reader.lockHolder(),
              u"another Tweenery (process %1)"_s.arg(QCoreApplication::applicationPid()));
    ASSERT_EQ(reader.open(path, OpenDocument::OpenMode::ReadOnly), Opening::Opened);
    EXPECT_EQ(reader.windowTitle(), u"Demo[*] (Read-Only)"_s);
    editAndRest(reader, 0.5);
    EXPECT_EQ(storedOpacity(path), 1);
    EXPECT_EQ(reader.closeNeed(), CloseNeed::Question);
    EXPECT_EQ(messageOf([&](const auto& done) { reader.discard(done); }), "");
    EXPECT_THAT(recoveryFolders(), IsEmpty());

    ASSERT_EQ(copy.open(path, OpenDocument::OpenMode::Copy), Opening::Opened);
    EXPECT_EQ(copy.windowTitle(), u"Demo copy[*]"_s);
    EXPECT_TRUE(copy.isUntitled() && copy.isEdited());
    const QString place = directory.filePath(u"work/Copy.tweenery"_s);
    EXPECT_EQ(messageOf([&](const auto& done) { copy.saveAs(place, done); }), "");
    EXPECT_EQ(storedOpacity(place), 1);
}

TEST_F(OpenDocumentTest, GivesBackWhatItCouldNotSaveInPlace) {
    {
        const auto document = opened();
        const FailingPlace failing(*document, ENOSPC);
        editAndRest(*document, 0.5);
    }
    {
        const auto document = opened();
        EXPECT_EQ(ballOf(*document)->opacity(), 0.5);
        EXPECT_TRUE(document->isEdited() && document->canRevert());
        ASSERT_EQ(document->notices().size(), 1U);
        EXPECT_EQ(document->notices()[0].buttons.size(), 2U);
        rest(*document);
        EXPECT_EQ(storedOpacity(path), 0.5) << "and stores it there";
    }
    const auto document = opened();
    ASSERT_EQ(document->notices().size(), 1U);
    document->answer(Topic::Recovered, Action::GoBackToSaved);
    EXPECT_TRUE(waitUntil([&] { return noticesOf(*document).empty(); }));
    EXPECT_EQ(ballOf(*document)->opacity(), 1);
    EXPECT_EQ(storedOpacity(path), 1);
}

TEST_F(OpenDocumentTest, GivesBackACopyOfAProjectThatIsDamagedMeanwhile) {
    {
        const auto document = opened();
        const FailingPlace failing(*document, ENOSPC);
        editAndRest(*document, 0.5);
    }
    changeOnDisk(u"canvas"_s, "rubbish");
    const auto left = services.recovery.leftBehind();
    ASSERT_EQ(left.size(), 1U);
    OpenDocument document(services);
    EXPECT_THROW(document.open(path), InputError);
    ASSERT_EQ(document.openRecovered(left[0]), Opening::Opened);
    EXPECT_TRUE(document.isUntitled());
    EXPECT_EQ(document.windowTitle(), u"Demo[*]"_s);
    EXPECT_EQ(ballOf(document)->opacity(), 0.5);
}

}  // namespace
}  // namespace tweenery::test
