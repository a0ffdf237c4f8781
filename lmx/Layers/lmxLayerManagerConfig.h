#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <memory>
#include <vector>

namespace lmx {

class IResBrowserSourceProvider;
class TBaseLegendControl;
class TBaseMapLayer;

/// Implemented by the host: lets it supply a layer's legend control.
class LMX_EXPORT ILayerComponentFactory {
public:
    virtual ~ILayerComponentFactory() = default;

    /// True if the host decides about this layer's legend; then `component` is the control, or nil for none. The caller
    /// checks the control's class and takes nil if it is of another one.
    virtual bool GetLegendComponent(TBaseMapLayer* layer, TBaseLegendControl*& component) = 0;
};

/// What the host sets for all layers of one manager.
class LMX_EXPORT ILayerManagerConfig {
public:
    virtual ~ILayerManagerConfig() = default;

    /// Where the resource browser finds palettes; the list itself, to be filled by the host.
    virtual std::vector<std::shared_ptr<IResBrowserSourceProvider>>& PaletteSources() = 0;
    const std::vector<std::shared_ptr<IResBrowserSourceProvider>>& PaletteSources() const {
        return const_cast<ILayerManagerConfig*>(this)->PaletteSources();
    }
    virtual std::shared_ptr<ILayerComponentFactory> GetLayerComponentFactory() const = 0; ///< nil until set
    virtual void SetLayerComponentFactory(const std::shared_ptr<ILayerComponentFactory>& factory) = 0;
};

class LMX_EXPORT TLayerManagerConfigFactory {
public:
    static std::shared_ptr<ILayerManagerConfig> GetObject(); ///< a new one at each call
};

} // namespace lmx
