#pragma once

#include <QString>
#include <QStringList>

namespace lmx {
class TBaseMapLayer;
class TMapViewControl;
struct TPoint;
} // namespace lmx

/// What a map shows at a pixel, in words.
struct TMapReading {
    QString Place;                       ///< longitude and latitude, behind the name of a place that is drawn there
    QStringList Values;                  ///< of each visible raster with its name and unit, the top one first
    lmx::TBaseMapLayer* Layer = nullptr; ///< the top layer with a place or a value there, or nil
};

/// Reads the map at a device pixel of a view. Nothing outside the view and outside the world.
TMapReading ReadMap(const lmx::TMapViewControl& view, const lmx::TPoint& pixel);
