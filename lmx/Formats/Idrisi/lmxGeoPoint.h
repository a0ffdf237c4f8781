#pragma once

namespace lmx {

/// A vertex of a vector file, in the units of its reference system.
struct TGeoPoint {
    float X = 0;
    float Y = 0;

    friend constexpr bool operator==(const TGeoPoint&, const TGeoPoint&) = default;
};

} // namespace lmx
