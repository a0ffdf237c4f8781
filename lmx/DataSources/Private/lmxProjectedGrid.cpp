#include <lmx/DataSources/Private/lmxProjectedGrid.h>

#include <lmx/DataSources/Private/lmxGdalSession.h>

#include <ogr_spatialref.h>

#include <cmath>
#include <numbers>

namespace lmx {

bool IsNzmg(const OGRSpatialReference& system) {
    const char* const projection = system.IsProjected() ? system.GetAttrValue("PROJECTION") : nullptr;
    return projection && EQUAL(projection, SRS_PT_NEW_ZEALAND_MAP_GRID);
}

bool IsPlainGeographic(const OGRSpatialReference& system) {
    return system.IsGeographic() && std::abs(system.GetPrimeMeridian(static_cast<const char**>(nullptr))) < 1e-9 &&
           std::abs(system.GetAngularUnits(static_cast<const char**>(nullptr)) - std::numbers::pi / 180) < 1e-9;
}

bool IsNzmgText(const QString& wellKnownText) {
    const TQuietGdal quiet;
    OGRSpatialReference system;
    return system.importFromWkt(wellKnownText.toUtf8().constData()) == OGRERR_NONE && IsNzmg(system);
}

} // namespace lmx
