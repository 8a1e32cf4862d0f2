#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tweenery {

/// Threads that stay ready for short pieces of work, such as the strips of a frame. The caller
/// works along.
class ThreadTeam {
 public:
    /// `threads` counts the caller; 0 means one for each core.
    explicit ThreadTeam(int threads = 0);
    ~ThreadTeam();
    ThreadTeam(const ThreadTeam&) = delete;
    ThreadTeam& operator=(const ThreadTeam&) = delete;

    int threads() const { return static_cast<int>(m_helpers.size()) + 1; }

    /// Calls `task(piece, worker)` for each piece from 0 to before `pieces`, and returns when all
    /// are done. `worker` counts from 0 to before threads(): no two calls with the same one run at
    /// a time. A piece must not throw. One run at a time.
    void run(size_t pieces, const std::function<void(size_t piece, int worker)>& task);

 private:
    void help(int worker);
    void work(std::unique_lock<std::mutex>& lock, int worker);

    std::mutex m_mutex;
    std::condition_variable m_workCame;
    std::condition_variable m_workEnded;
    const std::function<void(size_t, int)>* m_task = nullptr;
    size_t m_next = 0;
    size_t m_pieces = 0;
    size_t m_running = 0;
    bool m_ends = false;
    std::vector<std::thread> m_helpers;
};

}  // namespace tweenery
