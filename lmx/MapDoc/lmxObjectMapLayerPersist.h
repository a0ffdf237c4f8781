#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// Keeps the annotations of a view, those of the types that TObjectLayerTypeItemPersistFactory knows. Reading appends;
/// a damaged one ends the reading.
class LMX_EXPORT TObjectMapLayerPersist : public IMapDocLayerPersist {
public:
    void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) override;
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                    TMapDocExternalResourcePolicy policy) override;
};

} // namespace lmx
