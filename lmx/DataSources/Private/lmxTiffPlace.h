#pragma once

#include <lmx/DataSources/lmxClimateAxis.h>

#include <QString>

#include <array>
#include <optional>

class GDALDataset;

namespace lmx {

/// Where the cells of a GeoTIFF lie, as far as this library shows it.
struct TTiffPlace {
    std::optional<TClimateRefusal> Refusal; ///< why it cannot be shown; what follows says nothing then
    std::array<double, 6> Transform = {};   ///< without rotation; longitude before latitude, whatever the axes' order
    bool IsGeographic = true;               ///< degrees, else metres of the New Zealand Map Grid
    QString Note;                           ///< a whole sentence for the user, or empty
};

TTiffPlace TiffPlaceOf(GDALDataset& dataset);

} // namespace lmx
