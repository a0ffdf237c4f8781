#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Raster/lmxFieldRegion.h>
#include <lmx/Raster/lmxFieldStatistics.h>

#include <functional>
#include <optional>
#include <vector>

namespace lmx {
class TBaseMapLayer;
} // namespace lmx

// Layers that are shown by tiles, which may be larger than memory. Where the viewer is built without lmx::datasources
// there are none.

/// What is looked at: a rectangle, or the inside of rings, or the whole layers if there is neither.
struct TStatisticsRegion {
    std::optional<lmx::TMapArea> Area;
    std::vector<lmx::TFieldRing> Rings;
};

/// Told which share has been read, 0 to 1. False ends the computation.
using TStatisticsGoOn = std::function<bool(double share)>;

/// Reads the raster and gives its statistics, on any thread and whether or not the layer still lives; none if it was
/// ended.
/// @throws lmx::Exception if the raster cannot be read.
using TTiledStatistics = std::function<std::optional<lmx::TFieldStatistics>(const TStatisticsGoOn& goesOn)>;

/// Empty for a layer that is not shown by tiles, or shows none. Main thread.
TTiledStatistics TiledStatisticsOf(const lmx::TBaseMapLayer& layer, const TStatisticsRegion& region);

/// The number that such a layer shows at a place, if it is at hand: nothing is read for it.
std::optional<float> TiledValueAt(const lmx::TBaseMapLayer& layer, const lmx::TMapPoint& place);
