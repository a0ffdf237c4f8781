#pragma once

#include <QStringView>

#include <cstdint>
#include <memory>

namespace lmx {

class IBaseColorCalculator;
class TBitmap32;

/// The numbers of a raster. Columns and rows count from 0, row 0 in the north.
class IMapData {
public:
    virtual ~IMapData() = default;

    /// Number of a cell inside the raster; the position is not checked.
    virtual float GetMapCell(std::int32_t x, std::int32_t y) const = 0;
    virtual std::int32_t GetWidth() const = 0;
    virtual std::int32_t GetHeight() const = 0;
};

/// Says which cells of a raster hold data.
class ICookieData {
public:
    virtual ~ICookieData() = default;

    /// 1 for a cell with data; any other number for one without. The position is not checked.
    virtual std::uint8_t GetCookieCell(std::int32_t x, std::int32_t y) const = 0;
    virtual std::int32_t GetWidth() const = 0;
    virtual std::int32_t GetHeight() const = 0;
};

/// Makes a picture of a raster, one pixel for each cell.
///
/// A cell whose cookie is not 1 becomes 0, fully transparent, and neither its number nor the calculator is asked.
/// Every other cell gets the calculator's colour with its alpha scaled by the opacity: below 0 or no number counts as
/// 0, above 1 as 1. Pixels are written, never blended.
class IRasterRenderer {
public:
    virtual ~IRasterRenderer() = default;

    /// A new picture of the cookie's size, with draw mode dmBlend.
    /// @throws EArgumentException "Cookie or data is null", "ColorCalc is null" or "Cookie and data size does not
    /// match", in this order; and what the calculator raises.
    virtual std::unique_ptr<TBitmap32> Render(const ICookieData* cookie, const IMapData* data, float opacity,
                                              const IBaseColorCalculator* colorCalc) const = 0;

    /// Draws over all of an existing picture. What the calculator raises leaves it as it was from that cell on.
    /// @throws EArgumentException as above, then "Image is null", then "Cookie and Image size does not match".
    virtual void Render(const ICookieData* cookie, const IMapData* data, float opacity,
                        const IBaseColorCalculator* colorCalc, TBitmap32* image) const = 0;
};

/// The renderer of TBitmap32 pictures; it has no state. Calculators and map data of this library work in whole rows
/// here; any other calculator is asked once for each cell with data, row by row from the top and from left to right.
class TBitmap32RasterRenderer final : public IRasterRenderer {
public:
    /// Message for a picture of another class. The signature of Render rules it out; renderers that take their picture
    /// untyped use it.
    static constexpr QStringView WrongImageType = u"Bitmap32RasterRenderer requires images of type TBitmap32";

    std::unique_ptr<TBitmap32> Render(const ICookieData* cookie, const IMapData* data, float opacity,
                                      const IBaseColorCalculator* colorCalc) const override;
    void Render(const ICookieData* cookie, const IMapData* data, float opacity, const IBaseColorCalculator* colorCalc,
                TBitmap32* image) const override;
};

class TBitmap32RasterRendererFactory {
public:
    static std::shared_ptr<IRasterRenderer> GetObject();
};

} // namespace lmx
