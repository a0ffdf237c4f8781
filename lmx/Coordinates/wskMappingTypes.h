#pragma once

#include <lmx/Formats/Idrisi/lmxGeoPoint.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <algorithm>
#include <cstdint>

// Value records of map coordinates. A map coordinate is in the unit of its world system (degrees, or metres on a grid);
// X grows to the east and Y to the north. The same records hold pixel positions with their fraction, where Y grows
// downwards.

namespace lmx {

/// The meridian that the centre of a world system lies on; mrdNA if it has none.
enum class TMeridian { mrdPrimeMeridian, mrdAntiMeridian, mrdNA };

/// Sign of each map axis against its screen axis: 1 if both grow the same way, -1 if they do not.
struct TMapOrientation {
    std::int32_t X = 0;
    std::int32_t Y = 0;

    friend constexpr bool operator==(const TMapOrientation&, const TMapOrientation&) = default;
};

/// A map position, or a pixel position that keeps its fraction.
struct LMX_EXPORT TMapPoint {
    extended X = 0;
    extended Y = 0;

    constexpr TMapPoint() = default;
    constexpr TMapPoint(extended x, extended y) : X(x), Y(y) {}
    constexpr explicit TMapPoint(TPoint point) : X(point.X), Y(point.Y) {}
    constexpr explicit TMapPoint(const TGeoPoint& point) : X(point.X), Y(point.Y) {}
    /// Two numbers joined by a comma, in the format settings; white space around each is skipped.
    /// @throws EArgumentException "Invalid MapPoint string".
    explicit TMapPoint(const QString& text, const TFormatSettings& settings = TFormatSettings::Current());

    /// Whether both coordinates are the same within the tolerance of SameValue.
    bool Equals(const TMapPoint& other) const noexcept { return SameValue(X, other.X) && SameValue(Y, other.Y); }
    friend bool operator==(const TMapPoint& a, const TMapPoint& b) noexcept { return a.Equals(b); }

    constexpr void Offset(extended dx, extended dy) {
        X += dx;
        Y += dy;
    }

    /// The nearest pixel, ties to even. Beyond ±PixelLimit it saturates, and a coordinate that is no number gives 0.
    TPoint ToPoint() const noexcept { return {RoundToPixel(X), RoundToPixel(Y)}; }

    /// "X, Y" with three decimals; without the blank if `withSpace` is false.
    QString ToString(bool withSpace = true, const TFormatSettings& settings = TFormatSettings::Current()) const;
};

/// An extent in map units or pixels.
struct TMapSize {
    extended Width = 0;
    extended Height = 0;

    constexpr TMapSize() = default;
    constexpr TMapSize(extended width, extended height) : Width(width), Height(height) {}

    friend constexpr bool operator==(const TMapSize&, const TMapSize&) = default;
};

/// A rectangle of map coordinates: Top is its northern edge, so normally Top > Bottom and Left < Right. Inverted edges
/// are legal: width, height, centre and Contains do not care which edge is which. The translation is a drawing offset
/// in map units, which only the GetTranslated... accessors and Equals look at.
struct LMX_EXPORT TMapArea {
    extended Left = 0;
    extended Top = 0;
    extended Right = 0;
    extended Bottom = 0;
    extended XTranslate = 0;
    extended YTranslate = 0;

    constexpr TMapArea() = default;
    constexpr TMapArea(extended left, extended top, extended right, extended bottom)
        : Left(left),
          Top(top),
          Right(right),
          Bottom(bottom) {}
    constexpr TMapArea(const TMapPoint& topLeft, const TMapPoint& bottomRight)
        : TMapArea(topLeft.X, topLeft.Y, bottomRight.X, bottomRight.Y) {}
    /// Left, Top, Right and Bottom joined by commas, in the format settings; white space around each is skipped. Each
    /// number passes through a 32-bit float, so it arrives with single precision only.
    /// @throws EArgumentException "Invalid MapArea string".
    explicit TMapArea(const QString& text, const TFormatSettings& settings = TFormatSettings::Current());

    /// Whether the point lies in the area, all four edges included.
    constexpr bool Contains(const TMapPoint& p) const {
        return p.X >= std::min(Left, Right) && p.X <= std::max(Left, Right) && p.Y >= std::min(Bottom, Top) &&
               p.Y <= std::max(Bottom, Top);
    }
    /// Whether the edges and the translation are the same within the tolerance of SameValue.
    bool Equals(const TMapArea& other) const noexcept;
    friend bool operator==(const TMapArea& a, const TMapArea& b) noexcept { return a.Equals(b); }

    constexpr extended GetWidth() const { return std::max(Left, Right) - std::min(Left, Right); }  ///< never negative
    constexpr extended GetHeight() const { return std::max(Top, Bottom) - std::min(Top, Bottom); } ///< never negative
    constexpr TMapPoint GetCenter() const {
        return {std::min(Left, Right) + GetWidth() / 2, std::min(Bottom, Top) + GetHeight() / 2};
    }
    constexpr TMapPoint GetTopLeft() const { return {Left, Top}; }
    constexpr TMapPoint GetBottomRight() const { return {Right, Bottom}; }
    constexpr extended GetNorth() const { return Top; }
    constexpr extended GetSouth() const { return Bottom; }
    constexpr extended GetEast() const { return Right; }
    constexpr extended GetWest() const { return Left; }

    constexpr extended GetTranslatedLeft() const { return Left + XTranslate; }
    constexpr extended GetTranslatedTop() const { return Top + YTranslate; }
    constexpr extended GetTranslatedRight() const { return Right + XTranslate; }
    constexpr extended GetTranslatedBottom() const { return Bottom + YTranslate; }
    constexpr TMapPoint GetTranslatedTopLeft() const { return {GetTranslatedLeft(), GetTranslatedTop()}; }
    constexpr TMapPoint GetTranslatedBottomRight() const { return {GetTranslatedRight(), GetTranslatedBottom()}; }

    // None of the setters touches the translation.
    constexpr void SetTopLeft(const TMapPoint& point) {
        Left = point.X;
        Top = point.Y;
    }
    constexpr void SetBottomRight(const TMapPoint& point) {
        Right = point.X;
        Bottom = point.Y;
    }
    constexpr void SetNorth(extended value) { Top = value; }
    constexpr void SetSouth(extended value) { Bottom = value; }
    constexpr void SetEast(extended value) { Right = value; }
    /// Moves the eastern edge, as SetEast does; Left stays. Callers rely on it (docs/oddities.md).
    constexpr void SetWest(extended value) { Right = value; }
    constexpr void SetWidth(extended width) { Right = Left + width; }
    /// Bottom becomes Top + height: meant for pixel rectangles, it turns an area of map coordinates over.
    constexpr void SetHeight(extended height) { Bottom = Top + height; }

    constexpr void Offset(const TMapPoint& delta) {
        Left += delta.X;
        Right += delta.X;
        Top += delta.Y;
        Bottom += delta.Y;
    }
    constexpr void Offset(TPoint delta) { Offset(TMapPoint(delta)); }

    /// The nearest pixel edges, ties to even. Beyond ±PixelLimit they saturate; an edge that is no number gives 0.
    TRect ToRect() const noexcept {
        return {RoundToPixel(Left), RoundToPixel(Top), RoundToPixel(Right), RoundToPixel(Bottom)};
    }

    /// "Left,Top,Right,Bottom" with six decimals.
    QString ToString(const TFormatSettings& settings = TFormatSettings::Current()) const;
};

} // namespace lmx
