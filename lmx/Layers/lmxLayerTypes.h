#pragma once

#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxSet.h>

#include <QString>

#include <functional>

namespace lmx {

class ILayerManager;
class TBaseLegendControl;
class TBaseMapLayer;

/// Marks of a layer.
enum class TLayerFlag {
    lfSpecial, ///< belongs to the view, not to the user's stack
};
using TLayerFlags = TSet<TLayerFlag>;

/// What a user may do with a layer in a list of layers.
enum class TLayerOptionFlag { lofDelete, lofRename, lofProperties, lofDuplicate };
using TLayerOptionFlags = TSet<TLayerOptionFlag>;

/// Mouse events that a layer wants.
enum class TMouseSupportAction { msMouseDown, msMouseUp, msMouseMove, msRightClick };
using TMouseSupport = TSet<TMouseSupportAction>;

/// What a layer asks of the map that shows it.
enum class TLayerMapCommand {
    cmdGotoExtent, ///< zoom to the layer's area
};

/// An entry of a layer's context menu. The text "-" is a separator; "&" stands before the access key.
struct TLayerMenuItem {
    QString FText;
    bool FEnabled = true;
    std::function<void()> FEvent; ///< empty for a separator; does nothing once the layer is gone

    TLayerMenuItem(QString text, bool enabled, std::function<void()> event)
        : FText(std::move(text)),
          FEnabled(enabled),
          FEvent(std::move(event)) {}
};

using TLayerEventList = TEventList<TBaseMapLayer*>;
using TLegendCompChangedEventList = TEventList<TBaseMapLayer*, TBaseLegendControl*>;
using TMapCommandEventList = TEventList<TBaseMapLayer*, TLayerMapCommand, void*>;
using TLayerManagerEventList = TEventList<ILayerManager*>;
using TLayerManagerLayerEventList = TEventList<ILayerManager*, TBaseMapLayer*>;
using TLayerManagerLayerMovedEventList = TEventList<ILayerManager*, int, int>; ///< manager, from index, to index

} // namespace lmx
