#pragma once

#include <span>

namespace lmx {

/// A place in a shape file, in the units of its reference system, or in degrees once it has been converted.
struct TShpPoint {
    double X = 0;
    double Y = 0;

    friend constexpr bool operator==(const TShpPoint&, const TShpPoint&) = default;
};

/// A part of a shape: its vertices in order.
using TShpPointArr = std::span<const TShpPoint>;

} // namespace lmx
