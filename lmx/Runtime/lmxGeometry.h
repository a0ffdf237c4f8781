#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QPoint>
#include <QRect>
#include <QSize>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace lmx {

/// The nearest 32-bit integer. Points and rectangles from documents may lie anywhere, so sums and differences of their
/// coordinates saturate.
constexpr std::int32_t SaturateToInt32(std::int64_t value) {
    using limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, limits::min(), limits::max()));
}

/// A pixel position. X grows to the right, Y downwards.
struct TPoint {
    std::int32_t X = 0;
    std::int32_t Y = 0;

    constexpr TPoint() = default;
    constexpr TPoint(std::int32_t x, std::int32_t y) : X(x), Y(y) {}
    constexpr explicit TPoint(QPoint point) : X(point.x()), Y(point.y()) {}

    constexpr QPoint ToQPoint() const { return {X, Y}; }
    friend constexpr bool operator==(const TPoint&, const TPoint&) = default;
};

/// A size in pixels.
struct TSize {
    std::int32_t cx = 0;
    std::int32_t cy = 0;

    constexpr TSize() = default;
    constexpr TSize(std::int32_t width, std::int32_t height) : cx(width), cy(height) {}
    constexpr explicit TSize(QSize size) : cx(size.width()), cy(size.height()) {}

    constexpr QSize ToQSize() const { return {cx, cy}; }
    friend constexpr bool operator==(const TSize&, const TSize&) = default;
};

/// A rectangle of pixels: Left and Top inside, Right and Bottom outside. May be inverted; then it is empty.
struct LMX_EXPORT TRect {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Right = 0;
    std::int32_t Bottom = 0;

    constexpr TRect() = default;
    constexpr TRect(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
        : Left(left),
          Top(top),
          Right(right),
          Bottom(bottom) {}
    /// QRect counts its right and bottom inside; here they are outside.
    constexpr explicit TRect(const QRect& rect)
        : Left(rect.left()),
          Top(rect.top()),
          Right(SaturateToInt32(std::int64_t{rect.right()} + 1)),
          Bottom(SaturateToInt32(std::int64_t{rect.bottom()} + 1)) {}

    /// Width and height: negative if inverted.
    constexpr std::int32_t GetWidth() const { return SaturateToInt32(std::int64_t{Right} - Left); }
    constexpr std::int32_t GetHeight() const { return SaturateToInt32(std::int64_t{Bottom} - Top); }
    constexpr void SetWidth(std::int32_t width) { Right = SaturateToInt32(std::int64_t{Left} + width); }
    constexpr void SetHeight(std::int32_t height) { Bottom = SaturateToInt32(std::int64_t{Top} + height); }
    constexpr bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
    constexpr bool Contains(TPoint p) const { return p.X >= Left && p.X < Right && p.Y >= Top && p.Y < Bottom; }

    constexpr QRect ToQRect() const {
        return {QPoint(Left, Top),
                QPoint(SaturateToInt32(std::int64_t{Right} - 1), SaturateToInt32(std::int64_t{Bottom} - 1))};
    }
    friend constexpr bool operator==(const TRect&, const TRect&) = default;
};

} // namespace lmx
