#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cstddef>
#include <span>
#include <vector>

namespace lmx {

using TSingleArray = std::vector<float>;

/// A grid of numbers: its rows, each of the same length.
using TSingleGrid = std::vector<TSingleArray>;

/// Whether a grid has `rows` rows of `cols` numbers each.
LMX_EXPORT bool HasShape(const TSingleGrid& grid, std::size_t cols, std::size_t rows);

/// A flat array as `rows` rows of `cols` numbers.
/// @throws EArgumentException "Data" if the array has another length; EOutOfMemory.
LMX_EXPORT TSingleGrid SingleArray1DTo2D(std::span<const float> data, std::size_t cols, std::size_t rows);

/// The array in reverse order.
LMX_EXPORT TSingleArray SingleArrayReverse(TSingleArray array);

/// The grid with its rows in reverse order.
LMX_EXPORT TSingleGrid SingleArrayArrayReverse(TSingleGrid grid);

/// Range of the numbers that differ from `flag`; a NaN is none of them, other flags and the infinities are. False if
/// there are none; `min` and `max` are unchanged then.
LMX_EXPORT bool SingleArrayArrayGetMinMax(const TSingleGrid& grid, float flag, float& min, float& max);

} // namespace lmx
