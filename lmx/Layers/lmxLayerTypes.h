#pragma once

#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxSet.h>

#include <QString>

#include <functional>
#include <map>

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

enum class TAttributeDataType { adtString, adtFloat, adtInteger };

/// A free attribute of a layer: a text and how it is meant.
struct TAttributeData {
    QString Value;
    TAttributeDataType DataType = TAttributeDataType::adtString;

    TAttributeData() = default;
    TAttributeData(TAttributeDataType dataType, QString value) : Value(std::move(value)), DataType(dataType) {}

    /// What a new attribute begins with: the text "Value".
    static TAttributeData Empty();
    /// Whether `text` is a value of the type: any text, a 32-bit float or a 32-bit integer.
    static bool CheckData(TAttributeDataType dataType, const QString& text);

    friend bool operator==(const TAttributeData&, const TAttributeData&) = default;
};
using TAttributes = std::map<QString, TAttributeData>;

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
