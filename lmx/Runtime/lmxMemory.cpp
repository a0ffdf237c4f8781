#include <lmx/Runtime/lmxMemory.h>

#include <limits>

#if __has_include(<unistd.h>)
#include <unistd.h>
#endif

namespace lmx {

namespace {

/// Bytes of the machine's memory; the most that a number can say where the system does not tell.
std::uint64_t MachineMemory() {
#if defined(_SC_PHYS_PAGES) && defined(_SC_PAGESIZE)
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages > 0 && pageSize > 0)
        return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
#endif
    return std::numeric_limits<std::uint64_t>::max();
}

} // namespace

void CheckMemory(std::uint64_t bytes) {
    static const std::uint64_t most = MachineMemory();
    if (bytes > most)
        throw EOutOfMemory();
}

} // namespace lmx
