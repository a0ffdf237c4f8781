#include <tests/Support/CountedMemory.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> Allocations = 0;
std::atomic<std::size_t> Bytes = 0;

} // namespace

// Both forms, so that what one of them gave is freed below by its like: address sanitizers look at that.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++Allocations;
    Bytes += size;
    return std::malloc(size ? size : 1);
}
void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace lmx::tests {

TTakenMemory TakenMemory() {
    return {Allocations, Bytes};
}

} // namespace lmx::tests
