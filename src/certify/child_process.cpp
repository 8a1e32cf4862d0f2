#include "certify/child_process.h"

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QProcess>

#include "storage/temporaries.h"

namespace tweenery {

namespace {

constexpr rlim_t kMostMemory = rlim_t{4} << 30;
constexpr rlim_t kMostFileBytes = rlim_t{4} << 30;
constexpr int kWaitInMS = 100;

void limit(decltype(RLIMIT_CORE) resource, rlim_t most) {
    const rlimit limits{most, most};
    setrlimit(resource, &limits);
}

// Runs in the child, between fork and exec.
void restrictSelf(rlim_t processorSeconds) {
    constexpr unsigned int firstOfOurs = 3;
    close_range(firstOfOurs, ~0U, CLOSE_RANGE_CLOEXEC);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_CPU, processorSeconds);
    limit(RLIMIT_AS, kMostMemory);
    limit(RLIMIT_FSIZE, kMostFileBytes);
}

}  // namespace

ChildResult runChild(const ChildTask& task) {
    QProcess process;
    process.setProgram(task.program);
    process.setArguments(task.arguments);
    process.setWorkingDirectory(task.folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(task.inputFile.isEmpty() ? QProcess::nullDevice()
                                                          : task.inputFile);
    if (!task.outputFile.isEmpty()) {
        process.setProcessChannelMode(QProcess::SeparateChannels);
        process.setStandardOutputFile(task.outputFile);
    }
    const auto processorSeconds = static_cast<rlim_t>(task.processorLimit.count());
    process.setChildProcessModifier([processorSeconds] { restrictSelf(processorSeconds); });

    ChildResult result;
    QElapsedTimer timer;
    timer.start();
    process.start();
    result.hasStarted = process.waitForStarted();
    if (!result.hasStarted) { return result; }
    try {
        while (process.state() != QProcess::NotRunning && !process.waitForFinished(kWaitInMS)) {
            requireNotStopped();
            if (timer.hasExpired(task.timeLimit.count())) {
                result.wasInTime = false;
                process.kill();
            }
        }
    } catch (...) {
        process.kill();
        process.waitForFinished();
        throw;
    }
    result.output = task.outputFile.isEmpty() ? process.readAll() : process.readAllStandardError();
    if (process.exitStatus() == QProcess::NormalExit) { result.exitCode = process.exitCode(); }
    // For a process that has used up its processor time, crashed means killed.
    const bool isKilled = process.exitStatus() == QProcess::CrashExit &&
                          (process.exitCode() == SIGKILL || process.exitCode() == SIGXCPU);
    if (isKilled) { result.wasInTime = false; }
    return result;
}

}  // namespace tweenery
