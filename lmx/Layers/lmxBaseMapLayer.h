#pragma once

#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/lmxAttributeData.h>
#include <lmx/Layers/lmxLayerTypes.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <memory>
#include <vector>

namespace lmx {

class TBitmap32;
class TLayerPropertiesDialog;
class TWorld;
class TWorldViewport;

/// Root of every layer. A layer draws itself in Paint and nowhere else; it calls downwards into its data and upwards
/// only by events. It is not painted until something makes it ready to draw. Setters act only on a real change: the new
/// value is stored, then the event is sent. Main thread only.
class LMX_EXPORT TBaseMapLayer : public TEventReceiver {
public:
    TBaseMapLayer();
    virtual ~TBaseMapLayer();
    TBaseMapLayer(const TBaseMapLayer&) = delete;
    TBaseMapLayer& operator=(const TBaseMapLayer&) = delete;

    /// Builds the legend control and hands it to SetLegendComponent. Here: nothing.
    virtual void CreateLegendComponent();
    /// Whether lists of layers show it. Here: true.
    virtual bool GetShowsInLayersList() const;
    /// Mouse events that it wants. Here: none.
    virtual TMouseSupport GetMouseSupport() const;
    /// Here: delete, rename and properties; a layer that can be duplicated adds lofDuplicate itself.
    virtual TLayerOptionFlags GetLayerOptionFlags() const;
    /// Whether there is anything to paint. Here: true.
    virtual bool GetHasContent() const;
    /// @throws ENotSupportedException "Duplication method not provided".
    virtual std::unique_ptr<TBaseMapLayer> Duplicate() const;
    /// Draws the layer into `bitmap`, in device pixels of the viewport. Here: nothing.
    virtual void Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap);
    /// Says that the picture of the layer is out of date: sends "ready to draw changed" twice (not ready, ready) and
    /// "invalidated", and leaves the layer ready. Between BeginUpdate and EndUpdate it is only counted.
    virtual void Invalidate();
    /// Display name of the type of layer.
    virtual QString GetLayerTypeName() const = 0;
    /// Name of the class without its leading "T": the key of the type in documents and factories.
    virtual QString GetLayerClassName() const;
    /// Appends the layer's menu entries: "&Goto Extent" if the layer's area is not all zero.
    /// @throws EExArgumentNilException if `list` is nil.
    virtual void GetContextMenuItems(std::vector<TLayerMenuItem>* list);
    /// Appends the layer's pages to its properties dialog. Here: "Extent" and "Layer attributes".
    /// @throws EExArgumentNilException if `dialog` is nil.
    virtual void InitPropertiesDialog(TLayerPropertiesDialog* dialog);
    /// Mouse events, in device pixels; only those of GetMouseSupport arrive. Here: nothing.
    virtual void MouseDown(TWorldViewport* viewport, TPoint point);
    virtual void MouseMove(TWorldViewport* viewport, TPoint point, bool isMouseDown);
    virtual void MouseUp(TWorldViewport* viewport, TPoint point, bool wasMouseDown);

    /// Holds invalidations back. Does not nest.
    void BeginUpdate();
    /// Ends the update; calls Invalidate once if there was any in between.
    void EndUpdate();

    bool GetIsVisible() const { return FIsVisible; } ///< the user's show or hide
    void SetIsVisible(bool isVisible);
    bool GetIsReadyToDraw() const { return FIsReadyToDraw; }
    void SetIsReadyToDraw(bool isReadyToDraw);
    const QString& GetLayerName() const { return FLayerName; }
    void SetLayerName(const QString& name);
    /// The extent and the world system in which it is to be read; all zero and no world system until set.
    const TWorldMapArea& GetLayerArea() const { return FLayerArea; }
    void SetLayerArea(const TWorldMapArea& area);
    void StoreLayerArea(const TWorldMapArea& area) { FLayerArea = area; } ///< tells nobody; for documents
    /// The legend control, or nil. Replacing frees the old one. The host's form owns a control that has a parent; one
    /// without goes with its layer.
    TBaseLegendControl* GetLegendComponent() const;
    void SetLegendComponent(TBaseLegendControl* component);
    TAttributes& GetAttributes() { return FAttributes; }
    const TAttributes& GetAttributes() const { return FAttributes; }
    const QUuid& GetLayerID() const { return FLayerID; } ///< fresh at construction; documents restore it
    void SetLayerID(const QUuid& id) { FLayerID = id; }
    std::intptr_t GetTag() const { return FTag; } ///< free for the host
    void SetTag(std::intptr_t tag) { FTag = tag; }
    TLayerFlags GetFlags() const { return FFlags; }
    void SetFlags(TLayerFlags flags) { FFlags = flags; } ///< before the layer is added to a manager

    void DoNotifyInvalidated();
    void DoNotifyReadyToDraw();
    /// Asks the map to zoom to the layer's area, unless that is all zero.
    void GotoExtendMenuItem_Click();

    TLayerEventList& GetOnLayerNameChanged() { return FOnLayerNameChanged; }
    TLayerEventList& GetOnVisibilityChanged() { return FOnVisibilityChanged; }
    TLegendCompChangedEventList& GetOnLegendComponentChanged() { return FOnLegendComponentChanged; }
    TLayerEventList& GetOnReadyToDrawChanged() { return FOnReadyToDrawChanged; }
    TLayerEventList& GetOnInvalidated() { return FOnInvalidated; }
    TLayerEventList& GetOnLayerAreaChanged() { return FOnLayerAreaChanged; }
    TMapCommandEventList& GetOnMapCommand() { return FOnMapCommand; }

protected:
    /// Copies name, tag, flags and area; not visibility, attributes or id.
    void UpdateDuplicateBaseMapLayer(TBaseMapLayer* target) const;

    /// `action` as a menu event that does nothing once this layer is gone.
    std::function<void()> MenuEvent(std::function<void()> action) const;

private:
    bool HasArea() const;

    bool FIsVisible = true;
    QString FLayerName;
    TAttributes FAttributes;
    TBaseLegendControl* FLegendComponent = nullptr; // while FLegendObject lives
    QPointer<QObject> FLegendObject;
    bool FIsReadyToDraw = false;
    bool FUpdating = false;
    int FInvalidateCount = 0;
    TLayerEventList FOnLayerNameChanged;
    TLayerEventList FOnVisibilityChanged;
    TLegendCompChangedEventList FOnLegendComponentChanged;
    TLayerEventList FOnReadyToDrawChanged;
    TLayerEventList FOnInvalidated;
    TLayerEventList FOnLayerAreaChanged;
    TMapCommandEventList FOnMapCommand;
    QUuid FLayerID;
    std::intptr_t FTag = 0;
    TLayerFlags FFlags;
    TWorldMapArea FLayerArea;
};

} // namespace lmx
