#include <lmx/Layers/lmxSyncLayers.h>

#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

void CheckLayers(std::span<TRasterMapLayer* const> layers) {
    if (layers.empty())
        throw EExArgumentNilException(QStringLiteral("TSyncLayers.SyncLayers"), QStringLiteral("Layers"));
    if (layers.size() < 2 || std::find(layers.begin(), layers.end(), nullptr) != layers.end())
        throw EArgumentException(QStringLiteral("Layers"));
}

class TSyncLayers final : public ISyncLayers {
public:
    void SyncLayers(std::span<TRasterMapLayer* const> layers) override {
        CheckLayers(layers);
        TValueRange range = layers.front()->GetValueRange();
        for (const TRasterMapLayer* layer : layers.subspan(1)) {
            range.Low = std::min(range.Low, layer->GetValueRange().Low);
            range.High = std::max(range.High, layer->GetValueRange().High);
        }
        SyncLayers(layers, range.Low, range.High);
    }

    void SyncLayers(std::span<TRasterMapLayer* const> layers, double minValue, double maxValue) override {
        CheckLayers(layers);
        // Whoever hears of one layer may destroy the others.
        const std::vector<TBorrowed<TRasterMapLayer>> living(layers.begin(), layers.end());
        const TValueRange range(minValue, maxValue);
        for (const TBorrowed<TRasterMapLayer>& layer : living)
            if (layer)
                layer->SetValueRange(range);
        for (const TBorrowed<TRasterMapLayer>& layer : living)
            if (layer)
                layer->Invalidate();
    }
};

} // namespace

std::shared_ptr<ISyncLayers> TSyncLayersFactory::GetObject() {
    return std::make_shared<TSyncLayers>();
}

} // namespace lmx
