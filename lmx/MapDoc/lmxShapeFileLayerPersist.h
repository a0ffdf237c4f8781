#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// Keeps a shape layer by the path of its file, whatever the policy.
class LMX_EXPORT TShapeFileLayerPersist : public IMapDocLayerPersist {
public:
    void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) override;
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                    TMapDocExternalResourcePolicy policy) override;
};

} // namespace lmx
