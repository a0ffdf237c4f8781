#include <lmx/Layers/lmxLayerDuplicator.h>

#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <utility>

namespace lmx {

namespace {

std::unique_ptr<TBaseMapLayer> CopyFor(const std::shared_ptr<ILayerManager>& manager, const TBaseMapLayer& source) {
    if (const auto* layer = dynamic_cast<const TBaseLayerManagerLayer*>(&source))
        return layer->Duplicate(manager);
    return source.Duplicate();
}

class TLayerDuplicator final : public ILayerDuplicator {
public:
    TBaseMapLayer* GetSourceLayer() const override { return FSourceLayer.Get(); }
    void SetSourceLayer(TBaseMapLayer* layer) override { FSourceLayer = layer; }
    std::shared_ptr<ILayerManager> GetDestLayerManager() const override { return FDestLayerManager; }
    void SetDestLayerManager(const std::shared_ptr<ILayerManager>& manager) override { FDestLayerManager = manager; }

    TBaseMapLayer* Duplicate() override {
        const TBaseMapLayer* const source = GetSourceLayer();
        if (!source)
            throw EInvalidOperation(QStringLiteral("SourceLayer is null"));
        if (!FDestLayerManager)
            throw EInvalidOperation(QStringLiteral("DestLayerManager is null"));
        if (!source->GetLayerOptionFlags().Contains(TLayerOptionFlag::lofDuplicate))
            throw EInvalidOperation(QStringLiteral("The specified layer does not support duplication"));
        const std::shared_ptr<ILayerManager> manager = FDestLayerManager; // the copying may change the duplicator
        return manager->GetLayers().Add(CopyFor(manager, *source));
    }

private:
    TBorrowed<TBaseMapLayer> FSourceLayer;
    std::shared_ptr<ILayerManager> FDestLayerManager;
};

} // namespace

std::shared_ptr<ILayerDuplicator> TLayerDuplicatorFactory::GetObject() {
    return std::make_shared<TLayerDuplicator>();
}

std::shared_ptr<ILayerDuplicator> TLayerDuplicatorFactory::GetObject(TBaseMapLayer* layer,
                                                                     const std::shared_ptr<ILayerManager>& manager) {
    auto duplicator = GetObject();
    duplicator->SetSourceLayer(layer);
    duplicator->SetDestLayerManager(manager);
    return duplicator;
}

} // namespace lmx
