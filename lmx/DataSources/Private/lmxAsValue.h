#pragma once

#include <lmx/Climate/lmxSpatialConst.h>

#include <cmath>

namespace lmx {

/// A number that came from a value by a change of units, and must not become a flag: what falls on the number of a flag
/// becomes the single next to it, and what is too large the largest value.
inline float AsValue(float number) {
    if (TSpatialConst::IsValue(number))
        return number;
    const float next = std::nextafter(number, 0.0F);
    return TSpatialConst::IsValue(next) ? next : std::copysign(std::nextafter(1e30F, 0.0F), number);
}

} // namespace lmx
