#include "storage/temporaries.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

struct State {
    std::atomic<bool> isStopped = false;
    int count = 0;
    std::mutex mutex;
    std::condition_variable gone;
};

// Never destroyed: the thread that removes big packages may outlive main().
State& state() {
    static State& state = *new State;
    return state;
}

}  // namespace

Temporary::Temporary() {
    const std::lock_guard lock(state().mutex);
    requireNotStopped();
    ++state().count;
}

Temporary::~Temporary() {
    const std::lock_guard lock(state().mutex);
    if (--state().count == 0) { state().gone.notify_all(); }
}

void stopTemporaries() {
    const std::lock_guard lock(state().mutex);
    state().isStopped = true;
}

void requireNotStopped() {
    if (state().isStopped) { throw InputError(u"tweenc"_s, u"was interrupted"_s); }
}

bool waitForTemporaries(std::chrono::milliseconds longest) {
    std::unique_lock lock(state().mutex);
    return state().gone.wait_for(lock, longest, [] { return state().count == 0; });
}

}  // namespace tweenery
