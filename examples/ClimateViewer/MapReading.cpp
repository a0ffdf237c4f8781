#include "MapReading.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QObject>

#include <array>
#include <optional>

#include "Places.h"
#include "TiledRasters.h"

namespace {

QString Degrees(lmx::extended value, QChar positive, QChar negative) {
    return lmx::FloatToFixed(value < 0 ? -value : value, 2) + QChar(0xB0) + ' ' + (value < 0 ? negative : positive);
}

QString PlaceText(const lmx::TMapPoint& place) {
    const lmx::extended longitude = place.X > 180 ? place.X - 360 : place.X;
    return Degrees(longitude, 'E', 'W') + "   " + Degrees(place.Y, 'N', 'S');
}

// The image's number at a place that may be written in another range of longitudes than the image.
float ValueAt(const lmx::TAbstractImage& image, const lmx::TMapPoint& place) {
    for (const lmx::extended turn : std::array<lmx::extended, 3>{0, 360, -360}) {
        const float value = image.GetValue(static_cast<float>(place.X + turn), static_cast<float>(place.Y));
        if (lmx::TSpatialConst::IsValue(value))
            return value;
    }
    return lmx::TSpatialConst::NoData;
}

/// False where the image has no data.
bool ReadRaster(TMapReading& reading, const lmx::TIdrisiMapLayer& raster, const lmx::TMapPoint& place) {
    const float value = ValueAt(*raster.GetImage(), place);
    const bool hasData = lmx::TSpatialConst::IsValue(value);
    const QString text = hasData ? lmx::FloatToFixed(value, 1) + ' ' + raster.GetImage()->getHeader()->GetValueUnits()
                                 : QObject::tr("no data");
    reading.Values.prepend(raster.GetLayerName() + ": " + text);
    return hasData;
}

/// False where nothing of the raster is at hand. The map shows coarser forms of it from further away, whose numbers are
/// not those of the place.
bool ReadTiles(TMapReading& reading, const lmx::TBaseMapLayer& layer, const lmx::TMapPoint& place) {
    const std::optional<float> value = TiledValueAt(layer, place);
    if (value)
        reading.Values.prepend(layer.GetLayerName() + ": " + lmx::FloatToFixed(*value, 1));
    return value.has_value();
}

/// False where no place is drawn.
bool ReadPlaces(TMapReading& reading, const TPlacesLayer& places, const lmx::TPoint& pixel) {
    const lmx::TPin* pin = places.PlaceAt(lmx::TMapPoint(pixel));
    if (pin)
        reading.Place.prepend(pin->GetName() + ", " + pin->GetAttributes()[0]->GetValue() + "   ");
    return pin != nullptr;
}

} // namespace

TMapReading ReadMap(const lmx::TMapViewControl& view, const lmx::TPoint& pixel) {
    TMapReading reading;
    const lmx::TRect shown(0, 0, view.GetDeviceWidth(), view.GetDeviceHeight());
    if (!view.WorldCreated() || !view.GetLayerManager() || !shown.Contains(pixel))
        return reading;
    const lmx::TMapPoint place = view.GetViewport()->PointToMapPoint(lmx::TMapPoint(pixel));
    const lmx::TMapArea& world = view.GetWorldSystem()->Area();
    if (place.X < world.Left || place.X > world.Right || place.Y < world.Bottom || place.Y > world.Top)
        return reading;
    reading.Place = PlaceText(place);
    for (lmx::TBaseMapLayer* layer : view.GetLayerManager()->GetLayers()) {
        if (!layer->GetIsVisible())
            continue;
        const auto* raster = dynamic_cast<const lmx::TIdrisiMapLayer*>(layer);
        const auto* places = dynamic_cast<const TPlacesLayer*>(layer);
        if ((raster && raster->GetImage() && ReadRaster(reading, *raster, place)) ||
            (places && ReadPlaces(reading, *places, pixel)) || ReadTiles(reading, *layer, place))
            reading.Layer = layer;
    }
    return reading;
}
