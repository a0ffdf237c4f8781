#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>
#include <lmx/Layers/Render/lmxShapeFileProjection.h>

#include <memory>

namespace lmx {

struct TShpData;

/// One render of a shape file layer: shares of the geometry and of the projection, and the colour.
class TShapeFileLayerRenderThreadHandler final : public TRenderThreadHandler {
public:
    /// Without `data` there is nothing to draw. A nil projection leaves coordinates as they are.
    TShapeFileLayerRenderThreadHandler(TSize viewSize, const TMapArea& visibleMapArea,
                                       const TWorldViewportLocal& vpLocal, std::shared_ptr<const TShpData> data,
                                       std::shared_ptr<const IShapeFileProjection> projection, TColor32 color);

protected:
    bool GetHasContent() const override;
    void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const override;

private:
    void DrawProjected(TBitmap32& bitmap, const TThreadPoolThread& thread) const;

    std::shared_ptr<const TShpData> FData;
    std::shared_ptr<const IShapeFileProjection> FProjection;
    TColor32 FColor;
};

} // namespace lmx
