#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace lmx {

/// The 80-bit float of map coordinates: 64 bits of mantissa.
using extended = long double;
static_assert(std::numeric_limits<extended>::digits >= 64, "map coordinates need a 64-bit mantissa");

/// Nearest integer, ties to even.
/// @throws EInvalidOp if `value` is no number or lies outside 64 bits.
LMX_EXPORT std::int64_t Round(extended value);

/// Largest integer that is not above `value`.
/// @throws EInvalidOp if `value` is no number or lies outside 64 bits.
LMX_EXPORT std::int64_t Floor(extended value);

/// Smallest integer that is not below `value`.
/// @throws EInvalidOp if `value` is no number or lies outside 64 bits.
LMX_EXPORT std::int64_t Ceil(extended value);

/// Magnitude at which pixel positions saturate: 2^29.
inline constexpr std::int32_t PixelLimit = 1 << 29;

/// Nearest integer, ties to even, kept within ±PixelLimit; a value that is no number gives 0.
LMX_EXPORT std::int32_t RoundToPixel(extended value) noexcept;

/// Whether two numbers are the same within a tolerance. With `epsilon` 0 the tolerance is R times the smaller
/// magnitude, at least R, where R is 1e-16 for extended, 1e-12 for double and 1e-4 for single operands.
/// NaN equals nothing, and neither do two infinities.
LMX_EXPORT bool SameValue(extended a, extended b, extended epsilon = 0) noexcept;
LMX_EXPORT bool SameValue(double a, double b, double epsilon = 0) noexcept;
LMX_EXPORT bool SameValue(float a, float b, float epsilon = 0) noexcept;

/// Whether |a| is at most the R of SameValue.
LMX_EXPORT bool IsZero(extended a) noexcept;

} // namespace lmx
