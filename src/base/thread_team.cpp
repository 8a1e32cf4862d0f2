#include "base/thread_team.h"

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>
#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

#include "base/spare_core.h"

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

std::vector<SpareCore> takeCores(size_t most) {
    std::vector<SpareCore> cores;
    while (cores.size() < most) {
        auto core = SpareCore::take();
        if (!core) { break; }
        cores.push_back(std::move(*core));
    }
    return cores;
}

}  // namespace

ThreadTeam::ThreadTeam(int threads)
    : m_threads(threads > 0 ? threads : static_cast<int>(SpareCore::all())) {}

void ThreadTeam::run(size_t pieces, const std::function<void(size_t, int)>& task) const {
    constexpr int kPatience = 50;  // ms
    const auto work = std::make_shared<Work>(task, pieces);
    QThreadPool& pool = *QThreadPool::globalInstance();
    const bool isOfPool = pool.contains(QThread::currentThread());
    // The first takes the core of the caller, who waits; in the pool that is the caller itself.
    const size_t most = std::min(pieces, static_cast<size_t>(m_threads));
    const std::vector<SpareCore> cores = takeCores(std::max<size_t>(most, 1) - 1);
    const size_t helpers = std::min(most, cores.size() + (isOfPool ? 0 : 1));
    for (size_t helper = 1; helper <= helpers; ++helper) {
        pool.start([work, helper] { work->help(static_cast<int>(helper)); });
    }
    const int all = static_cast<int>(pieces);
    if (!isOfPool && work->done.tryAcquire(all, kPatience)) { return; }
    if (isOfPool || work->next == 0) { work->help(0); }
    work->done.acquire(all);
}

}  // namespace tweenery
