#pragma once

#include <QString>

#include <cstdint>

class QIODevice;

namespace lmx {

/// What a climate file is, by its content: never by its name, which may say anything.
enum class TClimateFileKind {
    fkUnknown,
    fkNetCDF,     ///< CDF-1 or CDF-2
    fkNetCDF64,   ///< CDF-5
    fkHdf5,       ///< NetCDF-4, or another HDF5
    fkGrib,       ///< edition 1 or 2
    fkTiff,       ///< TIFF or BigTIFF
    fkZarrFolder, ///< Zarr 2
    fkZip         ///< may hold a Zarr
};

/// Kind of a device's content, by its first bytes; HDF5 may begin later, at 512 bytes or a doubling of that.
TClimateFileKind ClimateFileKindOf(QIODevice& device);

/// A file or folder that is there, with its absolute path.
struct TLocalClimateFile {
    QString Path;
    TClimateFileKind Kind = TClimateFileKind::fkUnknown;
    QString Inside = {}; ///< folder in a zip; empty for its top
};

/// Takes a name as a path of this computer and nothing else: no connection, no virtual file, no text that a driver
/// would interpret.
/// @throws EClimateFile "does not exist", "cannot be read", "is no file that is known here: ..."
TLocalClimateFile FindLocalClimateFile(const QString& fileName);

/// What GDAL opens a file by: exactly one driver, so that the content of a file never chooses another one.
struct TGdalName {
    QByteArray Name;
    const char* Driver = nullptr;
    bool IsMultidimensional = true;

    bool IsRemote() const { return Name.startsWith("/vsicurl/"); }
};

/// @throws EClimateFile if the path cannot be told to the driver.
TGdalName GdalNameOf(const TLocalClimateFile& file);

} // namespace lmx
