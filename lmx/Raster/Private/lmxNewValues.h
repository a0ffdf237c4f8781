#pragma once

#include <lmx/Runtime/Private/lmxMemory.h>

#include <cstdint>
#include <vector>

namespace lmx {

/// So many equal values.
/// @throws EOutOfMemory if there is no room for them.
template<class Value>
std::vector<Value> NewValues(std::uint64_t count, Value value = Value()) {
    NeedMemoryFor<Value>(count);
    return WithinMemory([count, value] { return std::vector<Value>(count, value); });
}

} // namespace lmx
