#pragma once

#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>

namespace lmx {

class ILayerFactory;

/// Keeps a tiled raster by the path of its file and the band, whatever the policy: what does not fit into memory does
/// not go into a document. Beside them stand what documents keep of other rasters: opacity, climate variable and
/// colours.
class LMX_DATASOURCES_EXPORT TTiledRasterMapLayerPersist : public IMapDocLayerPersist {
public:
    /// @throws EArgumentException "Layer"; Exception "Missing required node: ..." and "Unsupported resource type: ...";
    /// EConvertError for a number that is none; EClimateFile if the file does not open.
    void ReadLayer(TMapDocResourcePersist& resources, TBaseMapLayer* layer, TXmlNode data) override;
    /// @throws EArgumentException "Layer"; EInvalidOperation "Layer ...: no tiled raster of a file" if there is none.
    void WriteLayer(TMapDocResourcePersist& resources, const TBaseMapLayer* layer, TXmlNode data,
                    TMapDocExternalResourcePolicy policy) override;
};

/// Lets documents have the layers of this room. The host calls it once for each factory, beside PopulateDefault.
/// @throws EExArgumentNilException for nil; EListError if the persist factory knows the layers already.
LMX_DATASOURCES_EXPORT void RegisterDataSourceLayers(const std::shared_ptr<ILayerFactory>& layers,
                                                     const std::shared_ptr<IMapDocLayerPersistFactory>& persists);

} // namespace lmx
