#pragma once

#include <lmx/Graphics/lmxBitmap32VecDocRenderer.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

struct TVectorDoc;

/// A rose of eight triangles with the letters of the four winds. It is drawn once a size, not once a paint.
class LMX_EXPORT TCompassRoseObjectLayerItem : public TBaseObjectLayerItem {
public:
    /// 256 x 256 pixels to the eye.
    explicit TCompassRoseObjectLayerItem(TObjectMapLayer* layer);
    ~TCompassRoseObjectLayerItem() override;

    void SetRect(const TRect& rect) override;
    QString GetObjectType() const override;      ///< "Compass rose"
    QString GetObjectClassType() const override; ///< "COMPASSROSE"
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    // New colours show after ReCreateCompassRoseVector and ReDrawCompassRose, in this order.
    TColor32 GetDarkColor() const { return FDarkColor; } ///< black at first
    void SetDarkColor(TColor32 color) { FDarkColor = color; }
    TColor32 GetFontColor() const { return FFontColor; } ///< black at first
    void SetFontColor(TColor32 color) { FFontColor = color; }
    TColor32 GetLightColor() const { return FLightColor; } ///< light grey at first
    void SetLightColor(TColor32 color) { FLightColor = color; }
    TColor32 GetLineColor() const { return FLineColor; } ///< black at first
    void SetLineColor(TColor32 color) { FLineColor = color; }

    void ReCreateCompassRoseVector(); ///< the drawing in the present colours
    void ReDrawCompassRose();         ///< the picture of the drawing at the present size
    /// Makes the drawing in these colours.
    void CreateVecDoc(TColor32 darkColor, TColor32 lightColor, TColor32 fontColor, TColor32 lineColor);

    const TVectorDoc* GetVecDoc() const { return FVecDoc.get(); }
    /// The picture, at most 4096 pixels a side: a larger rose shows it stretched.
    const TBitmap32* GetBuff() const { return FBuff.get(); }

private:
    std::shared_ptr<const TVectorDoc> FVecDoc;
    TBitmap32VecDocRenderer FVecDocRenderer;
    std::unique_ptr<TBitmap32> FBuff;
    TColor32 FDarkColor = clBlack32;
    TColor32 FFontColor = clBlack32;
    TColor32 FLightColor = 0xFFA9A9A9;
    TColor32 FLineColor = clBlack32;
};

} // namespace lmx
