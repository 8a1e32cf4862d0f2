#include "base/parallel_for.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "base/spare_core.h"

namespace tweenery {

void parallelFor(size_t count, const std::function<void(size_t)>& body) {
    std::atomic<size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    size_t failedIndex = count;
    const auto work = [&] {
        for (size_t i = next++; i < count; i = next++) {
            try {
                body(i);
            } catch (...) {
                const std::lock_guard lock(mutex);
                if (i < failedIndex) {
                    failedIndex = i;
                    failure = std::current_exception();
                }
                next = count;
            }
        }
    };
    std::vector<std::jthread> helpers;
    try {
        for (size_t i = 1; i < count; ++i) {
            auto core = SpareCore::take();
            if (!core) { break; }
            helpers.emplace_back([&work, held = std::move(*core)] { work(); });
        }
    } catch (const std::system_error&) {
        // The system gives no more threads: those that there are do the work.
    }
    work();
    helpers.clear();
    if (failure) { std::rethrow_exception(failure); }
}

}  // namespace tweenery
