#pragma once

#include <lmx/Runtime/lmxGeometry.h>

#include <cstdint>

namespace lmx {

/// A rectangle of pixels whose sides need more than 32 bits, as those of a raster at a large scale do.
/// Left and Top inside, Right and Bottom outside. May be inverted; then it is empty.
struct TWideRect {
    std::int64_t Left = 0;
    std::int64_t Top = 0;
    std::int64_t Right = 0;
    std::int64_t Bottom = 0;

    constexpr TWideRect() = default;
    constexpr TWideRect(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom)
        : Left(left),
          Top(top),
          Right(right),
          Bottom(bottom) {}
    constexpr explicit TWideRect(const TRect& rect) : TWideRect(rect.Left, rect.Top, rect.Right, rect.Bottom) {}

    constexpr bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
    friend constexpr bool operator==(const TWideRect&, const TWideRect&) = default;
};

} // namespace lmx
