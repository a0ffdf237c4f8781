#pragma once

#include <lmx/Colour/lmxRasterRenderer.h>
#include <lmx/Runtime/lmxExport.h>

#include <QStringView>

#include <memory>

namespace lmx {

/// The renderer of TBitmap32 pictures; it has no state. Calculators and map data of this library work in whole rows
/// here; any other calculator is asked once for each cell with data, row by row from the top and from left to right.
class LMX_EXPORT TBitmap32RasterRenderer final : public IRasterRenderer {
public:
    /// Message for a picture of another class. The signature of Render rules it out; renderers that take their picture
    /// untyped use it.
    static constexpr QStringView WrongImageType = u"Bitmap32RasterRenderer requires images of type TBitmap32";

    std::unique_ptr<TBitmap32> Render(const ICookieData* cookie, const IMapData* data, float opacity,
                                      const IBaseColorCalculator* colorCalc) const override;
    void Render(const ICookieData* cookie, const IMapData* data, float opacity, const IBaseColorCalculator* colorCalc,
                TBitmap32* image) const override;
};

class LMX_EXPORT TBitmap32RasterRendererFactory {
public:
    static std::shared_ptr<IRasterRenderer> GetObject();
};

} // namespace lmx
