#include "base/spare_core.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace tweenery {
namespace {

std::atomic<size_t>& spareCores() {
    static std::atomic<size_t> spare = SpareCore::all() - 1;
    return spare;
}

}  // namespace

size_t SpareCore::all() {
    static const size_t cores = std::max(1U, std::thread::hardware_concurrency());
    return cores;
}

std::optional<SpareCore> SpareCore::take() {
    size_t spare = spareCores();
    while (spare > 0) {
        if (spareCores().compare_exchange_weak(spare, spare - 1)) { return SpareCore(); }
    }
    return std::nullopt;
}

SpareCore::~SpareCore() {
    if (m_isHeld) { ++spareCores(); }
}

}  // namespace tweenery
