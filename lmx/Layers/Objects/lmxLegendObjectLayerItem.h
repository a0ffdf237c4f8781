#pragma once

#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

class TBaseLegendControl;
class TBaseMapLayer;
class TGeneralOptions;
class TPictureWindow;

/// The legend of a raster layer, drawn from the layer's calculator: of a gradient, of colour classes or of a palette.
/// For anything else it says "No view for legend". It repaints when the layer has another legend control. Bar and boxes
/// are in pixels to the eye.
class LMX_EXPORT TLegendObjectLayerItem : public TBaseObjectLayerItem {
public:
    /// Of no layer, horizontal, 150 x 150 pixels to the eye.
    explicit TLegendObjectLayerItem(TObjectMapLayer* layer);
    /// 500 x 150 pixels to the eye, or 150 x 500 if vertical.
    TLegendObjectLayerItem(TObjectMapLayer* objectLayer, TBaseMapLayer* legendLayer, TLegendOrientation orientation);
    ~TLegendObjectLayerItem() override;

    QString GetObjectType() const override;      ///< "Legend: " and the layer's name
    QString GetObjectClassType() const override; ///< "LEGEND"
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    TBaseMapLayer* GetLegendLayer() const { return FLegendLayer.Get(); } ///< nil once it is gone
    void SetLegendLayer(TBaseMapLayer* layer);
    TLegendOrientation GetOrientation() const { return FOrientation; }
    void SetOrientation(TLegendOrientation orientation) { Store(FOrientation, orientation); }
    int GetGradientBarSize() const { return FGradientBarSize; } ///< 30 at first
    void SetGradientBarSize(int size) { Store(FGradientBarSize, size); }
    int GetPaletteBoxSize() const { return FPaletteBoxSize; } ///< 22 at first
    void SetPaletteBoxSize(int size) { Store(FPaletteBoxSize, size); }
    const QString& GetFontName() const { return FFontName; } ///< "Tahoma" at first
    void SetFontName(const QString& name) { Store(FFontName, name); }
    int GetFontSize() const { return FFontSize; } ///< points; 8 at first
    void SetFontSize(int size) { Store(FFontSize, size); }
    const TGradientLegendMarkArray& GetGradientLegendMarks() const { return FGradientLegendMarks; }
    void SetGradientLegendMarks(const TGradientLegendMarkArray& marks);
    /// Which rows of a palette or of classes are shown; all without one.
    const TPalettePainterFilterCallback& GetPalettePainterFilterCallback() const {
        return FPalettePainterFilterCallback;
    }
    void SetPalettePainterFilterCallback(TPalettePainterFilterCallback callback); ///< tells nobody

    /// What a new legend begins with: a background of translucent white, shown.
    static void SetDefaultGeneralOptions(TGeneralOptions& options);

private:
    struct TLook;

    void LegendLayer_LegendComponentChanged(TBaseMapLayer* layer, TBaseLegendControl* component);
    void ListenToLegendLayer(bool listen);
    void PaintContent(const TPictureWindow& picture) const;

    TBorrowed<TBaseMapLayer> FLegendLayer;
    TLegendOrientation FOrientation = TLegendOrientation::loHorizontal;
    int FGradientBarSize = 30;
    int FPaletteBoxSize = 22;
    QString FFontName = QStringLiteral("Tahoma");
    int FFontSize = 8;
    TGradientLegendMarkArray FGradientLegendMarks;
    TPalettePainterFilterCallback FPalettePainterFilterCallback;
};

} // namespace lmx
