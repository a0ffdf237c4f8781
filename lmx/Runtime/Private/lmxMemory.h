#pragma once

#include <lmx/Runtime/lmxExceptions.h>

#include <QString>

#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>

// What becomes of a lack of memory: an exception of ours, raised before work where the size is known.

namespace lmx {

/// Whether a size has a chance at all: asks the system for so much memory in one piece and gives it back untouched,
/// which takes no time. A system may promise more than it has and end the program that uses the promise, so what is
/// more than the whole machine has is refused unasked.
/// @throws EOutOfMemory if it has none.
void NeedMemory(std::uint64_t bytes);

/// The same for `count` values.
template<class Value>
void NeedMemoryFor(std::uint64_t count) {
    if (count > std::numeric_limits<std::uint64_t>::max() / sizeof(Value))
        throw EOutOfMemory();
    NeedMemory(count * sizeof(Value));
}

/// Asks the system for large pages behind memory that has not been written to yet: megabytes that are written from one
/// end to the other then arrive in a few steps. Changes nothing else, and does nothing for small pieces.
void PreferLargePages(void* memory, std::uint64_t bytes);

/// What `action` gives. It must leave everything as it was when it runs out of memory.
/// @throws EOutOfMemory for the exceptions of the standard library that mean a lack of memory.
template<class Action>
decltype(auto) WithinMemory(Action&& action) {
    try {
        return action();
    } catch (const std::bad_alloc&) {
        throw EOutOfMemory();
    } catch (const std::length_error&) {
        throw EOutOfMemory();
    }
}

/// The same for an action that reads a file.
/// @throws EFileException "...: does not fit into memory".
template<class Action>
decltype(auto) WithinMemory(const QString& fileName, Action&& action) {
    try {
        return WithinMemory(action);
    } catch (const EOutOfMemory&) {
        throw EFileException(fileName, QStringLiteral("does not fit into memory"));
    }
}

} // namespace lmx
