#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace lmx {

/// Both ends inside.
struct TSingleRange {
    float Min;
    float Max;

    bool Contains(float value) const { return Min <= value && value <= Max; }
};

/// Finds, among ranges that may overlap, the first one of the list that contains a value. Made in the time of sorting
/// the ranges; a value is found by halving.
class TRangeIndex {
public:
    /// Ranges that are turned over, or that have an end that is no number, contain nothing.
    explicit TRangeIndex(std::span<const TSingleRange> ranges);

    static constexpr std::uint32_t None = std::numeric_limits<std::uint32_t>::max();

    /// Index of the first range in list order that contains the value, or None: in a gap, and for what is no number.
    std::uint32_t Find(float value) const;

    // The stretches that one range has, or none: from each start to the next one.
    const std::vector<float>& GetStarts() const { return FStarts; }         ///< ascending, the first minus infinity
    const std::vector<std::uint32_t>& GetOwners() const { return FOwners; } ///< one for each start; neighbours differ

private:
    std::vector<float> FStarts;
    std::vector<std::uint32_t> FOwners;
};

} // namespace lmx
