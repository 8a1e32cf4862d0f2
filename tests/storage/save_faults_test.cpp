// Every system call of a save fails in turn, and the program dies at every one of them: the package
// is the old one or the new one then, whole, and can be saved again.
#include <gmock/gmock.h>
#include <sys/wait.h>

#include <QDir>
#include <QProcess>
#include <map>

#include "storage/package_fixture.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::IsEmpty;
namespace fs = std::filesystem;

struct Outcome {
    bool killed = false;
    int exitCode = 0;
    QByteArray message;
};

Outcome runProbe(const QString& traceFile, const QStringList& injections, const QString& package) {
    QStringList arguments{u"-f"_s, u"-qq"_s, u"-o"_s, traceFile};
    for (const QString& injection : injections) {
        arguments << u"--inject="_s + injection;
    }
    QProcess strace;
    strace.start(u"strace"_s, arguments << QStringLiteral(TWEENERY_SAVE_PROBE) << package);
    if (!strace.waitForFinished(60'000)) { return {false, -1, strace.errorString().toUtf8()}; }
    return {strace.exitStatus() == QProcess::CrashExit, strace.exitCode(),
            strace.readAllStandardError()};
}

struct Fault {
    QString call;
    QString fault;
};

class SaveFaultsTest : public testing::Test {
 protected:
    void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the sanitizers make system calls of their own, which must not fail";
#endif
        if (const Outcome outcome = runUndisturbed({}); outcome.exitCode != 0) {
            GTEST_SKIP() << "strace does not work here: " << outcome.message.constData();
        }
    }

    /// Tries each fault at each call of its kind, with `always` happening all the time.
    void tryFaults(const std::vector<Fault>& faults, const QStringList& always = {});

    int m_moreDirectories = 0;

 private:
    QString package() const { return m_directory.filePath(u"Demo.tweenery"_s); }
    void makePackage() const;
    Outcome runUndisturbed(const QStringList& always);
    void countCalls(const std::string& traceFile);
    void check(const Outcome& outcome, bool mayDie) const;

    QTemporaryDir m_directory{templateOfFastPlaces()};
    DirectorySnapshot m_old, m_new;
    // The number of calls before the probe turns to the package, and of all.
    std::map<std::string, std::pair<int, int>> m_calls;
};

void SaveFaultsTest::makePackage() const {
    const std::string root = package().toStdString();
    fs::remove_all(m_directory.path().toStdString());
    fs::create_directories(root + "/animations");
    fs::create_directories(root + "/images");
    for (const char* name : {"version", "canvas", "unknown", "animations/name.data"}) {
        std::ofstream(root + "/" + name) << name;
    }
    fs::create_symlink("nowhere", root + "/images/link");
    for (int i = 0; i < m_moreDirectories; ++i) {
        fs::create_directory(root + "/animations/" + std::to_string(i));
    }
}

Outcome SaveFaultsTest::runUndisturbed(const QStringList& always) {
    makePackage();
    m_old = snapshotOf(package());
    const QString traceFile = m_directory.filePath(u"trace"_s);
    const Outcome outcome = runProbe(traceFile, always, package());
    m_new = snapshotOf(package());
    countCalls(traceFile.toStdString());
    return outcome;
}

void SaveFaultsTest::countCalls(const std::string& traceFile) {
    m_calls.clear();
    std::ifstream lines(traceFile);
    bool hasBegun = false;
    std::string processId, line;
    while (lines >> processId && std::getline(lines >> std::ws, line)) {
        const std::string call = line.substr(0, line.find('('));
        hasBegun |= call == "openat" && line.find(package().toStdString()) != std::string::npos;
        auto& [before, all] = m_calls[call];
        if (!hasBegun) { ++before; }
        ++all;
    }
}

void SaveFaultsTest::tryFaults(const std::vector<Fault>& faults, const QStringList& always) {
    ASSERT_EQ(runUndisturbed(always).exitCode, 0);
    ASSERT_NE(m_new, m_old);
    for (const auto& [call, fault] : faults) {
        const auto [before, all] = m_calls[call.toStdString()];
        EXPECT_LT(before, all) << call.toStdString() << " does not happen any more";
        for (int number = before + 1; number <= all; ++number) {
            const QString injection = call + u':' + fault + u":when="_s + QString::number(number);
            SCOPED_TRACE(injection.toStdString());
            makePackage();
            const Outcome outcome =
                runProbe(u"/dev/null"_s, QStringList(always) << injection, package());
            check(outcome, fault.startsWith(u"signal"_s));
        }
    }
}

void SaveFaultsTest::check(const Outcome& outcome, bool mayDie) const {
    const auto root = readPackage(package());
    // Reading finds a package that was set aside, and leaves it there for the next save.
    QString place = package();
    for (const std::string& name : hiddenEntriesIn(m_directory.path())) {
        const bool isSetAside = name.find(".set-aside-") != std::string::npos;
        if (isSetAside && !QDir(package()).exists()) {
            place = m_directory.filePath(QString::fromStdString(name));
        }
    }
    const auto found = snapshotOf(place);
    if (outcome.killed) {
        EXPECT_TRUE(mayDie);
        EXPECT_TRUE(found == m_old || found == m_new);
    } else {
        ASSERT_THAT(outcome.exitCode, testing::AnyOf(0, 1)) << outcome.message.constData();
        EXPECT_EQ(found, outcome.exitCode == 0 ? m_new : m_old);
        EXPECT_EQ(outcome.exitCode == 1, outcome.message.contains(": "));
    }
    root->pc_replaceSubFileWrapperNamed(u"canvas"_s, "again");
    savePackage(*root, package());
    EXPECT_EQ(snapshotOf(package()).at("canvas").content, "again");
    EXPECT_EQ(snapshotOf(package()).size(), found.size());
    EXPECT_THAT(hiddenEntriesIn(m_directory.path()), IsEmpty());
}

TEST_F(SaveFaultsTest, FailingCallsLeaveTheOldPackageOrTheNewOne) {
    tryFaults({{u"openat"_s, u"error=EIO"_s},
               {u"newfstatat"_s, u"error=EIO"_s},
               {u"read"_s, u"error=EIO"_s},
               {u"getdents64"_s, u"error=EIO"_s},
               {u"readlinkat"_s, u"error=EIO"_s},
               {u"mkdirat"_s, u"error=ENOSPC"_s},
               {u"linkat"_s, u"error=ENOSPC"_s},
               {u"linkat"_s, u"error=EPERM"_s},
               {u"symlinkat"_s, u"error=ENOSPC"_s},
               {u"write"_s, u"error=ENOSPC"_s},
               {u"fchmod"_s, u"error=EPERM"_s},
               {u"fsync"_s, u"error=EIO"_s},
               {u"fsync"_s, u"error=EINVAL"_s},
               {u"close"_s, u"error=EIO"_s},
               {u"flock"_s, u"error=ENOLCK"_s},
               {u"renameat2"_s, u"error=EIO"_s},
               {u"unlinkat"_s, u"error=EACCES"_s}});
}

TEST_F(SaveFaultsTest, DyingAtAnyCallLeavesTheOldPackageOrTheNewOne) {
    std::vector<Fault> faults;
    for (const QString& call :
         {u"openat"_s, u"newfstatat"_s, u"read"_s, u"getdents64"_s, u"readlinkat"_s, u"mkdirat"_s,
          u"linkat"_s, u"symlinkat"_s, u"write"_s, u"fchmod"_s, u"fsync"_s, u"close"_s, u"flock"_s,
          u"renameat2"_s, u"unlinkat"_s}) {
        faults.push_back({call, u"signal=KILL"_s});
    }
    tryFaults(faults);
}

TEST_F(SaveFaultsTest, FileSystemsThatCannotExchangeLoseNothing) {
    tryFaults({{u"renameat"_s, u"error=EIO"_s},
               {u"renameat"_s, u"signal=KILL"_s},
               {u"unlinkat"_s, u"signal=KILL"_s}},
              {u"renameat2:error=EINVAL"_s});
}

TEST_F(SaveFaultsTest, FlushingTheWholeFileSystemMayFailToo) {
    m_moreDirectories = 20;
    tryFaults({{u"syncfs"_s, u"error=EIO"_s}, {u"syncfs"_s, u"signal=KILL"_s}});
}

TEST_F(SaveFaultsTest, FileSystemsWithoutLinksLoseNothing) {
    tryFaults({{u"write"_s, u"error=ENOSPC"_s}, {u"write"_s, u"signal=KILL"_s}},
              {u"linkat:error=EPERM"_s});
}

}  // namespace
}  // namespace tweenery::test
