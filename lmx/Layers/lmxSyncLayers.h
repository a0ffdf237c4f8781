#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <initializer_list>
#include <memory>
#include <span>

namespace lmx {

class TRasterMapLayer;

/// Gives raster layers one range of values, so that they can be compared colour for colour. All of them have the range
/// before the first is invalidated. Main thread only.
class LMX_EXPORT ISyncLayers {
public:
    virtual ~ISyncLayers() = default;

    /// The range from the smallest minimum to the largest maximum of the layers.
    /// @throws EExArgumentNilException naming "TSyncLayers.SyncLayers" and "Layers" if there are no layers;
    /// EArgumentException "Layers" if there is one only, or one is nil. Then nothing has changed.
    virtual void SyncLayers(std::span<TRasterMapLayer* const> layers) = 0;
    void SyncLayers(std::initializer_list<TRasterMapLayer*> layers) {
        SyncLayers(std::span<TRasterMapLayer* const>(layers));
    }

    /// The range that is given. @throws as the other one.
    virtual void SyncLayers(std::span<TRasterMapLayer* const> layers, double minValue, double maxValue) = 0;
    void SyncLayers(std::initializer_list<TRasterMapLayer*> layers, double minValue, double maxValue) {
        SyncLayers(std::span<TRasterMapLayer* const>(layers), minValue, maxValue);
    }
};

class LMX_EXPORT TSyncLayersFactory {
public:
    static std::shared_ptr<ISyncLayers> GetObject(); ///< a new one at each call
};

} // namespace lmx
