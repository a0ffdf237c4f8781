#include <lmx/DataSources/Private/lmxTiffPlace.h>

#include <lmx/DataSources/Private/lmxProjectedGrid.h>

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>

namespace lmx {

namespace {

bool LooksLikeDegrees(const std::array<double, 6>& transform, int columns, int rows) {
    const double east = transform[0] + transform[1] * columns;
    const double south = transform[3] + transform[5] * rows;
    return std::max(std::abs(transform[3]), std::abs(south)) <= 90.001 &&
           std::max(std::abs(transform[0]), std::abs(east)) <= 360.001;
}

} // namespace

TTiffPlace TiffPlaceOf(GDALDataset& dataset) {
    TTiffPlace place;
    const auto refuse = [&](TClimateRefusal refusal) {
        place.Refusal = refusal;
        return place;
    };
    if (dataset.GetGeoTransform(place.Transform.data()) != CE_None)
        return refuse(TClimateRefusal::crNoCoordinates);
    if (place.Transform[2] != 0 || place.Transform[4] != 0)
        return refuse(TClimateRefusal::crRotatedImage);
    const OGRSpatialReference* const system = dataset.GetSpatialRef();
    if (!system && !LooksLikeDegrees(place.Transform, dataset.GetRasterXSize(), dataset.GetRasterYSize()))
        return refuse(TClimateRefusal::crNoCoordinates);
    if (!system)
        place.Note =
            QStringLiteral("The file names no reference system; its numbers are taken for degrees of longitude "
                           "and latitude.");
    place.IsGeographic = !system || IsPlainGeographic(*system);
    if (!place.IsGeographic && !IsNzmg(*system))
        return refuse(TClimateRefusal::crProjected);
    return place;
}

} // namespace lmx
