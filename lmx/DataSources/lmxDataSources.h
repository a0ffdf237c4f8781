#pragma once

/// Everything that a host may use of this room: climate files. It stands in a library of its own, lmx::datasources.

#include <lmx/DataSources/lmxClimateAttributes.h>
#include <lmx/DataSources/lmxDataSourcesExport.h>
