#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class IBaseColorCalculator;
class ICookieData;
class IMapData;
class TBitmap32;

/// Makes a picture of a raster, one pixel for each cell.
///
/// A cell whose cookie is not 1 becomes 0, fully transparent, and neither its number nor the calculator is asked.
/// Every other cell gets the calculator's colour with its alpha scaled by the opacity: below 0 or no number counts as
/// 0, above 1 as 1. Pixels are written, never blended.
class LMX_EXPORT IRasterRenderer {
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

} // namespace lmx
