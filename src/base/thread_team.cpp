#include "base/thread_team.h"

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>
#include <algorithm>
#include <atomic>
#include <memory>

namespace tweenery {
namespace {

// Outlives run(): a thread of the pool may come to it when all is done. Then it leaves `task`
// alone.
struct Work {
    Work(const std::function<void(size_t, int)>& pieceTask, size_t count)
        : task(pieceTask), pieces(count) {}

    const std::function<void(size_t, int)>& task;
    size_t pieces;
    std::atomic<size_t> next = 0;
    QSemaphore done{};

    void help(int worker) {
        for (size_t piece = next++; piece < pieces; piece = next++) {
            task(piece, worker);
            done.release();
        }
    }
};

}  // namespace

ThreadTeam::ThreadTeam(int threads)
    : m_threads(threads > 0 ? threads : std::max(1, QThread::idealThreadCount())) {}

void ThreadTeam::run(size_t pieces, const std::function<void(size_t, int)>& task) const {
    constexpr int kPatience = 50;  // ms
    const auto work = std::make_shared<Work>(task, pieces);
    QThreadPool& pool = *QThreadPool::globalInstance();
    const bool isOfPool = pool.contains(QThread::currentThread());
    const size_t helpers =
        std::min(pieces, static_cast<size_t>(isOfPool ? m_threads - 1 : m_threads));
    for (size_t helper = 1; helper <= helpers; ++helper) {
        pool.start([work, helper] { work->help(static_cast<int>(helper)); });
    }
    const int all = static_cast<int>(pieces);
    if (!isOfPool && work->done.tryAcquire(all, kPatience)) { return; }
    if (isOfPool || work->next == 0) { work->help(0); }
    work->done.acquire(all);
}

}  // namespace tweenery
