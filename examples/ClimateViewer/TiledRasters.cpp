#include "TiledRasters.h"

#include <lmx/DataSources/lmxTileStatistics.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>

TTiledStatistics TiledStatisticsOf(const lmx::TBaseMapLayer& layer, const TStatisticsRegion& region) {
    const auto* const tiled = dynamic_cast<const lmx::TTiledRasterMapLayer*>(&layer);
    if (!tiled || !tiled->GetSource())
        return {};
    return [source = tiled->GetSource(), region](const TStatisticsGoOn& goesOn) {
        if (region.Area)
            return lmx::StatisticsOf(*source, *region.Area, goesOn);
        if (!region.Rings.empty())
            return lmx::StatisticsOf(*source, region.Rings, goesOn);
        return lmx::StatisticsOf(*source, goesOn);
    };
}

std::optional<float> TiledValueAt(const lmx::TBaseMapLayer& layer, const lmx::TMapPoint& place) {
    const auto* const tiled = dynamic_cast<const lmx::TTiledRasterMapLayer*>(&layer);
    if (!tiled)
        return std::nullopt;
    const lmx::TNullable<float> value = tiled->GetCachedValue(place);
    return value.GetHasValue() ? std::optional(value.GetValue()) : std::nullopt;
}
