#pragma once

#include <cstddef>

namespace tweenery {

/// Throws InputError when that many bytes are too many for the results of one package.
void requireFitForOutput(size_t bytes);

}  // namespace tweenery
