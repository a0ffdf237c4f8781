#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// Keeps what all raster layers have: climate variable, opacity and colour calculator. A base for the layers of hosts.
class LMX_EXPORT TBaseRasterMapLayerPersist : public IMapDocLayerPersist {
public:
    void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) override;
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                    TMapDocExternalResourcePolicy policy) override;
};

} // namespace lmx
