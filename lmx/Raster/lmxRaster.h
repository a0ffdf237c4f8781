#pragma once

/// Everything that a host may use of this room: grids of numbers in memory and in files.

#include <lmx/Raster/lmxArcInfoAsciiGridHeading.h>
#include <lmx/Raster/lmxArcInfoAsciiGridRasterFrame.h>
#include <lmx/Raster/lmxBaseLinearRasterFrame.h>
#include <lmx/Raster/lmxBaseRasterFrame.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Raster/lmxFieldArithmetic.h>
#include <lmx/Raster/lmxFieldRegion.h>
#include <lmx/Raster/lmxFieldStatistics.h>
#include <lmx/Raster/lmxGaussianToGridInterpolation.h>
#include <lmx/Raster/lmxIdrisiRasterFrame.h>
#include <lmx/Raster/lmxLinearRasterFrame.h>
#include <lmx/Raster/lmxRasterFrame.h>
#include <lmx/Raster/lmxRasterTables.h>
#include <lmx/Raster/lmxSingleGrid.h>
