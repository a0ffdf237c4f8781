#pragma once

#include <cstdint>

namespace lmx::bench {

/// How often the program has taken memory from the heap with `new`.
std::int64_t GetAllocationCount();

} // namespace lmx::bench
