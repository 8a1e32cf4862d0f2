#include "platform/thread_team.h"

#include <QThread>
#include <algorithm>
#include <system_error>

namespace tweenery {

ThreadTeam::ThreadTeam(int threads) {
    if (threads <= 0) threads = std::max(1, QThread::idealThreadCount());
    try {
        for (int worker = 1; worker < threads; ++worker) {
            m_helpers.emplace_back([this, worker] { help(worker); });
        }
    } catch (const std::system_error&) {
        // The system gives no more threads: those that are there do the work.
    }
}

ThreadTeam::~ThreadTeam() {
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
    }
    m_workCame.notify_all();
    for (std::thread& helper : m_helpers) {
        helper.join();
    }
}

void ThreadTeam::run(size_t pieces, const std::function<void(size_t, int)>& task) {
    std::unique_lock lock(m_mutex);
    m_task = &task;
    m_next = 0;
    m_pieces = pieces;
    if (pieces > 1) m_workCame.notify_all();
    work(lock, 0);
    m_workEnded.wait(lock, [this] { return m_running == 0; });
}

void ThreadTeam::help(int worker) {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_workCame.wait(lock, [this] { return m_ends || m_next < m_pieces; });
        if (m_ends) return;
        work(lock, worker);
        if (m_running == 0) m_workEnded.notify_one();
    }
}

// A piece takes far longer than the lock, so that a counter under it is fast enough.
void ThreadTeam::work(std::unique_lock<std::mutex>& lock, int worker) {
    while (m_next < m_pieces) {
        const size_t piece = m_next++;
        ++m_running;
        lock.unlock();
        (*m_task)(piece, worker);
        lock.lock();
        --m_running;
    }
}

}  // namespace tweenery
