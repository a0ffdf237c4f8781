#include <lmx/Layers/lmxBaseShapeLayer.h>

namespace lmx {

TBaseShapeLayer::TBaseShapeLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBufferedMapLayer(layerManager) {}

void TBaseShapeLayer::SetColor(TColor32 color) {
    if (color == FColor)
        return;
    FColor = color;
    const auto liveness = GetLivenessToken(); // whoever is told may destroy the layer
    Invalidate(true);
    if (!liveness.expired())
        CreateLegendComponent();
}

void TBaseShapeLayer::UpdateDuplicateBaseShapeLayer(TBaseShapeLayer* target) const {
    UpdateDuplicateBaseMapLayer(target);
    target->FColor = FColor;
}

} // namespace lmx
