#pragma once

#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <cmath>
#include <limits>

// Where a value lies in the range of a gradient calculator. These rules are the definition; faster ways to the same
// numbers are measured against them.

namespace lmx {

/// Whether the ends of a range are the same value or differ in their last bits only. Relative, so that a flux from 0
/// to 5e-5 is a range like any other. An infinite end is the same as itself only, NaN as nothing.
inline bool IsCollapsedRange(float min, float max) {
    constexpr extended Tolerance = 4 * std::numeric_limits<float>::epsilon();
    if (min == max)
        return true;
    const extended larger = std::max(std::abs(min), std::abs(max));
    return std::abs(static_cast<extended>(min) - max) <= Tolerance * larger && std::isfinite(larger);
}

/// (value - min) / (max - min) in extended arithmetic, rounded to a 32-bit float. May be no number.
inline float GradientPosition(float value, float min, float max) {
    const extended distance = static_cast<extended>(value) - min;
    return static_cast<float>(distance / (static_cast<extended>(max) - min));
}

} // namespace lmx
