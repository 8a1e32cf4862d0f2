#pragma once

#include <QThread>
#include <QThreadPool>
#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>

namespace tweenery {

/// Visits a tree on all cores: a visit hands subtrees to idle threads and visits the others itself.
/// A walk of few subtrees starts no thread.
class ParallelWalk {
 public:
    ParallelWalk() { m_pool.setMaxThreadCount(std::max(1, m_cores - 1)); }

    /// Calls `root` and waits until everything that it shared has been visited. Throws what the
    /// first failing visit threw; what had not begun by then is not visited any more.
    template <typename Visit>
    void run(const Visit& root) {
        guard(root);
        m_pool.setMaxThreadCount(m_cores);  // this thread only waits from here on
        m_pool.waitForDone();
        if (m_error) std::rethrow_exception(m_error);
    }

    /// Calls `visit`, which is copied, on an idle thread if there is one, else at once.
    template <typename Visit>
    void share(const Visit& visit) {
        if (m_failed) return;
        if (!wantsHelp() || !m_pool.tryStart([this, visit] { guard(visit); })) visit();
    }

 private:
    static constexpr int visitsBeforeHelp = 64;  // as long as starting a thread takes

    bool wantsHelp() { return m_cores > 1 && ++m_visits > visitsBeforeHelp; }

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

    const int m_cores = QThread::idealThreadCount();
    std::atomic<int> m_visits = 0;
    std::atomic<bool> m_failed = false;
    std::mutex m_mutex;
    std::exception_ptr m_error;
    QThreadPool m_pool;  // last: its threads end before the rest goes
};

}  // namespace tweenery
