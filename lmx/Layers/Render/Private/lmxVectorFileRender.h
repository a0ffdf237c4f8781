#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/Render/lmxRenderThreadHandler.h>

#include <memory>

namespace lmx {

struct TVectorData;

/// One render of a vector file layer: a share of the features, and the colour.
class TVectorFileLayerRenderThreadHandler final : public TRenderThreadHandler {
public:
    /// Without `data` there is nothing to draw.
    TVectorFileLayerRenderThreadHandler(TSize viewSize, const TMapArea& visibleMapArea,
                                        const TWorldViewportLocal& vpLocal, std::shared_ptr<const TVectorData> data,
                                        TColor32 color);

protected:
    bool GetHasContent() const override;
    void Draw(TBitmap32& bitmap, const TThreadPoolThread& thread) const override;

private:
    std::shared_ptr<const TVectorData> FData;
    TColor32 FColor;
};

} // namespace lmx
