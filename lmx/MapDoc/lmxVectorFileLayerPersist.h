#pragma once

#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// Keeps a vector layer: the path of its vector, or the vector itself as the entries `vectordata` and `header` in the
/// folder of the layer's id. A linked vector is loaded, for failures to show, and not given to the layer, which comes
/// back without shapes.
class LMX_EXPORT TVectorFileLayerPersist : public IMapDocLayerPersist {
public:
    void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) override;
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                    TMapDocExternalResourcePolicy policy) override;
};

} // namespace lmx
