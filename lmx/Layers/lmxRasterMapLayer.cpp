#include <lmx/Layers/lmxRasterMapLayer.h>

#include <lmx/Graphics/Private/lmxReducedPicture.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

TRasterMapLayer::TRasterMapLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBaseLayerManagerLayer(layerManager),
      FReducedPictures(std::make_unique<TReducedPictures>()) {}

TRasterMapLayer::~TRasterMapLayer() = default;

void TRasterMapLayer::SetOpacity(std::uint8_t opacity) {
    if (opacity == FOpacity)
        return;
    FOpacity = opacity;
    Invalidate();
}

void TRasterMapLayer::SetBitmap(std::unique_ptr<TBitmap32> bitmap) {
    if (bitmap == FBitmap)
        return;
    DeleteBitmap();
    FBitmap = std::move(bitmap);
    if (FBitmap)
        SetIsReadyToDraw(true);
}

void TRasterMapLayer::DeleteBitmap() {
    FBitmap.reset();
    FReducedPictures->Clear();
}

void TRasterMapLayer::SetColorCalc(const std::shared_ptr<IBaseColorCalculator>& colorCalc) {
    if (colorCalc == FColorCalc)
        return;
    FColorCalc = colorCalc;
    const TBorrowed self(this); // a subscriber may free the layer
    Invalidate();
    if (self)
        CreateLegendComponent();
}

void TRasterMapLayer::SetValueRange(const TValueRange& range) {
    if (range.Equals(FValueRange))
        return;
    FValueRange = range;
    const auto calculator = std::dynamic_pointer_cast<IBaseMinMaxColorCalculator>(FColorCalc);
    if (!calculator)
        return;
    const TBorrowed self(this); // a calculator of the host's may free the layer
    const auto clone = calculator->Clone(static_cast<float>(FValueRange.Low), static_cast<float>(FValueRange.High));
    if (self)
        SetColorCalc(clone);
}

void TRasterMapLayer::Invalidate() {
    if (!FBitmap)
        return;
    DeleteBitmap();
    const TBorrowed self(this); // a subscriber may free the layer
    SetIsReadyToDraw(false);
    if (self)
        Render();
    if (self)
        DoNotifyInvalidated();
}

void TRasterMapLayer::Render() {}

void TRasterMapLayer::UpdateDuplicateRasterMapLayer(TRasterMapLayer* target) const {
    UpdateDuplicateBaseMapLayer(target);
    target->FClimateVariable = FClimateVariable;
    target->FValueRange = FValueRange;
    target->FColorCalc = FColorCalc ? FColorCalc->Clone() : nullptr;
}

} // namespace lmx
