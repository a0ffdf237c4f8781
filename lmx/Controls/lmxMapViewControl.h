#pragma once

#include <lmx/Controls/lmxMapViewTypes.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Layers/lmxLayerTypes.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Widgets/lmxPaintBox32.h>

#include <QMenu>
#include <QString>

#include <functional>
#include <memory>

namespace lmx {

class TCrosshair;
class TInfoQueryPointLayer;
class TMapCheckerboard;
class TMapMouse;
class TObjectMapLayer;
class TRulerMapLayer;
class TSelectionMapLayer;
class TSpecialLayerSet;
enum class TPlacingMode;

/// The control that shows a map. It holds a world and a viewport, listens to a layer manager and repaints the whole
/// stack of layers into its back buffer: background, visible ready layers from index 0, special layers, crosshair,
/// focus border.
///
/// Pixels of the viewport, of layers and of events are device pixels of the buffer. Changes coalesce: RepaintMap only
/// marks the buffer invalid. Without a world the view shows its background; the first ordinary layer that has a world
/// system makes the world. Several views may show one manager. A hidden view follows its size, too, as far as its
/// viewport goes. Main thread only.
///
/// Whoever is told by the view, of it, or by one of its dialogs may change everything and destroy the view; what it was
/// about to do then ends quietly. A view that is destroyed is not called again. In the middle of Qt's own resizing,
/// showing and painting of a widget, and of grab, Qt needs it: there use deleteLater. A map that repaints itself paints
/// its layers outside of that.
class LMX_EXPORT TMapViewControl : public TPaintBox32, public TEventReceiver {
public:
    /// A view with every kind of special layer.
    explicit TMapViewControl(QWidget* owner = nullptr);
    TMapViewControl(QWidget* owner, TSpecialLayerAccess specialLayers);
    ~TMapViewControl() override;

    const std::shared_ptr<ILayerManager>& GetLayerManager() const { return FLayerManager; }
    /// Shows another manager, or none with nil. World and viewport survive; the special layers and what they hold go.
    /// Where somebody who is told of the layers that go and come sets yet another manager, that one stays.
    void SetLayerManager(const std::shared_ptr<ILayerManager>& manager);

    /// The special layers, on top of the stack of the present manager; nil without a manager, for a kind that the view
    /// was not asked for, and once it has left the manager's list. The selection is painted in the two selection modes
    /// while it is enabled, the others always.
    TSelectionMapLayer* GetSpSelectionLayer() const;
    TRulerMapLayer* GetSpRulersLayer() const;
    TInfoQueryPointLayer* GetSpInfoQueryPointsLayer() const;
    TObjectMapLayer* GetSpObjectLayer() const;

    bool WorldCreated() const { return FWorld != nullptr; }
    TWorld* GetWorld() const { return FWorld.get(); } ///< nil until a world exists
    /// Nil until a world exists. It has the size that the view has now; where it had another one, its subscribers and
    /// OnViewportUpdated are told first.
    TWorldViewport* GetViewport() const;
    /// Makes the world at scale 1 and translation 0; nil does nothing.
    void CreateWorldAndViewport(const std::shared_ptr<IWorldSystem>& worldSystem);
    /// Without a world, CreateWorldAndViewport. Otherwise the world takes the system and every ordinary layer is
    /// invalidated; scale and translation stay as numbers.
    void ChangeWorldSystem(const std::shared_ptr<IWorldSystem>& worldSystem);
    /// @throws EInvalidOperation "World not created".
    const std::shared_ptr<IWorldSystem>& GetWorldSystem() const;

    /// Asks for a paint; several calls before the next paint give one. What fails in it is shown as "Error in
    /// RepaintMap()".
    void RepaintMap();
    /// Scale up by FZoomScale around the centre, or down. Not inverse to each other. Nothing without a viewport or
    /// while the middle mouse button is held.
    void ZoomIn();
    void ZoomOut();
    /// Shows the area of a layer of the manager's stack; anything else does nothing.
    void ZoomTo(TBaseMapLayer* layer);
    /// @throws EInvalidOperation "World not created".
    void SetCenter(const TMapPoint& mapPoint);
    /// Map position of the last mouse press.
    /// @throws EInvalidOperation "World not created".
    TMapPoint GetMapPoint() const;

