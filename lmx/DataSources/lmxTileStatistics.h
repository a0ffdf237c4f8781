#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/Raster/lmxFieldRegion.h>
#include <lmx/Raster/lmxFieldStatistics.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

namespace lmx {

class ITileSource;
class TShapeFileLayer;
class TTiledRasterMapLayer;

// Statistics of a raster that is larger than memory: of every cell of the raster itself, never of an overview, and the
// same numbers that an image of these cells gives (lmxLayerStatistics.h). Rows are read in strips of at most
// TileStatisticsCells cells, from the first to the last column that counts; nothing of it goes into the tile cache.
// A whole raster may take seconds or minutes: hosts run it on a thread of their own, or end it.

/// Cells that are in memory at a time; a row that has more is read whole.
constexpr std::size_t TileStatisticsCells = std::size_t{4} << 20;

/// Told before each strip which share of the rows has been read, 0 to 1. False ends the computation.
using TStatisticsProgress = std::function<bool(double share)>;

// Of a source: any thread. No result if `goesOn` ended it. They raise what ReadCells raises.

LMX_DATASOURCES_EXPORT std::optional<TFieldStatistics> StatisticsOf(const ITileSource& source,
                                                                    const TStatisticsProgress& goesOn = {});
/// Of a rectangle in the units of the source's world; cells that it cuts count by the share inside.
LMX_DATASOURCES_EXPORT std::optional<TFieldStatistics> StatisticsOf(const ITileSource& source, const TMapArea& area,
                                                                    const TStatisticsProgress& goesOn = {});
/// Of a polygon in the units of the source's world; cells count whole if their centre is inside.
LMX_DATASOURCES_EXPORT std::optional<TFieldStatistics>
StatisticsOf(const ITileSource& source, std::span<const TFieldRing> rings, const TStatisticsProgress& goesOn = {});

// Of what a layer shows: main thread. `goesOn` may do anything, also free the layer.
// All raise EInvalidOperation `The layer "x" has no raster` for a layer without a source.

LMX_DATASOURCES_EXPORT std::optional<TFieldStatistics> StatisticsOf(const TTiledRasterMapLayer& layer,
                                                                    const TStatisticsProgress& goesOn = {});
LMX_DATASOURCES_EXPORT std::optional<TFieldStatistics>
StatisticsOf(const TTiledRasterMapLayer& layer, const TMapArea& area, const TStatisticsProgress& goesOn = {});
/// @throws EInvalidOperation `The layer "x" has no shape file`; EArgumentException "Polygon index is out of range".
LMX_DATASOURCES_EXPORT std::optional<TFieldStatistics> StatisticsOf(const TTiledRasterMapLayer& layer,
                                                                    const TShapeFileLayer& shapes, std::size_t polygon,
                                                                    const TStatisticsProgress& goesOn = {});

} // namespace lmx
