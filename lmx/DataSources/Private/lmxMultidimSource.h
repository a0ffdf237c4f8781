#pragma once

#include <lmx/DataSources/Private/lmxClimateFileKind.h>
#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <memory>

namespace lmx {

/// Opens NetCDF, HDF5 and Zarr. All calls of the source wait for the reader thread, which also closes the file.
/// @param fileName for messages
/// @throws EClimateFile if the file cannot be opened, or has more than 10,000 arrays or groups within groups more than
/// 32 deep.
std::unique_ptr<IClimateSource> OpenMultidimSource(const TGdalName& name, const QString& fileName);

} // namespace lmx
