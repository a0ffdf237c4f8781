#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Shapes/lmxShpPoint.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

namespace lmx {

/// Turns very many map coordinates into pixels of one snapshot. By definition the result is
/// `viewport.MapPointToPoint(point).ToPoint()`. It is computed in doubles wherever their error cannot change the
/// rounded pixel, and by the definition where a coordinate lies within a hair of a tie.
/// Make a new one when the world system changes: what converts meanwhile is of no use. Any thread.
class TPixelConverter {
public:
    /// Every position is taken as one that lies `shift` map units further east.
    /// @throws ENotImplemented with the messages of TWorldViewport::MapPointToPoint, EInvalidOperation "World system is
    /// nil".
    explicit TPixelConverter(const TWorldViewportLocal& viewport, extended shift = 0);

    /// The nearest pixel of a map position whose coordinates are finite. However far it lies outside, nothing
    /// overflows: it saturates as ToPoint does.
    TPoint ToPixel(const TMapPoint& point) const {
        const double x = static_cast<double>(point.X - FLeft);
        const double y = static_cast<double>(FTop - point.Y);
        TPoint pixel;
        return TryRound(x * FScale + FTranslateX, pixel.X) && TryRound(y * FScale + FTranslateY, pixel.Y)
                   ? pixel
                   : ToPixelByDefinition(point);
    }
    TPoint ToPixel(double x, double y) const {
        TPoint pixel;
        return TryRound((x - FLeftDouble) * FScale + FTranslateX, pixel.X) &&
                       TryRound((FTopDouble - y) * FScale + FTranslateY, pixel.Y)
                   ? pixel
                   : ToPixelByDefinition({x, y});
    }

    /// The same for many positions; `pixels` has room for as many.
    void ToPixels(std::span<const TShpPoint> points, TPoint* pixels) const;

    /// What a bitmap of `size` pixels at the origin can show of the map: of positions that all lie on the same side of
    /// it, none has a pixel inside, nor has a line between two of them. Left <= Right and Bottom <= Top.
    TMapArea GetReach(TSize size) const;

private:
    // |position| < 2^30 leaves an error below 2^-19 pixels: three roundings of a product below 2^32, one of the sum,
    // and the definition's own. From 2^30 on every pixel saturates.
    static constexpr double Hair = 0x1p-18;
    static constexpr double Saturated = 0x1p30;
    static constexpr double RoundingShift = 0x1.8p52;

    // Nearest integer; false if it is uncertain.
    bool TryRound(double position, std::int32_t& pixel) const {
        const double near = std::min(std::max(position, -Saturated), Saturated);
        const double nearest = near + RoundingShift - RoundingShift;
        pixel = static_cast<std::int32_t>(std::min<double>(std::max<double>(nearest, -PixelLimit), PixelLimit));
        return std::abs(near - nearest) < FCertainRest;
    }
    TPoint ToPixelByDefinition(const TMapPoint& point) const;

    TWorldViewportLocal FViewport;
    extended FShift;
    extended FLeft;
    extended FTop;
    double FLeftDouble;
    double FTopDouble;
    double FScale;
    double FCertainRest; // rounding by less than this is certain; negative if nothing is
    double FTranslateX;
    double FTranslateY;
};

} // namespace lmx
