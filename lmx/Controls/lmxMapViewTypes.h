#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Runtime/lmxSet.h>
#include <lmx/Widgets/lmxCursor.h>

namespace lmx {

class TMapViewControl;

/// What the left mouse button does on a map.
enum class TMapMode {
    mdNone, ///< the mouse goes to the layers that want it
    mdPan,
    mdSelection,
    mdPlaceRulerH,
    mdPlaceRulerV,
    mdZoomToSelection,
    mdInfoQuery,
    mdCustom, ///< the mouse goes to the host's IMapViewControlCustomModeObject
};

/// The special layers that a view makes for itself on each manager that it is given.
enum class TSpecialLayers {
    slSelection,
    slRulers,
    slInfoQueryPointLayer,
    slObject,
    slDisableObjectLegendControlOption,
};
using TSpecialLayerAccess = TSet<TSpecialLayers>;

/// Implemented by the host: what the left mouse button does in mdCustom. Points are in device pixels.
class LMX_EXPORT IMapViewControlCustomModeObject {
public:
    virtual ~IMapViewControlCustomModeObject() = default;

    virtual void MouseUp(TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) = 0;
    virtual void MouseDown(TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) = 0;
    virtual void MouseMove(TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) = 0;
    /// Cursor to show in mdCustom.
    virtual TCursor GetCursor() const = 0;
};

using TMapModeChangedEventList = TEventList<TMapViewControl*, TMapMode>;
using TMapViewNotifyEvent = TEvent<TMapViewControl*>;
/// The sender, the place of the mouse in device pixels, and on the map.
using TMouseCursorLocationChangedEvent = TEvent<TMapViewControl*, const TPoint&, const TMapPoint&>;

} // namespace lmx
