#pragma once

#include <cstring>

namespace tweenery {

/// The word that lies at `bytes`, which need not be aligned, in this machine's byte order.
template <typename Word>
Word wordAt(const char* bytes) {
    Word word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

}  // namespace tweenery
