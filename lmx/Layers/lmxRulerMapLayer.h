#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <memory>

namespace lmx {

class TRulerMapLayer;

// "Vertical" and "horizontal" name the axis on which a ruler is read, not the direction of its line: a vertical ruler
// stands at a Y and is drawn as a horizontal line, a horizontal ruler stands at an X and is drawn as a vertical line.

enum class TRulerOrientation { roVertical, roHorizontal };
enum class TPlacingMode { pmVertical, pmHorizontal };

/// A guide line at a map coordinate. Its setters tell nobody: whoever changes a ruler of a layer calls the layer's
/// Invalidate.
class LMX_EXPORT TRulerItem {
public:
    TRulerItem() = default;
    TRulerItem(TRulerOrientation orientation, extended location, TColor32 color)
        : FLocation(location),
          FColor(color),
          FOrientation(orientation) {}

    extended GetLocation() const { return FLocation; } ///< map units: a Y if vertical, an X if horizontal
    void SetLocation(extended location) { FLocation = location; }
    TColor32 GetColor() const { return FColor; }
    void SetColor(TColor32 color) { FColor = color; }
    /// Which list TRulerMapLayer::Add takes. A ruler that is in a list is drawn as its list says, whatever this says.
    TRulerOrientation GetOrientation() const { return FOrientation; }
    void SetOrientation(TRulerOrientation orientation) { FOrientation = orientation; }

private:
    extended FLocation = 0;
    TColor32 FColor = 0;
    TRulerOrientation FOrientation = TRulerOrientation::roVertical;
};

using TRulerEventList = TEventList<TRulerMapLayer*, TRulerItem*>;

/// The straight guide lines of a view, and the one that is being placed. Each crosses the whole view, keeps its map
/// coordinate as the map moves, and does not fold over the seam of a world. Main thread only.
class LMX_EXPORT TRulerMapLayer : public TBaseLayerManagerLayer {
public:
    /// @throws EExArgumentNilException as TBaseLayerManagerLayer.
    explicit TRulerMapLayer(const std::shared_ptr<ILayerManager>& layerManager);
    /// Tells of every ruler that it is removed, the vertical ones first.
    ~TRulerMapLayer() override;

    QString GetLayerTypeName() const override; ///< "Rulers"
    /// Horizontal rulers, then vertical ones, then the one that is being placed, each one pixel thick.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    /// The rulers themselves. Changes of the lists send the events below and repaint.
    TObjectList<TRulerItem>& GetVRulers() { return FVRulers; }
    const TObjectList<TRulerItem>& GetVRulers() const { return FVRulers; }
    TObjectList<TRulerItem>& GetHRulers() { return FHRulers; }
    const TObjectList<TRulerItem>& GetHRulers() const { return FHRulers; }

    /// Appends a ruler to the list of its orientation.
    /// @throws EExArgumentNilException naming "TRulerMapLayer.Add" and "Item" if `item` is nil.
    void Add(std::unique_ptr<TRulerItem> item);
    /// Takes a ruler out of the list that has it and frees it; one that is in neither does nothing.
    void Delete(const TRulerItem* item);

    bool GetIsPlacing() const { return FIsPlacing; }
    TPlacingMode GetPlacingMode() const { return FPlacingMode; }
    extended GetPlacingValue() const { return FPlacingValue; }
    void StartPlacing(TPlacingMode mode, extended value);
    /// Moves the ruler that is being placed; does nothing while none is.
    void SetPlacingValue(extended value);
    /// Ends the placing and keeps the ruler, in opaque cyan. While none is being placed this adds one, at the place and
    /// of the kind of the last placing.
    void ConfirmPlacing();
    void CancelPlacing();

    /// Those behind a subscriber that takes the ruler out again are not told of it.
    TRulerEventList& GetOnRulerAdded() { return FOnRulerAdded; }
    TRulerEventList& GetOnRulerRemoved() { return FOnRulerRemoved; } ///< the ruler still lives

private:
    void Rulers_Notify(TRulerItem* item, TListChange change);

    bool FIsPlacing = false;
    TPlacingMode FPlacingMode = TPlacingMode::pmVertical;
    extended FPlacingValue = 0;
    TRulerEventList FOnRulerAdded;
    TRulerEventList FOnRulerRemoved;
    // Last, so that the lists go while the events are still there.
    TObjectList<TRulerItem> FHRulers;
    TObjectList<TRulerItem> FVRulers;
};

} // namespace lmx