    TMapMode GetMode() const { return FMode; }
    /// Sets the cursor and tells subscribers. What the old mode began is not ended.
    void SetMode(TMapMode mode);
    /// Set before mdCustom.
    void SetCustomModeObject(const std::shared_ptr<IMapViewControlCustomModeObject>& object) {
        FCustomModeObject = object;
    }
    const std::shared_ptr<IMapViewControlCustomModeObject>& GetCustomModeObject() const { return FCustomModeObject; }
    bool GetAutoPan() const;
    void SetAutoPan(bool autoPan); ///< whether the held space bar turns any mode into panning
    bool GetIsMouseDown() const;
    void EnterPanMode();
    void ExitPanMode();

    TColor32 GetBackgroundColor() const { return FBackgroundColor; }
    void SetBackgroundColor(TColor32 color);
    bool GetShowCheckerboard() const { return FShowCheckerboard; }
    void SetShowCheckerboard(bool show);
    bool GetShowCrosshair() const;
    void SetShowCrosshair(bool show); ///< the first paint after this shows none yet
    const TMapPoint& GetCrosshairMapPoint() const;
    void SetCrosshairMapPoint(const TMapPoint& point);
    TColor32 GetCrosshairColor() const;
    void SetCrosshairColor(TColor32 color);
    int GetCrosshairThickness() const; ///< in logical pixels
    void SetCrosshairThickness(int thickness);
    bool GetCrosshairHighlights() const;
    void SetCrosshairHighlights(bool highlights);
    bool GetShowFocusedBorder() const { return FShowFocusedBorder; }
    void SetShowFocusedBorder(bool show);
    float GetZoomScale() const { return FZoomScale; } ///< share of the scale that one zoom step adds or takes
    void SetZoomScale(float zoomScale) { FZoomScale = zoomScale; }

    QMenu* GetPopupMenu() const { return FPopupMenu; }
    /// Appends an entry; a caption of "-" makes it a line between entries.
    QAction* AddPopupMenuItem(const QString& caption, std::function<void()> click);
    void PopupMenu_ChangeBackgroundColor_Click();
    void PopupMenu_ToggleCheckerboard_Click();
    /// Handlers for hosts that want them in the menu: the view's state to the clipboard, and boxes that ask for the
    /// translation ("x,y") and the scale.
    /// @throws EInvalidOperation "World not created". @throws EConvertError for a text that is no number.
    void PopupMenu_DbgCopyData();
    void PopupMenu_DbgTranslation();
    void PopupMenu_DbgZoomScale();

    TMapModeChangedEventList& GetOnModeChanged() { return FOnModeChanged; }
    void SetOnMouseCursorLocationChanged(TMouseCursorLocationChangedEvent event) {
        FOnMouseCursorLocationChanged = std::move(event);
    }
    void SetOnViewportUpdated(TMapViewNotifyEvent event) { FOnViewportUpdated = std::move(event); }
    void SetOnBeforeLayerManagerChanged(TMapViewNotifyEvent event) { FOnBeforeLayerManagerChanged = std::move(event); }
    void SetOnAfterLayerManagerChanged(TMapViewNotifyEvent event) { FOnAfterLayerManagerChanged = std::move(event); }

    /// Subscribes to a manager's events, or takes part of the subscriptions back: which ones is fixed and uneven.
    /// @throws EExArgumentNilException if `manager` is nil.
    void RegisterLayerManagerEvents(ILayerManager* manager, bool registering);
    /// Makes the special layers on a manager, or removes them, whereby rulers and query points go, too.
    /// @throws EExArgumentNilException if `manager` is nil.
    void RegisterSpecialLayers(const std::shared_ptr<ILayerManager>& manager, bool registering);

