// Processes that are killed while they edit and save, and whose system calls fail: no work is lost,
// and the next start says what came back.
#include <signal.h>
#include <sys/stat.h>

#include <QProcess>

#include "editor/documents/document_fixture.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;

class CrashTest : public DocumentFixture {
 protected:
    const QString state = directory.filePath(u"state"_s);

    /// Starts a process that edits without end, and waits until it has saved `times` times.
    std::unique_ptr<QProcess> startEditing(const QString& package, int times) {
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral(TWEENERY_DOCUMENT_PROBE), {u"edit"_s, package, state});
        QByteArray output;
        while (output.count("saved") < times && process->waitForReadyRead(20'000)) {
            output += process->readAllStandardOutput();
        }
        EXPECT_GE(output.count("saved"), times) << process->readAllStandardError().constData();
        return process;
    }
    static void kill(QProcess& process) {
        ::kill(static_cast<pid_t>(process.processId()), SIGKILL);
        EXPECT_TRUE(process.waitForFinished());
    }
    static uint64_t inodeOf(const QString& file) {
        struct stat status = {};
        EXPECT_EQ(::stat(qPrintable(file), &status), 0);
        return status.st_ino;
    }
};

TEST_F(CrashTest, WhatAKilledProcessSavedInPlaceIsBackAndCanGoBack) {
    for (int round = 0; round < 8; ++round) {
        SCOPED_TRACE(round);
        const auto process = startEditing(path, 1 + round % 3);
        {
            OpenDocument second(services);
            EXPECT_EQ(second.open(path), OpenDocument::Opening::HeldByOther);
            EXPECT_EQ(second.lockHolder(),
                      u"another Tweenery (process %1)"_s.arg(process->processId()));
            EXPECT_THAT(services.recovery.leftBehind(), IsEmpty());
        }
        QThread::usleep(static_cast<unsigned>(round) * 700);  // anywhere in an edit or a save
        kill(*process);
        const auto left = services.recovery.leftBehind();
        ASSERT_EQ(left.size(), 1U);
        EXPECT_EQ(left[0].note.projectPath, path);
        EXPECT_TRUE(left[0].isInPlace);

        auto document = opened();
        EXPECT_THAT(ballOf(*document)->opacity(), AnyOf(0.5, 0.25));
        ASSERT_EQ(noticesOf(*document).size(), 1U);
        EXPECT_THAT(noticesOf(*document)[0],
                    HasSubstr("Tweenery was closed unexpectedly. Your work of "));
        document->answer(Notice::Topic::Recovered, Notice::Action::GoBackToSaved);
        EXPECT_TRUE(waitUntil([&] { return noticesOf(*document).empty(); }));
        EXPECT_EQ(ballOf(*document)->opacity(), 1);
        close(std::move(document));
        EXPECT_EQ(storedOpacity(path), 1);
        for (const RecoveredWork& reverted : services.recovery.leftBehind()) {
            EXPECT_EQ(reverted.note.reason, RecoveryNote::Reason::Reverted);
            EXPECT_TRUE(services.recovery.dismiss(reverted));
        }
        EXPECT_THAT(recoveryFolders(), IsEmpty());
    }
}

TEST_F(CrashTest, AnUntitledProjectIsOfferedAndTakenOver) {
    kill(*startEditing({}, 3));
    const auto left = services.recovery.leftBehind();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].note.displayName, u"Untitled"_s);
    EXPECT_THAT(storedOpacity(left[0].work), AnyOf(0.5, 0.25));
    {
        OpenDocument document(services);
        ASSERT_EQ(document.openRecovered(left[0]), OpenDocument::Opening::Opened);
        EXPECT_TRUE(document.isUntitled() && document.isEdited());
        EXPECT_EQ(document.closeNeed(), OpenDocument::CloseNeed::Question);
        ASSERT_EQ(document.notices().size(), 1U);
        EXPECT_EQ(document.notices()[0].buttons.size(), 1U);
        EXPECT_THAT(services.recovery.leftBehind(), IsEmpty()) << "it is at work again";
        editAndRest(document, 0.125);
    }
    const auto again = services.recovery.leftBehind();
    ASSERT_EQ(again.size(), 1U);
    EXPECT_EQ(storedOpacity(again[0].work), 0.125);
    OpenDocument document(services);
    ASSERT_EQ(document.openRecovered(again[0]), OpenDocument::Opening::Opened);
    EXPECT_EQ(messageOf([&](const auto& done) { document.discard(done); }), "");
    EXPECT_THAT(recoveryFolders(), IsEmpty());
}

TEST_F(CrashTest, TheVersionToGoBackToCostsLinksOnly) {
    const auto process = startEditing(path, 1);
    const QString saved =
        services.recovery.folder() + u'/' + recoveryFolders()[0] + u"/Saved.tweenery"_s;
    EXPECT_EQ(inodeOf(saved + u"/version"_s), inodeOf(path + u"/version"_s));
    EXPECT_NE(inodeOf(saved + u"/canvas"_s), inodeOf(path + u"/canvas"_s));
    EXPECT_EQ(storedOpacity(saved), 1);
    kill(*process);
}

