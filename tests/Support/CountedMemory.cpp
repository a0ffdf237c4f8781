#include <tests/Support/CountedMemory.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> Allocations = 0;
std::atomic<std::size_t> Bytes = 0;

} // namespace

void* operator new(std::size_t size) {
    ++Allocations;
    Bytes += size;
    if (void* memory = std::malloc(size ? size : 1))
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
