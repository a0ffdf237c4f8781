#pragma once

#include <cstdint>
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

namespace lmx::tests {

/// Until the end of the scope the program gets no more than `bytes` on top of what it has: a machine with little
/// memory.
class TAddressSpaceLimit {
public:
    explicit TAddressSpaceLimit(std::uint64_t bytes) {
        getrlimit(RLIMIT_AS, &FLimit);
        const rlimit limit = {static_cast<rlim_t>(PresentBytes() + bytes), FLimit.rlim_max};
        setrlimit(RLIMIT_AS, &limit);
    }
    TAddressSpaceLimit(const TAddressSpaceLimit&) = delete;
    TAddressSpaceLimit& operator=(const TAddressSpaceLimit&) = delete;
    ~TAddressSpaceLimit() { setrlimit(RLIMIT_AS, &FLimit); }

private:
    static std::uint64_t PresentBytes() {
        std::uint64_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    }

    rlimit FLimit = {};
};

} // namespace lmx::tests
