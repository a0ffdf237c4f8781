#pragma once

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>
#include <new>
#include <stdexcept>
#include <utility>

namespace lmx {

/// Raises if the machine could not hold that many bytes at all, even if it did nothing else. A system may promise more
/// than it has and end the program that uses the promise, so asking it for the memory is no test.
/// @throws EOutOfMemory
LMX_EXPORT void CheckMemory(std::uint64_t bytes);

/// Returns what `make` returns. What the standard library raises for want of memory becomes EOutOfMemory.
template<class Make>
decltype(auto) OrOutOfMemory(Make&& make) {
    try {
        return std::forward<Make>(make)();
    } catch (const std::bad_alloc&) {
        throw EOutOfMemory();
    } catch (const std::length_error&) {
        throw EOutOfMemory();
    }
}

} // namespace lmx