/// Runs the probe under strace.
class FaultsTest : public CrashTest {
 protected:
    struct Run {
        int exitCode = -1;
        std::string output;
        QByteArray trace;
    };
    void SetUp() override {
        DocumentFixture::SetUp();
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the sanitizers make system calls of their own, which must not fail";
#endif
        m_undisturbed = sweep({});
        if (m_undisturbed.exitCode != 0) { GTEST_SKIP() << "strace does not work here"; }
        EXPECT_EQ(m_undisturbed.output, "");
    }
    Run runOnce(const QStringList& options) const {
        QProcess strace;
        strace.start(u"strace"_s, QStringList{u"-f"_s, u"-qq"_s, u"-o"_s, u"/dev/null"_s}
                                      << options << QStringLiteral(TWEENERY_DOCUMENT_PROBE)
                                      << u"fail"_s << path << state);
        EXPECT_TRUE(strace.waitForFinished());
        return {strace.exitCode(), strace.readAllStandardOutput().toStdString(), {}};
    }
    /// Many saves of one process, from an open document on.
    Run sweep(const QStringList& options) const {
        const QString traceFile = directory.filePath(u"trace"_s);
        QProcess probe, strace;
        probe.start(QStringLiteral(TWEENERY_DOCUMENT_PROBE), {u"sweep"_s, path, state});
        if (!waitFor(probe, "ready")) { return {}; }
        strace.setProcessChannelMode(QProcess::MergedChannels);
        strace.start(
            u"strace"_s,
            QStringList{u"-f"_s, u"-o"_s, traceFile, u"-p"_s, QString::number(probe.processId())}
                << options);
        if (!waitFor(strace, "attached")) { return {}; }
        probe.write("\n");
        EXPECT_TRUE(probe.waitForFinished() && strace.waitForFinished());
        QFile trace(traceFile);
        EXPECT_TRUE(trace.open(QIODevice::ReadOnly));
        return {probe.exitStatus() == QProcess::NormalExit ? probe.exitCode() : -1,
                probe.readAllStandardOutput().toStdString(), trace.readAll()};
    }
    /// How often one thread of the undisturbed sweep makes that call for one save, at most.
    int callsOfSave(const QByteArray& call) const {
        constexpr int saves = 20;
        std::map<QByteArray, int> counts;
        int most = 0;
        for (const QByteArray& line : m_undisturbed.trace.split('\n')) {
            const QByteArray thread = line.left(line.indexOf(' '));
            if (line.mid(thread.size()).trimmed().startsWith(call + '(')) {
                most = std::max(most, ++counts[thread]);
            }
        }
        return (most + saves - 1) / saves;
    }
    void startAnew() {
        QDir(directory.path()).removeRecursively();
        DocumentFixture::SetUp();
    }

 private:
    Run m_undisturbed;

    static bool waitFor(QProcess& process, const char* text) {
        QByteArray output;
        while (!output.contains(text)) {
            if (!process.waitForReadyRead(20'000)) { return false; }
            output += process.readAll();
        }
        return true;
    }
};

// Only what is done in the project's folder fails, and goes on failing.
TEST_F(FaultsTest, AFolderThatTakesNothingLeavesARecoveryCopy) {
    const struct {
        const char* error;
        const char* notice;
    } cases[] = {
        {"ENOSPC", "Not saved: the disk is full. A recovery copy is safe.\n"},
        {"EROFS", "Not saved: the disk can only be read. A recovery copy is safe.\n"},
        {"EACCES", "Not saved: you may not write there. A recovery copy is safe.\n"},
    };
    for (const auto& [error, notice] : cases) {
        startAnew();
        const QString injection = u"--inject=mkdirat:error="_s + QString::fromLatin1(error);
        EXPECT_EQ(runOnce({u"-P"_s, directory.filePath(u"work"_s), injection}).output, notice);
        EXPECT_EQ(storedOpacity(path), 1);
        const auto left = services.recovery.leftBehindOf(path);
        ASSERT_TRUE(left);
        EXPECT_EQ(storedOpacity(left->work), 0.5);
    }
}

// Every so often a call fails, and with each save another one of those that it makes, as the
// distance is no multiple of their number. It is far enough for a try without a failure in between.
// Each thread counts its own. (close() is left out: when strace has it fail, the file stays open.)
TEST_F(FaultsTest, ASaveIsTriedAgainWhicheverCallFails) {
    const struct {
        const char* call;
        const char* error;
        bool isTold;  // some of the failures prevent a save
    } faults[] = {
        {"openat", "EIO", true},     {"newfstatat", "EIO", true}, {"getdents64", "EIO", true},
        {"mkdirat", "ENOSPC", true}, {"linkat", "EIO", true},     {"fchmod", "EPERM", true},
        {"fsync", "EIO", true},      {"renameat2", "EIO", true},  {"unlinkat", "EACCES", false},
        {"flock", "ENOLCK", false},
    };
    for (const auto& [call, error, isTold] : faults) {
        SCOPED_TRACE(call);
        const int calls = callsOfSave(call);
        ASSERT_GT(calls, 0) << "does not happen any more";
        startAnew();
        const QString fault =
            u"%1:error=%2"_s.arg(QString::fromLatin1(call), QString::fromLatin1(error));
        const Run run = sweep({u"--inject=%1:when=1+%2"_s.arg(fault).arg(3 * calls + 1)});
        EXPECT_EQ(run.exitCode, 0) << run.output;
        EXPECT_EQ(run.output.empty(), !isTold) << run.output;
        EXPECT_FLOAT_EQ(static_cast<float>(storedOpacity(path)), 1.0F / 21);
        EXPECT_TRUE(run.trace.contains("(INJECTED)"));
    }
}

}  // namespace
}  // namespace tweenery::test
