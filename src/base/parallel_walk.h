#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "base/spare_core.h"

namespace tweenery {

/// Visits a tree on all cores that are without work (SpareCore): while a thread is idle, it is
/// given half of what a visit has left to do. A walk of few visits starts no thread; where there is
/// none, those that there are do the work. For a list whose length is known, parallelFor() is
/// simpler. One run a walk.
class ParallelWalk {
 public:
    ParallelWalk() { m_helpers.reserve(static_cast<size_t>(m_cores)); }

    /// Calls `root` and returns when everything that it began has been done. Throws what the first
    /// failing visit threw; what had not begun by then is not visited any more.
    template <typename Visit>
    void run(const Visit& root) {
        guard(root);
        becomeIdle();
        help();
        m_helpers.clear();
        if (m_error) { std::rethrow_exception(m_error); }
    }

    /// Calls `visit` with each number from `begin` to before `end`, part of them on other threads
    /// and possibly after this returns: `visit` is copied and has to own what it uses.
    template <typename Visit>
    void forEach(size_t begin, size_t end, const Visit& visit) {
        for (; begin < end && !m_failed; ++begin) {
            if (end - begin >= worthSharing && ++m_visits > visitsBeforeHelp && takeIdle()) {
                const size_t middle = begin + (end - begin) / 2;
                handOver([this, middle, end, visit] { forEach(middle, end, visit); });
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
        while (idle > 0) {
            if (m_idle.compare_exchange_weak(idle, idle - 1)) { return true; }
        }
        return false;
    }

    // Each call follows a takeIdle().
    template <typename Work>
    void handOver(const Work& work) {
        const std::lock_guard lock(m_mutex);
        try {
            m_work.emplace_back(work);
        } catch (...) {
            ++m_idle;
            throw;
        }
        startHelper();
        m_wake.notify_one();
    }

    void startHelper() {
        if (m_helpers.size() + 1 >= static_cast<size_t>(m_cores)) { return; }
        auto core = SpareCore::take();
        if (!core) { return; }
        try {
            m_helpers.emplace_back([this, held = std::move(*core)] { help(); });
        } catch (const std::system_error&) {
            // No more threads: another helper or, in the end, the caller of run() takes the work.
        }
    }

    void becomeIdle() {
        const std::lock_guard lock(m_mutex);
        if (++m_idle == m_cores) { m_wake.notify_all(); }
    }

    // Does what is handed over, until nobody is at work.
    void help() {
        for (;;) {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [this] { return !m_work.empty() || m_idle == m_cores; });
            if (m_work.empty()) { return; }
            std::function<void()> work = std::move(m_work.back());
            m_work.pop_back();
            lock.unlock();
            guard(work);
            work = nullptr;  // what it holds goes before the walk may end
            becomeIdle();
        }
    }

    template <typename Visit>
    void guard(const Visit& visit) {
        try {
            visit();
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            if (!m_error) { m_error = std::current_exception(); }
            m_failed = true;
        }
    }

    const int m_cores = static_cast<int>(SpareCore::all());
    std::atomic<int> m_idle = m_cores - 1;
    std::atomic<int> m_visits = 0;  // of those that could have been shared
    std::atomic<bool> m_failed = false;
    std::mutex m_mutex;
    std::exception_ptr m_error;
    std::vector<std::function<void()>> m_work;  // handed over, not yet begun
    std::condition_variable m_wake;
    std::vector<std::jthread> m_helpers;
};

}  // namespace tweenery
