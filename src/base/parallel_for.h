#pragma once

#include <cstddef>
#include <functional>

namespace tweenery {

/// Calls `body` once for each index from 0 to `count`, on all cores that are without work
/// (SpareCore); returns when all are done.
/// When calls throw, the exception of the lowest index that threw comes out, and indices not yet
/// begun may be left out.
void parallelFor(size_t count, const std::function<void(size_t)>& body);

}  // namespace tweenery
