#pragma once

#include <cstddef>

// Counts what a program asks of operator new. Only in the programs that CountedMemory.cpp is compiled into.

namespace lmx::tests {

/// What was asked for, in all threads and in all, so that nothing hides behind memory that is given back in between.
struct TTakenMemory {
    long Allocations = 0;
    std::size_t Bytes = 0;
};

/// Since the program began.
TTakenMemory TakenMemory();

template<class Action>
long AllocationsOf(Action&& action) {
    const long before = TakenMemory().Allocations;
    action();
    return TakenMemory().Allocations - before;
}

template<class Action>
std::size_t BytesOf(Action&& action) {
    const std::size_t before = TakenMemory().Bytes;
    action();
    return TakenMemory().Bytes - before;
}

} // namespace lmx::tests
