#pragma once

#include <lmx/Layers/lmxBaseLayerManagerLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <memory>

namespace lmx {

class TBaseObjectLayerItem;
class TObjectMapLayer;

/// The parts of an annotation by name, for hosts that tell of them. What the mouse holds is a TSelectedElement.
enum class TObjectLayerItemHitTest { ohtNone, ohtItem, ohtGrabberTL, ohtGrabberTR, ohtGrabberRB, ohtGrabberLB };

using TObjectLayerEventList = TEventList<TObjectMapLayer*, TBaseObjectLayerItem*>;

/// The annotations of a view: they stand on the view and not on the map, and keep to the edges of the view that they
/// are anchored at. The user selects, moves and resizes them with the mouse.
///
/// Rectangles and points are pixels of the view's buffer. Sizes that are fixed to the eye are multiplied by the device
/// ratio, which the view tells.
///
/// Annotations may do anything in their calls, and so may whoever is told of them: add and remove annotations, free the
/// layer and the view. Main thread only.
class LMX_EXPORT TObjectMapLayer : public TBaseLayerManagerLayer {
public:
    /// `useLegendControl`: whether the layer has a control in which its annotations are edited.
    /// @throws EExArgumentNilException as TBaseLayerManagerLayer.
    TObjectMapLayer(const std::shared_ptr<ILayerManager>& layerManager, bool useLegendControl);
    /// Tells of every annotation that it is removed.
    ~TObjectMapLayer() override;

    QString GetLayerTypeName() const override;      ///< "Objects"
    TMouseSupport GetMouseSupport() const override; ///< all of them
    void CreateLegendComponent() override;
    /// The annotations go, while they can still reach their layers.
    void BeforeLayerManagerRemoved(ILayerManager* manager) override;
    /// The visible annotations, the first of the list at the bottom.
    void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) override;

    /// The topmost annotation that is selected after it was offered the press takes it; those below it are deselected.
    void MouseDown(TWorldViewport* viewport, TPoint point) override;
    /// Repaints, whether a button is down or not.
    void MouseMove(TWorldViewport* viewport, TPoint point, bool isMouseDown) override;
    void MouseUp(TWorldViewport* viewport, TPoint point, bool wasMouseDown) override;

    /// Changes of the list send the events below and repaint.
    TObjectList<TBaseObjectLayerItem>& GetObjects() { return FObjects; }
    const TObjectList<TBaseObjectLayerItem>& GetObjects() const { return FObjects; }

    TBaseObjectLayerItem* GetSelectedObject() const; ///< the first one of the list that is selected, or nil
    /// Selects `item` alone, also one that the mouse cannot select; nil, or one of no list, clears the selection.
    void SetSelectedObject(TBaseObjectLayerItem* item);

    /// Moves and stretches the annotations with the edges of the view that they are anchored at.
    void UpdateLayouts(TWorldViewport* viewport);

    TSize GetPrevViewSize() const { return FPrevViewSize; } ///< the size of the view at the last paint or layout
    void SetPrevViewSize(TSize size) { FPrevViewSize = size; }
    bool GetIsMouseDown() const { return FIsMouseDown; }
    bool GetUseLegendControl() const { return FUseLegendControl; }

    double GetDeviceRatio() const { return FDeviceRatio; } ///< pixels of the buffer in one unit to the eye; 1 at first
    /// A new ratio scales the rectangles and distances of all annotations, rounded. One that is not within 0.001 to
    /// 1000 changes nothing.
    void SetDeviceRatio(double ratio);

    /// An annotation has a new property.
    TObjectLayerEventList& GetOnObjectChanged() { return FOnObjectChanged; }
    /// Those behind a subscriber that takes the annotation out again are not told of it.
    TObjectLayerEventList& GetOnObjectAdded() { return FOnObjectAdded; }
    TObjectLayerEventList& GetOnObjectRemoved() { return FOnObjectRemoved; } ///< it still lives
    TObjectLayerEventList& GetOnObjectSelected() { return FOnObjectSelected; }

private:
    void Objects_Notify(TBaseObjectLayerItem* item, TListChange change);
    TBorrowed<TBaseObjectLayerItem> OfferPress(TWorldViewport* viewport, TPoint point);

    bool FIsMouseDown = false;
    TSize FPrevViewSize;
    bool FUseLegendControl;
    double FDeviceRatio = 1;
    TObjectLayerEventList FOnObjectChanged;
    TObjectLayerEventList FOnObjectAdded;
    TObjectLayerEventList FOnObjectRemoved;
    TObjectLayerEventList FOnObjectSelected;
    TObjectList<TBaseObjectLayerItem> FObjects; // last, so that it goes while the events are still there
};

} // namespace lmx
