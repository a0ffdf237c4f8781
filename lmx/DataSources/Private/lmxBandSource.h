#pragma once

#include <lmx/DataSources/Private/lmxClimateFileKind.h>
#include <lmx/DataSources/Private/lmxClimateSource.h>
#include <lmx/DataSources/Private/lmxGribGrid.h>

#include <memory>

namespace lmx {

/// Opens GeoTIFF: each band an array on the dimensions of its centres, "/lat" and "/lon", or "/y" and "/x" with the
/// grid mapping "/crs"; an alpha band is none, but the mask of all others. The file is read on the thread of the
/// caller, one at a time.
/// @param fileName for messages
/// @throws EClimateFile if it cannot be opened.
std::unique_ptr<IClimateSource> OpenTiffSource(const TGdalName& name, const QString& fileName);

/// Opens GRIB: fields of one element, kind of level and grid become an array on time and level, in the order of the
/// file. Its coordinates are those of its own grid sections. All calls wait for the reader thread.
/// @param fields what the sections tell
/// @throws EClimateFile if it cannot be opened, or GDAL finds other fields than its sections tell.
std::unique_ptr<IClimateSource> OpenGribSource(const TGdalName& name, const TGribFields& fields,
                                               const QString& fileName);

} // namespace lmx
