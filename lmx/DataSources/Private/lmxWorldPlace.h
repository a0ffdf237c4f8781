#pragma once

#include <QString>

namespace lmx {

/// What rounding in files makes of the same place, in cells.
inline constexpr double PlaceSlack = 1e-3;

QString LatLonName();             ///< of the world from -180 to 180
QString LatLonAntimeridianName(); ///< of the world from 0 to 360

/// `place`, or `goal` if it differs from it by rounding alone.
double SnappedPlace(double place, double goal, double step);

/// Where a region lies that does not go round the earth.
struct TRegionPlace {
    double West = 0;
    double East = 0;
    QString World;
};

/// Moves a region by whole turns into -180 to 180 or, failing that, into 0 to 360.
/// @throws EClimateRefusal `Axis "lon" reaches over 0 and 180 degrees without closing the circle. Regrid ...`
TRegionPlace PlaceRegion(const QString& axis, double west, double width, double step);

/// @throws EClimateRefusal always: the axis, the problem and a way out.
[[noreturn]] void RefuseAxis(const QString& axis, const QString& problem);

} // namespace lmx
