#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Layers/Render/lmxShapeFileProjection.h>

#include <memory>

namespace lmx {

struct TShpData;

/// Which shapes beyond the edges of a world of longitudes are drawn a turn further, where the world has their places.
struct TSeamFolding {
    bool IsOn = false;    ///< without it nothing is folded; with it nothing is drawn beyond the edges
    bool HasWest = false; ///< shapes west of the world
    bool HasEast = false; ///< shapes east of it
};

/// One render of a shape file layer: shares of the geometry and of the projection, and the colour.
class TShapeFileLayerRenderThreadHandler final : public TRenderThreadHandler {
public:
    /// Without `data` there is nothing to draw. A nil projection leaves coordinates as they are.
    TShapeFileLayerRenderThreadHandler(TSize viewSize, const TMapArea& visibleMapArea,
                                       const TWorldViewportLocal& vpLocal, std::shared_ptr<const TShpData> data,
                                       std::shared_ptr<const IShapeFileProjection> projection, TColor32 color,
                                       TSeamFolding folding = {});

protected:
    bool GetHasContent() const override;
    void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const override;

private:
    void DrawShifted(TBitmap32& bitmap, extended shift, const TThreadPoolThread& thread) const;
    void ClearBeyondWorld(TBitmap32& bitmap) const;

    std::shared_ptr<const TShpData> FData;
    std::shared_ptr<const IShapeFileProjection> FProjection;
    TColor32 FColor;
    TSeamFolding FFolding;
};

} // namespace lmx
