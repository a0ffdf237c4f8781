#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

class QIODevice;

namespace lmx {

/// Where the cells of a GRIB field lie, as its own grid section says: GDAL takes every grid for one of even rows.
struct TGribGrid {
    QString Refusal;                ///< why it cannot be shown; empty if it can
    std::vector<double> Latitudes;  ///< centres of the rows, the northern one first, as GDAL gives them
    std::vector<double> Longitudes; ///< centres of the columns, ascending; the first as the file has it

    friend bool operator==(const TGribGrid&, const TGribGrid&) = default;
};

/// Fields of a GRIB file in its order, which is that of GDAL's bands: one for each data section. Fields that share a
/// grid section share a number.
struct TGribFields {
    std::vector<TGribGrid> Grids;
    std::vector<std::size_t> GridOfField;
};

/// Reads the sections of every message; no cells.
/// @throws EClimateFile with `fileName` if a message is cut short, damaged or of an unknown edition, or there are more
/// than 100,000.
TGribFields ScanGrib(QIODevice& device, const QString& fileName);

/// The grid of a grid section, edition 1 or 2.
TGribGrid GribGridOf(const QByteArray& section, int edition);

} // namespace lmx
