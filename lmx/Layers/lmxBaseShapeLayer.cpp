#include <lmx/Layers/lmxBaseShapeLayer.h>

#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

TBaseShapeLayer::TBaseShapeLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBufferedMapLayer(layerManager) {}

void TBaseShapeLayer::SetColor(TColor32 color) {
    if (color == FColor)
        return;
    FColor = color;
    const TBorrowed self(this); // whoever is told may destroy the layer
    Invalidate(true);
    if (self)
        CreateLegendComponent();
}

void TBaseShapeLayer::UpdateDuplicateBaseShapeLayer(TBaseShapeLayer* target) const {
    UpdateDuplicateBaseMapLayer(target);
    target->FColor = FColor;
}

} // namespace lmx
