#include <lmx/Layers/lmxPinMapLayer.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

TPin::TPin(const TPin& other) : FName(other.FName), FLat(other.FLat), FLon(other.FLon) {
    for (const TPinAttribute* attribute : other.GetAttributes())
        GetAttributes().Add(std::make_unique<TPinAttribute>(*attribute));
}

TObjectList<TPinAttribute>& TPin::GetAttributes() {
    if (!FAttributes)
        FAttributes = std::make_unique<TObjectList<TPinAttribute>>();
    return *FAttributes;
}

const TObjectList<TPinAttribute>& TPin::GetAttributes() const {
    static const TObjectList<TPinAttribute> none;
    return FAttributes ? *FAttributes : none;
}

TPinMapLayer::TPinMapLayer(const std::shared_ptr<ILayerManager>& layerManager) : TBaseLayerManagerLayer(layerManager) {
    SetIsReadyToDraw(true);
}

QString TPinMapLayer::GetLayerTypeName() const {
    return QStringLiteral("Pins");
}

// The renderer is the host's: it may change the list, go itself, and free the layer and the view.
void TPinMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseLayerManagerLayer::Paint(world, viewport, bitmap);
    if (!FPinRenderer || FPins.IsEmpty())
        return;
    FRenderRects.Clear();
    const TBorrowed self(this);
    const TBorrowed view(viewport);
    FPins.ForEach([&](TPin* pin) {
        const TMapPoint viewPoint = viewport->MapPointToPoint({pin->GetLon(), pin->GetLat()});
        TFloatRect renderRect;
        const bool isDrawn = FPinRenderer->RenderPin(bitmap, this, pin, viewPoint, renderRect);
        if (self && isDrawn)
            FRenderRects.Add(pin, renderRect);
        return self && FPinRenderer && view;
    });
}

} // namespace lmx
