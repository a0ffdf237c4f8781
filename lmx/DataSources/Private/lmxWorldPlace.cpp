#include <lmx/DataSources/Private/lmxWorldPlace.h>

#include <lmx/DataSources/lmxClimateAxis.h>

#include <cmath>

namespace lmx {

namespace {

/// `west` moved by whole turns to `seam` or up to a turn east of it.
double EastOf(double seam, double west, double step) {
    const double moved = west - 360 * std::floor((west - seam + PlaceSlack * step) / 360);
    return SnappedPlace(moved, seam, step);
}

} // namespace

QString LatLonName() {
    return QStringLiteral("latlon");
}

QString LatLonAntimeridianName() {
    return QStringLiteral("latlonAntimerdian");
}

double SnappedPlace(double place, double goal, double step) {
    return std::abs(place - goal) <= PlaceSlack * step ? goal : place;
}

TRegionPlace PlaceRegion(const QString& axis, double west, double width, double step) {
    const double inLatLon = EastOf(-180, west, step);
    const double east = SnappedPlace(inLatLon + width, 180, step);
    if (east <= 180)
        return {inLatLon, east, LatLonName()};
    const double overAntimeridian = EastOf(0, west, step);
    const double farEast = SnappedPlace(overAntimeridian + width, 360, step);
    if (farEast <= 360)
        return {overAntimeridian, farEast, LatLonAntimeridianName()};
    RefuseAxis(axis, QStringLiteral("reaches over 0 and 180 degrees without closing the circle."));
}

void RefuseAxis(const QString& axis, const QString& problem) {
    throw EClimateRefusal(QStringLiteral("Axis \"%1\" ").arg(axis) + problem +
                          QStringLiteral(" Regrid it first, for example: cdo remapbil,r360x180 in out"));
}

} // namespace lmx
