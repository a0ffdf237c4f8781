#pragma once

namespace lmx {

/// A place in a shape file, in the units of its reference system, or in degrees once it has been converted.
struct TShpPoint {
    double X = 0;
    double Y = 0;

    friend constexpr bool operator==(const TShpPoint&, const TShpPoint&) = default;
};

} // namespace lmx
