#include <lmx/Layers/lmxLayerStackPainter.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/Private/lmxPaintedLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

namespace lmx {

namespace {

/// One painting, which notices what has gone meanwhile.
class TPainting {
public:
    TPainting(TWorldViewport& viewport, TBitmap32& bitmap, const std::function<bool()>& goesOn)
        : FViewport(&viewport),
          FBitmap(bitmap),
          FGoesOn(goesOn) {}

    /// False: the painting has ended.
    bool GoesOn() const { return FViewport && FViewport->GetWorld() && (!FGoesOn || FGoesOn()); }

    bool PaintOfStack(TBaseMapLayer* layer) const {
        if (!GoesOn())
            return false;
        const TBorrowed borrowed(layer);
        return !IsPainted(*layer) || Paint(borrowed);
    }

    bool Paint(const TBorrowed<TBaseMapLayer>& layer) const {
        if (!GoesOn())
            return false;
        if (layer)
            layer->Paint(FViewport->GetWorld(), FViewport.Get(), FBitmap);
        return true;
    }

private:
    TBorrowed<TWorldViewport> FViewport;
    TBitmap32& FBitmap;
    const std::function<bool()>& FGoesOn;
};

} // namespace

bool PaintLayerStack(const std::shared_ptr<ILayerManager>& manager, TWorldViewport& viewport, TBitmap32& bitmap,
                     std::span<const TBorrowed<TBaseMapLayer>> specialLayers, const std::function<bool()>& goesOn) {
    const TPainting painting(viewport, bitmap, goesOn);
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the caller's may go meanwhile
    const std::shared_ptr<ILayerManager> kept = manager;
    if (kept)
        kept->GetLayers().ForEach([&](TBaseMapLayer* layer) { return painting.PaintOfStack(layer); });
    for (const TBorrowed<TBaseMapLayer>& layer : specialLayers)
        if (!painting.Paint(layer))
            return false;
    return painting.GoesOn();
}

} // namespace lmx
