#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// Keeps the rulers of a view, by the list that they are in. Reading appends; a damaged one ends the reading.
class LMX_EXPORT TRulerMapLayerPersist : public IMapDocLayerPersist {
public:
    void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) override;
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                    TMapDocExternalResourcePolicy policy) override;
};

} // namespace lmx
