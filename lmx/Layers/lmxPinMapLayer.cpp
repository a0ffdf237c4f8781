#include <lmx/Layers/lmxPinMapLayer.h>

#include <lmx/Coordinates/wskWorld.h>

namespace lmx {

TPin::TPin(const TPin& other) : FName(other.FName), FLat(other.FLat), FLon(other.FLon) {
    for (const TPinAttribute* attribute : other.FAttributes)
        FAttributes.Add(std::make_unique<TPinAttribute>(*attribute));
}

TPinMapLayer::TPinMapLayer(const std::shared_ptr<ILayerManager>& layerManager) : TBaseLayerManagerLayer(layerManager) {
    SetIsReadyToDraw(true);
}

QString TPinMapLayer::GetLayerTypeName() const {
    return QStringLiteral("Pins");
}

// By index: the renderer may change the list.
void TPinMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseLayerManagerLayer::Paint(world, viewport, bitmap);
    if (!FPinRenderer || FPins.IsEmpty())
        return;
    FRenderRects.Clear();
    for (int i = 0; i < FPins.Count() && FPinRenderer; ++i) {
        TPin* pin = FPins[i];
        const TMapPoint viewPoint = viewport->MapPointToPoint({pin->GetLon(), pin->GetLat()});
        TFloatRect renderRect;
        if (FPinRenderer->RenderPin(bitmap, this, pin, viewPoint, renderRect))
            FRenderRects.Add(pin, renderRect);
    }
}

} // namespace lmx
