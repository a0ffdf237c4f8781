#include <atomic>
#include <benchmarks/Allocations.h>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> Count = 0;

} // namespace

std::int64_t lmx::bench::GetAllocationCount() {
    return Count;
}

// NOLINTBEGIN: replaced to count
void* operator new(std::size_t size) {
    ++Count;
    if (void* memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
// NOLINTEND
