#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <cmath>

namespace lmx {

/// Tells values from flags (marks of missing data). One rule for the whole library.
struct LMX_EXPORT TSpatialConst {
    /// NaN, the infinities, magnitudes of 1e30 and more, and exactly -9990 and -9999. Deep sea (-10376 m) is a value.
    static bool IsFlag(float number) noexcept {
        return !(std::abs(number) < 1e30F) || number == -9990.0F || number == -9999.0F;
    }
    static bool IsValue(float number) noexcept { return !IsFlag(number); }

    static constexpr float NoData = -9990.0F; ///< the number that stands for missing data inside the library
};

} // namespace lmx
