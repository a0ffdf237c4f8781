#pragma once

#include <lmx/DataSources/Private/lmxClimateFileKind.h>
#include <lmx/DataSources/Private/lmxClimateSource.h>

#include <QByteArray>
#include <QStringList>

#include <memory>

namespace lmx {

/// Opens a climate file by its content, once it has been looked at: what is cut short or reaches outside of itself
/// never comes to GDAL.
/// @throws EClimateFile
std::unique_ptr<IClimateSource> OpenClimateSource(const QString& fileName, const QStringList& allowedHosts);

/// The same for a file that stands in memory, after the same looks; HDF5, Zarr and texts are not read from there.
/// @param name for messages
/// @throws EClimateFile
std::unique_ptr<IClimateSource> OpenClimateBytes(const QByteArray& bytes, const QString& name);

/// What GDAL opens a GeoTIFF by, on this computer or on a host that is allowed.
/// @throws EClimateFile if it is missing, or no TIFF.
TGdalName GdalNameOfTiff(const QString& fileName, const QStringList& allowedHosts);

} // namespace lmx
