#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class ILayerManager;
class TBaseMapLayer;

/// Copies a layer to the top of the stack of a manager, the layer's own or another one. Main thread only.
class LMX_EXPORT ILayerDuplicator {
public:
    virtual ~ILayerDuplicator() = default;

    virtual TBaseMapLayer* GetSourceLayer() const = 0; ///< nil until set, and again once the layer is gone
    virtual void SetSourceLayer(TBaseMapLayer* layer) = 0;
    virtual std::shared_ptr<ILayerManager> GetDestLayerManager() const = 0;
    virtual void SetDestLayerManager(const std::shared_ptr<ILayerManager>& manager) = 0;
    /// The copy, which the manager owns; nil if whoever heard of it has taken it out again. A copy that fails leaves
    /// the stack as it was.
    /// @throws EInvalidOperation "SourceLayer is null", "DestLayerManager is null", or "The specified layer does not
    /// support duplication" if the layer has not lofDuplicate among its options.
    virtual TBaseMapLayer* Duplicate() = 0;
};

class LMX_EXPORT TLayerDuplicatorFactory {
public:
    static std::shared_ptr<ILayerDuplicator> GetObject(); ///< a new one at each call, with nothing set
    static std::shared_ptr<ILayerDuplicator> GetObject(TBaseMapLayer* layer,
                                                       const std::shared_ptr<ILayerManager>& manager);
};

} // namespace lmx
