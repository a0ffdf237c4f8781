#pragma once

#include <atomic>
#include <cstdint>

namespace lmx {

/// Counts how often any gradient calculator of this library got another end of its range: whoever keeps something made
/// of many ranges looks them through only after such a change.
class TRangeChanges {
public:
    static std::uint64_t GetCount() { return FCount.load(std::memory_order_relaxed); }
    static void Add() { FCount.fetch_add(1, std::memory_order_relaxed); }

private:
    static inline std::atomic<std::uint64_t> FCount = 0;
};

} // namespace lmx
