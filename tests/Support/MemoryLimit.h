#pragma once

#include <cstddef>
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

namespace lmx::tests {

/// Whether the tools that a program is built with take address space of their own, so that it cannot be limited.
#ifdef LMX_SANITIZED
inline constexpr bool CanLimitMemory = false;
#else
inline constexpr bool CanLimitMemory = true;
#endif

/// Until the end of the scope the program gets no more than `bytes` of new memory: what a full machine looks like.
class TMemoryLimit {
public:
    explicit TMemoryLimit(std::size_t bytes) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &FLimit);
        const rlimit limit = {pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + bytes, FLimit.rlim_max};
        setrlimit(RLIMIT_AS, &limit);
    }
    TMemoryLimit(const TMemoryLimit&) = delete;
    TMemoryLimit& operator=(const TMemoryLimit&) = delete;
    ~TMemoryLimit() { setrlimit(RLIMIT_AS, &FLimit); }

private:
    rlimit FLimit = {};
};

} // namespace lmx::tests
