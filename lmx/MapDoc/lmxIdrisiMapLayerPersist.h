#pragma once

#include <lmx/MapDoc/lmxBaseRasterMapLayerPersist.h>
#include <lmx/Runtime/lmxExport.h>

namespace lmx {

/// Keeps an image layer: the path of its image, or the image itself as the entries `header` and `imagedata` in the
/// folder of the layer's id.
class LMX_EXPORT TIdrisiMapLayerPersist : public TBaseRasterMapLayerPersist {
public:
    void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) override;
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                    TMapDocExternalResourcePolicy policy) override;
};

} // namespace lmx
