#include "base/thread_team.h"

#include <gtest/gtest.h>

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>
#include <atomic>
#include <vector>

namespace tweenery {
namespace {

bool isOnPool() {
    return QThreadPool::globalInstance()->contains(QThread::currentThread());
}

// How it went: every piece once, no worker twice at a time.
struct TeamRun {
    explicit TeamRun(const ThreadTeam& team, size_t pieces = 200) : visits(pieces) {
        std::vector<std::atomic<bool>> isBusy(static_cast<size_t>(team.workers()));
        team.run(pieces, [&](size_t piece, int worker) {
            if (isBusy.at(static_cast<size_t>(worker)).exchange(true)) { isClean = false; }
            ++visits[piece];
            if (!isOnPool()) { ++outside; }
            QThread::usleep(20);  // long enough for others to come
            isBusy[static_cast<size_t>(worker)] = false;
        });
        for (const std::atomic<int>& count : visits) {
            if (count != 1) { isClean = false; }
        }
    }

    std::vector<std::atomic<int>> visits;
    std::atomic<bool> isClean = true;
    std::atomic<int> outside = 0;  // of the pool
};

TEST(ThreadTeam, DoesEachPieceOnceOnThreadsOfThePool) {
    for (const int threads : {0, 1, 2, 5}) {
        for (const size_t pieces : {0, 1, 200}) {
            const TeamRun run(ThreadTeam(threads), pieces);
            EXPECT_TRUE(run.isClean) << threads << " threads, " << pieces << " pieces";
            EXPECT_EQ(run.outside, 0) << threads << " threads, " << pieces << " pieces";
        }
    }
}

TEST(ThreadTeam, WorksOnWhereThePoolIsBusy) {
    QThreadPool& pool = *QThreadPool::globalInstance();
    QSemaphore mayEnd;
    for (int i = 0; i < pool.maxThreadCount(); ++i) {
        pool.start([&mayEnd] { mayEnd.acquire(); });
    }
    const TeamRun run(ThreadTeam(2), 20);
    mayEnd.release(pool.maxThreadCount());
    EXPECT_TRUE(run.isClean);
    EXPECT_EQ(run.outside, 20) << "the caller did it";
    pool.waitForDone();
}

TEST(ThreadTeam, ThreadsOfThePoolMayCallIt) {
    std::atomic<int> clean = 0;
    QThreadPool& pool = *QThreadPool::globalInstance();
    const int callers = 2 * pool.maxThreadCount();
    for (int i = 0; i < callers; ++i) {
        pool.start([&clean] { clean += TeamRun(ThreadTeam(2)).isClean ? 1 : 0; });
    }
    pool.waitForDone();
    EXPECT_EQ(clean, callers);
}

}  // namespace
}  // namespace tweenery
