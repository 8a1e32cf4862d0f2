#pragma once

#include <QThread>
#include <QThreadPool>
#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>

namespace tweenery {

/// Visits a tree on all cores: while a thread is idle, it is given half of what a visit has left to
/// do. A walk of few visits starts no thread.
class ParallelWalk {
 public:
    ParallelWalk() { m_pool.setMaxThreadCount(m_cores); }

    /// Calls `root` and waits until everything that it began has been done. Throws what the first
    /// failing visit threw; what had not begun by then is not visited any more.
    template <typename Visit>
    void run(const Visit& root) {
        guard(root);
        ++m_idle;  // this thread only waits from here on
        m_pool.waitForDone();
        if (m_error) std::rethrow_exception(m_error);
    }

    /// Calls `visit` with each number from `begin` to before `end`, part of them on other threads
    /// and possibly after this returns: `visit` is copied and has to own what it uses.
    template <typename Visit>
    void forEach(size_t begin, size_t end, const Visit& visit) {
        for (; begin < end && !m_failed; ++begin) {
            if (end - begin >= worthSharing && ++m_visits > visitsBeforeHelp && takeIdle()) {
                const size_t middle = begin + (end - begin) / 2;
                m_pool.start([this, middle, end, visit] {
                    guard([&] { forEach(middle, end, visit); });
                    ++m_idle;
                });
                end = middle;
            }
            visit(begin);
        }
    }

    /// True when there was enough to do for several threads.
    bool isBig() const { return m_visits > visitsBeforeHelp; }

 private:
    // Waking a thread takes as long as several visits, starting one as long as many.
    static constexpr size_t worthSharing = 16;
    static constexpr int visitsBeforeHelp = 64;

    bool takeIdle() {
        int idle = m_idle;
        while (idle > 0)
            if (m_idle.compare_exchange_weak(idle, idle - 1)) return true;
        return false;
    }

    template <typename Visit>
    void guard(const Visit& visit) {
        try {
            visit();
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            if (!m_error) m_error = std::current_exception();
            m_failed = true;
        }
    }

    const int m_cores = std::max(1, QThread::idealThreadCount());
    std::atomic<int> m_idle = m_cores - 1;
    std::atomic<int> m_visits = 0;  // of those that could have been shared
    std::atomic<bool> m_failed = false;
    std::mutex m_mutex;
    std::exception_ptr m_error;
    QThreadPool m_pool;  // last: its threads end before the rest goes
};

}  // namespace tweenery
