#pragma once

#include <lmx/Climate/lmxClimateVariable.h>
#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxTileCache.h>
#include <lmx/DataSources/lmxTileSource.h>
#include <lmx/Layers/lmxBufferedMapLayer.h>
#include <lmx/Layers/lmxLayerData.h>
#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxNullable.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace lmx {

/// Shows a raster that is larger than memory. It reads only the cells that the view shows, from the smallest form of
/// the raster that has one for each pixel, on threads of the pool, and keeps tiles of them in a cache of a fixed size.
/// Panning and zooming show the picture of before until the new one is there; where tiles have to be read first, a
/// coarse picture of what is at hand comes before the sharp one. Where the source has to make a small form of a large
/// raster, which takes a while, the picture fills up in a few steps; the tiles that were made stay in the cache.
///
/// A pixel shows the cell that it would show if the whole raster were drawn there (in an overview, the cell that stands
/// for that one). The calculator is cloned for each render, and the clone asked on the render's thread.
class LMX_DATASOURCES_EXPORT TTiledRasterMapLayer : public TBufferedMapLayer, public ILayerWithData {
public:
    /// Without a cache it uses the shared one.
    explicit TTiledRasterMapLayer(const std::shared_ptr<ILayerManager>& layerManager,
                                  std::shared_ptr<TTileCache> cache = nullptr);
    ~TTiledRasterMapLayer() override;

    const std::shared_ptr<const ITileSource>& GetSource() const { return FSource; }
    /// Shows another raster, or none with nil; its area becomes the layer's.
    void SetSource(std::shared_ptr<const ITileSource> source);

    const std::shared_ptr<IBaseColorCalculator>& GetColorCalc() const { return FColorCalc; }
    /// Draws anew and makes a new legend control. A calculator that is changed in place says nothing: call
    /// Invalidate(true).
    void SetColorCalc(const std::shared_ptr<IBaseColorCalculator>& colorCalc);
    std::uint8_t GetOpacity() const { return FOpacity; } ///< 0 to 255; 255 after construction
    void SetOpacity(std::uint8_t opacity);
    const TValueRange& GetValueRange() const { return FValueRange; } ///< a note of the host's; empty until set
    void SetValueRange(const TValueRange& range) { FValueRange = range; }
    /// The range of the values as well as it is known: the host's note; else that of all that pictures have shown of
    /// the source, for which a view of the whole is enough; else that of a few tiles of its smallest stored form, which
    /// are read now. Of an overview it is, and so may miss an extreme. Empty without a value.
    TValueRange FindValueRange() const;
    const TNullable<TClimateVariable>& GetClimateVariable() const { return FClimateVariable; }
    void SetClimateVariable(const TNullable<TClimateVariable>& variable) { FClimateVariable = variable; }

    /// The number at a place of the layer's world, as far as the raster's own cells are in the cache: it never reads.
    /// Has no value elsewhere, and where there are no data.
    TNullable<float> GetCachedValue(const TMapPoint& point) const;

    /// Cells could not be read; they show nothing. Tells why, once for each tile, on the main thread.
    void SetOnReadFailed(TEvent<TTiledRasterMapLayer*, const QString&> event) { FOnReadFailed = std::move(event); }

    bool GetHasContent() const override; ///< whether there are a source and a calculator
    void CreateLegendComponent() override;
    /// The file of the source, and its band and units if it is a GeoTIFF; the host's range, else what pictures have
    /// shown; the calculator.
    TLayerData DescribeData() const override;
    /// "Extent", "Raster display", for the range of FindValueRange, and "Layer attributes"; the second one not before
    /// there is a source.
    /// @throws EExArgumentNilException if `dialog` is nil, and as TLayerPropertiesDisplayFrame::SetData.
    void InitPropertiesDialog(TLayerPropertiesDialog* dialog) override;
    TLayerOptionFlags GetLayerOptionFlags() const override; ///< the base's and lofDuplicate
    QString GetLayerTypeName() const override;              ///< "Tiled raster"
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;
    void RenderBuffer(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal) override;
    using TBufferedMapLayer::Duplicate;
    /// A layer with the same source and cache, a clone of the calculator, and opacity.
    std::unique_ptr<TBaseLayerManagerLayer> Duplicate(const std::shared_ptr<ILayerManager>& manager) const override;

private:
    class TRender;

    /// A view that shows a coarse picture of this area, and in how many steps it was made.
    struct TCoarse {
        TLifeWatch View;
        TMapArea Area;
        int Steps = 0;
    };

    void StartTileRender(TSize viewSize, const TMapArea& visibleMapArea, const TWorldViewportLocal& vpLocal, int step);
    void NotePicture(const TMapArea& area, int step, bool isCoarse, const TValueRange* range);
    /// The step that comes next; 0 if the view shows no coarse picture.
    int NextStep(const TWorldViewport& viewport) const;

    std::shared_ptr<TTileCache> FCache;
    std::shared_ptr<const ITileSource> FSource;
    std::shared_ptr<IBaseColorCalculator> FColorCalc;
    std::uint8_t FOpacity = 255;
    TValueRange FValueRange = TValueRange::Empty();
    TNullable<TValueRange> FShownRange; // of the source
    TNullable<TClimateVariable> FClimateVariable;
    TLifeWatch FPaintedView;  // the viewport of the newest paint
    TLifeWatch FRenderedView; // the one that the newest render is for
    std::vector<TCoarse> FCoarse;
    TEvent<TTiledRasterMapLayer*, const QString&> FOnReadFailed;
};

} // namespace lmx
