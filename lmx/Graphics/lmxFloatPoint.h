#pragma once

namespace lmx {

/// A pixel position with a fraction. X grows to the right, Y downwards.
struct TFloatPoint {
    double X = 0;
    double Y = 0;

    friend constexpr bool operator==(const TFloatPoint&, const TFloatPoint&) = default;
};

} // namespace lmx
