#pragma once

#include <cstddef>
#include <functional>

namespace tweenery {

/// Some threads of QThreadPool::globalInstance(), for short pieces of work such as the strips of a
/// frame. The raster engine hands parts of larger fills to that pool and waits for them, unless the
/// thread that paints is one of the pool's: on these, frames of many small images are fastest.
class ThreadTeam {
 public:
    /// `threads` is how many threads of the pool work at most, 0 one for each core; fewer while
    /// cores have other work (SpareCore).
    explicit ThreadTeam(int threads = 0);

    /// Those threads and the caller.
    int workers() const { return m_threads + 1; }

    /// Calls `task(piece, worker)` for each piece from 0 to before `pieces`, and returns when all
    /// are done. `worker` counts from 0 to before workers(): no two calls with the same one run at
    /// a time. A piece must not throw. The caller works along when it is a thread of the pool, and
    /// otherwise only when the pool does not begin: it may be busy, or the system gives no threads.
    void run(size_t pieces, const std::function<void(size_t piece, int worker)>& task) const;

 private:
    int m_threads;
};

}  // namespace tweenery
