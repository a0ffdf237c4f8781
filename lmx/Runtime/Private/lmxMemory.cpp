#include <lmx/Runtime/Private/lmxMemory.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#if __has_include(<unistd.h>)
#include <unistd.h>
#endif
#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

namespace lmx {

namespace {

/// The most bytes that one piece may have: those of the machine's memory, where the system tells.
std::uint64_t MostMemory() {
    const auto addressable = static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max());
#if defined(_SC_PHYS_PAGES) && defined(_SC_PAGESIZE)
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages > 0 && pageSize > 0)
        return std::min(addressable, static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize));
#endif
    return addressable;
}

} // namespace

void NeedMemory(std::uint64_t bytes) {
    static const std::uint64_t most = MostMemory();
    if (bytes > most)
        throw EOutOfMemory();
    void* volatile const piece = std::malloc(static_cast<std::size_t>(bytes)); // volatile, or compilers leave it out
    if (!piece && bytes > 0)
        throw EOutOfMemory();
    std::free(piece);
}

void PreferLargePages(void* memory, std::uint64_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr std::uintptr_t Page = 2 << 20;
    const auto start = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (start + Page - 1) & ~(Page - 1);
    const std::uintptr_t end = (start + bytes) & ~(Page - 1);
    if (end > first) // a system that has none says so, and goes on with small ones
        madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#else
    static_cast<void>(memory);
    static_cast<void>(bytes);
#endif
}

} // namespace lmx
