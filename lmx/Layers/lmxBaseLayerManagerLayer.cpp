#include <lmx/Layers/lmxBaseLayerManagerLayer.h>

#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

TBaseLayerManagerLayer::TBaseLayerManagerLayer(const std::shared_ptr<ILayerManager>& layerManager) {
    if (!layerManager)
        throw EExArgumentNilException(QStringLiteral("TBaseLayerManagerLayer.Create"), QStringLiteral("LayerManager"));
    FLayerManager.Set(layerManager);
    layerManager->GetOnLayerRemoved().Add(this, &TBaseLayerManagerLayer::LayerManager_LayerRemoved);
}

std::unique_ptr<TBaseMapLayer> TBaseLayerManagerLayer::Duplicate() const {
    throw ENotSupportedException(QStringLiteral("This layer type does not support this type of layer duplication"));
}

void TBaseLayerManagerLayer::BeforeLayerManagerRemoved(ILayerManager*) {}

std::unique_ptr<TBaseLayerManagerLayer> TBaseLayerManagerLayer::Duplicate(const std::shared_ptr<ILayerManager>&) const {
    throw ENotSupportedException(QStringLiteral("Duplication method not provided"));
}

// Hears of every layer that leaves the manager, also long after this one has left.
void TBaseLayerManagerLayer::LayerManager_LayerRemoved(ILayerManager* manager, TBaseMapLayer* layer) {
    if (layer != this)
        return;
    BeforeLayerManagerRemoved(manager);
    FLayerManager.Clear();
}

} // namespace lmx
