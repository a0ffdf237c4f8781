#pragma once

#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxWeakReference.h>

#include <memory>

namespace lmx {

/// A layer that knows its manager; every concrete layer derives from it. The reference is uncounted: a layer never
/// keeps its manager alive.
class LMX_EXPORT TBaseLayerManagerLayer : public TBaseMapLayer {
public:
    /// @throws EExArgumentNilException naming "TBaseLayerManagerLayer.Create" and "LayerManager" if the manager is nil.
    explicit TBaseLayerManagerLayer(const std::shared_ptr<ILayerManager>& layerManager);

    std::shared_ptr<ILayerManager> GetLayerManager() const { return FLayerManager.Get(); } ///< a counted copy, or nil
    bool IsLMSet() const { return FLayerManager.IsSet(); }

    /// @throws ENotSupportedException "This layer type does not support this type of layer duplication".
    std::unique_ptr<TBaseMapLayer> Duplicate() const override;

    /// The layer leaves the list of its manager, or the manager itself goes. Here: nothing.
    virtual void BeforeLayerManagerRemoved(ILayerManager* manager);
    /// A copy of the layer for another manager, not yet added to it.
    /// @throws ENotSupportedException "Duplication method not provided" unless overridden.
    virtual std::unique_ptr<TBaseLayerManagerLayer> Duplicate(const std::shared_ptr<ILayerManager>& manager) const;

private:
    void LayerManager_LayerRemoved(ILayerManager* manager, TBaseMapLayer* layer);

    TWeakReference<ILayerManager> FLayerManager;
};

} // namespace lmx
