#include <lmx/Layers/lmxBaseLayerManagerLayer.h>

#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

TBaseLayerManagerLayer::TBaseLayerManagerLayer(const std::shared_ptr<ILayerManager>& layerManager) {
    if (!layerManager)
        throw EExArgumentNilException(QStringLiteral("TBaseLayerManagerLayer.Create"), QStringLiteral("LayerManager"));
    FLayerManager.Set(layerManager);
    layerManager->GetOnLayerRemoved().AddAbout(static_cast<TBaseMapLayer*>(this), this,
                                               &TBaseLayerManagerLayer::LayerManager_LayerRemoved);
}

std::unique_ptr<TBaseMapLayer> TBaseLayerManagerLayer::Duplicate() const {
    throw ENotSupportedException(QStringLiteral("This layer type does not support this type of layer duplication"));
}

void TBaseLayerManagerLayer::BeforeLayerManagerRemoved(ILayerManager*) {}

std::unique_ptr<TBaseLayerManagerLayer> TBaseLayerManagerLayer::Duplicate(const std::shared_ptr<ILayerManager>&) const {
    throw ENotSupportedException(QStringLiteral("Duplication method not provided"));
}

// Hears of no layer but this one: all of the others listen, too.
void TBaseLayerManagerLayer::LayerManager_LayerRemoved(ILayerManager* manager, TBaseMapLayer*) {
    const TBorrowed self(this); // what a layer does there may free it
    BeforeLayerManagerRemoved(manager);
    if (self)
        FLayerManager.Clear();
}

} // namespace lmx
