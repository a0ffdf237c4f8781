#pragma once

#include <lmx/DataSources/lmxClimateDataset.h>

#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

// The files of tests/data/netcdf and the formula by which the made ones are made.

namespace lmx::tests {

inline QString ClimateSample(const QString& name) {
    return QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf/") + name;
}

inline std::vector<double> Steps(double first, double step, int count) {
    std::vector<double> values;
    for (int i = 0; i < count; ++i)
        values.push_back(first + step * i);
    return values;
}

/// Kelvin at a place.
inline double SampleField(double lat, double lon, double shift = 0) {
    const double la = lat * std::numbers::pi / 180;
    const double lo = lon * std::numbers::pi / 180;
    return 300 - 50 * std::sin(la) * std::sin(la) + 5 * std::cos(la) * std::cos(lo) + 2 * std::sin(la) + shift;
}

/// The value that a picture shows at a place, whichever longitudes it counts in.
inline float ShownAt(const TClimatePicture& picture, double lon, double lat) {
    const TImageHeader& header = *picture.Image->getHeader();
    while (lon < double(header.GetMinX()))
        lon += 360;
    while (lon > double(header.GetMaxX()))
        lon -= 360;
    return picture.Image->GetValue(float(lon), float(lat));
}

/// Reads a variable in the units of the file.
inline TClimatePicture ReadSample(const TClimateDataset& dataset, const QString& variable, std::size_t time = 0,
                                  std::size_t level = 0) {
    return dataset.Read({dataset.FindVariable(variable).GetValue(), time, level, TClimateShownUnits::suFile});
}

/// Every cell of a grid, a little beside its centre: where the seam or a pole cuts a cell, that is the edge of two.
template<class Expected>
void ExpectCells(const TClimatePicture& picture, const std::vector<double>& lats, const std::vector<double>& lons,
                 Expected&& expected, double tolerance = 2e-5) {
    constexpr double beside = 0.01;
    for (const double lat : lats)
        for (const double lon : lons)
            ASSERT_NEAR(double(ShownAt(picture, lon + beside, lat > 0 ? lat - beside : lat + beside)),
                        expected(lat, lon), tolerance)
                << lat << ' ' << lon;
}

inline void ExpectField(const TClimatePicture& picture, const std::vector<double>& lats,
                        const std::vector<double>& lons, double shift = 0, double tolerance = 2e-5) {
    ExpectCells(
        picture, lats, lons, [=](double lat, double lon) { return SampleField(lat, lon, shift); }, tolerance);
}

/// The axes of most files.
inline std::vector<double> Lats10() {
    return Steps(-85, 10, 18);
}
inline std::vector<double> Lons10() {
    return Steps(5, 10, 36);
}

} // namespace lmx::tests
