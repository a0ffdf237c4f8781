#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <optional>
#include <vector>

namespace lmx {

class ILayerManager;
class IWorldSystem;
class TBaseMapLayer;

/// A layer of a picture.
struct LMX_EXPORT TMapPictureLayer {
    QString Name;
    QString Type;     ///< its display name, "Idrisi Image (Raster)"
    QString FileName; ///< of its data; empty for data of no file
    QString Lineage;  ///< what its data were made from, in lines: a climate file, variable and time
    QString Units;    ///< of its values
    std::optional<TValueRange> ValueRange; ///< of the data of a raster
    QString Palette; ///< what its colours are: "gradient (0:#FF0000FF),(1:#FFFF0000) from 0 to 30"

    static TMapPictureLayer Of(const TBaseMapLayer& layer);
};

/// What a picture shows, in words. Numbers have a decimal point whatever the locale: the same map gives the same words
/// everywhere.
struct LMX_EXPORT TMapPictureDescription {
    QString Title;
    QString Time;
    QString World;                        ///< name of the world system
    bool IsGeographic = false;            ///< whether the extent is longitudes and latitudes
    TMapArea Extent;                      ///< of the world that is seen
    TSize Pixels;                         ///< of the whole picture
    double Density = 1;                   ///< pixels in one unit to the eye
    std::vector<TMapPictureLayer> Layers; ///< that are painted, from the bottom

    /// The layers of a manager that are painted; not those that lists of layers leave out.
    static std::vector<TMapPictureLayer> LayersOf(const ILayerManager& manager);

    /// "west -180, south -90, east 180, north 90"
    QString ExtentText() const;
    /// A line for each layer: name, type, units, range, palette, file and lineage, as far as there are any.
    QString LayersText() const;
    /// One sentence for those who cannot see the picture: what it is, of where, when, with which layers.
    QString AlternativeText() const;
    /// All of it in lines, for a file beside or inside the picture.
    QString ToText() const;
};

} // namespace lmx
