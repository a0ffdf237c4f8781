#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <cstddef>
#include <span>

namespace lmx {

/// Finds the colours of many values at once; made for one opacity.
class TColorTable {
public:
    TColorTable() = default;
    TColorTable(const TColorTable&) = delete;
    TColorTable& operator=(const TColorTable&) = delete;
    virtual ~TColorTable() = default;

    /// Most values of one call of GetColors.
    static constexpr std::size_t BlockSize = 256;

    /// Writes the colour of each value; any float is a value here. `colors` holds as many places. Meanwhile the
    /// `next` values, as many at most, may be brought near: looking up leaves the memory idle that they come from.
    virtual void GetColors(std::span<const float> values, TColor32* colors, std::span<const float> next = {}) const = 0;
};

} // namespace lmx
