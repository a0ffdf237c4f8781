#pragma once

#include <cstddef>
#include <span>

namespace lmx {

/// How many of some ascending starts a value has reached: those at or below it. None for what is no number. Halves
/// without branches, which a processor would guess wrong at every other step.
template<class T>
std::size_t CountReached(std::span<const T> starts, T value) {
    const T* base = starts.data();
    std::size_t count = starts.size();
    while (count > 1) {
        const std::size_t half = count / 2;
        base += base[half - 1] <= value ? half : 0;
        count -= half;
    }
    return static_cast<std::size_t>(base - starts.data()) + (count == 1 && *base <= value ? 1 : 0);
}

} // namespace lmx
