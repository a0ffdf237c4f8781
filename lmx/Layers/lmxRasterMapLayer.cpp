#include <lmx/Layers/lmxRasterMapLayer.h>

#include <lmx/Graphics/Private/lmxReducedPicture.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <utility>

namespace lmx {

/// Keeps the picture that a layer gives up while it is rendered anew, and frees it whatever happens.
class TRasterMapLayer::TGivenUpBitmap {
public:
    explicit TGivenUpBitmap(TRasterMapLayer* layer) : FLayer(layer) {
        if (layer->FIsRendered)
            layer->FGivenUpBitmap = std::move(layer->FBitmap);
    }
    TGivenUpBitmap(const TGivenUpBitmap&) = delete;
    TGivenUpBitmap& operator=(const TGivenUpBitmap&) = delete;
    ~TGivenUpBitmap() {
        if (FLayer)
            FLayer->FGivenUpBitmap.reset();
    }

private:
    TBorrowed<TRasterMapLayer> FLayer;
};

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
    StoreBitmap(std::move(bitmap), false);
}

void TRasterMapLayer::SetRenderedBitmap(std::unique_ptr<TBitmap32> bitmap) {
    StoreBitmap(std::move(bitmap), true);
}

void TRasterMapLayer::StoreBitmap(std::unique_ptr<TBitmap32> bitmap, bool isRendered) {
    if (bitmap == FBitmap)
        return;
    DeleteBitmap();
    FBitmap = std::move(bitmap);
    FIsRendered = isRendered;
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
    const TBorrowed self(this); // a subscriber may free the layer
    {
        const TGivenUpBitmap givenUp(this);
        DeleteBitmap();
        SetIsReadyToDraw(false);
        if (self)
            Render();
    }
    if (self)
        DoNotifyInvalidated();
}

std::unique_ptr<TBitmap32> TRasterMapLayer::TakeGivenUpBitmap() {
    return std::move(FGivenUpBitmap);
}

void TRasterMapLayer::Render() {}

void TRasterMapLayer::UpdateDuplicateRasterMapLayer(TRasterMapLayer* target) const {
    UpdateDuplicateBaseMapLayer(target);
    target->FClimateVariable = FClimateVariable;
    target->FValueRange = FValueRange;
    const std::shared_ptr<IBaseColorCalculator> colorCalc = FColorCalc; // a host's may put another in its place
    target->FColorCalc = colorCalc ? colorCalc->Clone() : nullptr;
}

} // namespace lmx
