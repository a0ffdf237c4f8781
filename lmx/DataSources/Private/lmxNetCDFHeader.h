#pragma once

#include <QString>

class QIODevice;

namespace lmx {

/// Reads the header of a classic NetCDF file (CDF-1, CDF-2, CDF-5) and tells how long a file with it is: where the last
/// cell of the last variable ends. Neither GDAL nor NetCDF's own library asks: they read what is missing as 0.
/// @throws EClimateFile with `fileName` if the header is cut short or contradicts itself, or tells of more than 10,000
/// variables.
quint64 NetCDFLengthOf(QIODevice& device, const QString& fileName);

/// @throws EClimateFile as NetCDFLengthOf, or if the file is shorter than its header tells.
void CheckNetCDFLength(QIODevice& device, const QString& fileName);

} // namespace lmx
