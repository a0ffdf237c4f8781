#pragma once

#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <QString>

#include <vector>

namespace lmx {

class IGradientColorCalculator;
class TRasterMapLayer;

/// The colours of a raster's gradient as an upright bar, marked at round values. It belongs to a picture and is kept in
/// no document.
class TColorBarItem final : public TBaseObjectLayerItem {
public:
    TColorBarItem(TObjectMapLayer* objectLayer, TRasterMapLayer& raster);

    /// The multiples of 1, 2 or 5 times a power of ten within a range, at most `most` of them. None for a range without
    /// width or of what is no number, or if fewer than two fit.
    static std::vector<double> RoundValues(double low, double high, int most);

    QString GetObjectType() const override;      ///< "Color bar"
    QString GetObjectClassType() const override; ///< empty
    /// Without round values both ends are marked.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

private:
    void PaintLabel(TBitmap32& bitmap, std::int32_t y, const QString& text) const;

    TBorrowed<TRasterMapLayer> FRaster;
};

} // namespace lmx
