#pragma once

/// Everything that a host may use of this room: climate files. It stands in a library of its own, lmx::datasources.

#include <lmx/DataSources/lmxClimateAttributes.h>
#include <lmx/DataSources/lmxClimateAxis.h>
#include <lmx/DataSources/lmxClimateCalendar.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/DataSources/lmxClimateFrames.h>
#include <lmx/DataSources/lmxClimateGridPlan.h>
#include <lmx/DataSources/lmxClimateMapSteps.h>
#include <lmx/DataSources/lmxClimateNames.h>
#include <lmx/DataSources/lmxClimateOrigin.h>
#include <lmx/DataSources/lmxClimateTimeUnits.h>
#include <lmx/DataSources/lmxClimateTimes.h>
#include <lmx/DataSources/lmxClimateUnits.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
#include <lmx/DataSources/lmxFramePlayer.h>
#include <lmx/DataSources/lmxFrameSource.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/DataSources/lmxTileCache.h>
#include <lmx/DataSources/lmxTileSource.h>
#include <lmx/DataSources/lmxTileStatistics.h>
#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/DataSources/lmxTiledRasterMapLayerPersist.h>
#include <lmx/DataSources/lmxTimeStrip.h>