    void DoPaintBuffer() override;
    void Resize() override;
    void UpdateViewSize();

protected:
    /// Makes the layer of annotations for a manager; nil: the view has none. The view tells it the device ratio.
    virtual std::unique_ptr<TObjectMapLayer> CreateObjectLayer(const std::shared_ptr<ILayerManager>& manager,
                                                               bool allowLegendControlOption);

    void MouseDown(TMouseButton button, TPoint point) override;
    void MouseMove(TPoint point) override;
    void MouseUp(TMouseButton button, TPoint point) override;
    void KeyDown(int key) override;
    void KeyUp(int key) override;
    void DoEnter() override;
    void DoExit() override;

    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void CreateMapControl();
    void ExchangeLayerManager(const std::shared_ptr<ILayerManager>& next);

    void LayerManager_LayerAdded(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerRemoved(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerVisibilityChanged(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerReadyToDraw(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerMoved(ILayerManager* manager, int fromIndex, int toIndex);
    void LayerManager_OnMapCommand(TBaseMapLayer* layer, TLayerMapCommand command, void* data);
    void Viewport_Changed(TWorldViewport* viewport);
    TWorldViewport& RequireViewport() const;
    std::unique_ptr<TObjectMapLayer> MakeObjectLayer(const std::shared_ptr<ILayerManager>& manager);
    void TellDeviceRatio() const;
    void ZoomBy(float share);
    template<class Value>
    void Store(Value& present, const Value& value);
    void RepaintIf(bool hasChanged);

    void PaintBackground(TBitmap32& buffer);
    bool PaintStack(TBitmap32& buffer);
    void PaintFocusBorder(TBitmap32& buffer);
    int ScaledToDevice(int logicalPixels) const;

    void LeftButtonDown(TPoint point);
    void LeftButtonMove(TPoint point);
    void LeftButtonUp(TPoint point, bool wasDown);
    void StartSelection(TPoint point);
    void StartPlacingRuler(TPlacingMode mode, extended value);
    void MovePlacedRuler(extended value);
    void AddInfoQueryPoint(TPoint point);
    void ZoomToSelection();
    void OfferPress(TPoint point);
    void OfferMove(TPoint point);
    void OfferRelease(TPoint point, bool wasDown);
    TBaseMapLayer* LayerTaking(TMouseSupportAction action) const;
    void PanStep(TPoint point);
    TMapPoint MapPointAt(TPoint point) const;
    TMapMode EffectiveMode(bool isPanning) const { return isPanning ? TMapMode::mdPan : FMode; }
    void NoticeLostRelease(const QMouseEvent& event);

    std::shared_ptr<ILayerManager> FLayerManager;
    int FManagerTurn = 0; // grows with each exchange of managers
    std::unique_ptr<TWorld> FWorld;
    std::unique_ptr<TWorldViewport> FViewport; // after the world: it goes first
    extended FScaleAmount = 0.1L;              // given to each viewport as its minimum scale
    TMapMode FMode = TMapMode::mdNone;
    TColor32 FBackgroundColor = clWhite32;
    TSpecialLayerAccess FSpecialLayerAccess;
    std::shared_ptr<IMapViewControlCustomModeObject> FCustomModeObject;
    std::unique_ptr<TSpecialLayerSet> FSpecialLayers;
    std::unique_ptr<TMapMouse> FMouse;
    std::unique_ptr<TMapCheckerboard> FCheckerboard;
    std::unique_ptr<TCrosshair> FCrosshair;
    TMouseCursorLocationChangedEvent FOnMouseCursorLocationChanged;
    TMapViewNotifyEvent FOnViewportUpdated;
    TMapModeChangedEventList FOnModeChanged;
    QMenu* FPopupMenu = nullptr;
    TMapViewNotifyEvent FOnBeforeLayerManagerChanged;
    TMapViewNotifyEvent FOnAfterLayerManagerChanged;
    bool FShowCheckerboard = false;
    float FZoomScale = 0.04F;
    bool FShowFocusedBorder = false;
    bool FIsDestroying = false;
};

} // namespace lmx
