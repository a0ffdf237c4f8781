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

class TBitmap32;
class TInfoQueryPointLayer;
class TRulerMapLayer;
class TSelectionMapLayer;

/// The control that shows a map. It holds a world and a viewport, listens to a layer manager and repaints the whole
/// stack of layers into its back buffer: background, visible ready layers from index 0, special layers, crosshair,
/// focus border.
///
/// Pixels of the viewport, of layers and of events are device pixels of the buffer. Changes coalesce: RepaintMap only
/// marks the buffer invalid. Without a world the view shows its background; the first ordinary layer that has a world
/// system makes the world. Several views may show one manager. A view that is destroyed is not called again. Main
/// thread only.
class LMX_EXPORT TMapViewControl : public TPaintBox32, public TEventReceiver {
public:
    /// A view with every kind of special layer.
    explicit TMapViewControl(QWidget* owner = nullptr);
    TMapViewControl(QWidget* owner, TSpecialLayerAccess specialLayers);
    ~TMapViewControl() override;

    const std::shared_ptr<ILayerManager>& GetLayerManager() const { return FLayerManager; }
    /// Shows another manager, or none with nil. World and viewport survive; the special layers and what they hold go.
    void SetLayerManager(const std::shared_ptr<ILayerManager>& manager);

    /// The special layers, on top of the stack of the present manager; nil without a manager, for a kind that the view
    /// was not asked for, and once it has left the manager's list. The selection is painted in the two selection modes
    /// while it is enabled, the others always.
    TSelectionMapLayer* GetSpSelectionLayer() const { return FSpSelectionLayer.Get(); }
    TRulerMapLayer* GetSpRulersLayer() const { return FSpRulersLayer.Get(); }
    TInfoQueryPointLayer* GetSpInfoQueryPointsLayer() const { return FSpInfoQueryPointsLayer.Get(); }
    TBaseMapLayer* GetSpObjectLayer() const { return FSpObjectLayer.Get(); } ///< what CreateObjectLayer made

    bool WorldCreated() const { return FWorld != nullptr; }
    TWorld* GetWorld() const { return FWorld.get(); }               ///< nil until a world exists
    TWorldViewport* GetViewport() const { return FViewport.get(); } ///< nil until a world exists
    /// Makes the world at scale 1 and translation 0; nil does nothing.
    void CreateWorldAndViewport(const std::shared_ptr<IWorldSystem>& worldSystem);
    /// Without a world, CreateWorldAndViewport. Otherwise the world takes the system and every ordinary layer is
    /// invalidated; scale and translation stay as numbers.
    void ChangeWorldSystem(const std::shared_ptr<IWorldSystem>& worldSystem);
    /// @throws EInvalidOperation "World not created".
    const std::shared_ptr<IWorldSystem>& GetWorldSystem() const;

    /// Asks for a paint; several calls before the next paint give one.
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
    bool GetAutoPan() const { return FAutoPan; }
    void SetAutoPan(bool autoPan) { FAutoPan = autoPan; } ///< whether the held space bar turns any mode into panning
    bool GetIsMouseDown() const { return FIsMouseDown; }
    void EnterPanMode();
    void ExitPanMode();

    TColor32 GetBackgroundColor() const { return FBackgroundColor; }
    void SetBackgroundColor(TColor32 color);
    bool GetShowCheckerboard() const { return FShowCheckerboard; }
    void SetShowCheckerboard(bool show);
    bool GetShowCrosshair() const { return FShowCrosshair; }
    void SetShowCrosshair(bool show);
    const TMapPoint& GetCrosshairMapPoint() const { return FCrosshairMapPoint; }
    void SetCrosshairMapPoint(const TMapPoint& point);
    TColor32 GetCrosshairColor() const { return FCrosshairColor; }
    void SetCrosshairColor(TColor32 color);
    int GetCrosshairThickness() const { return FCrosshairThickness; }
    void SetCrosshairThickness(int thickness);
    bool GetCrosshairHighlights() const { return FCrosshairHighlights; }
    void SetCrosshairHighlights(bool highlights);
    bool GetShowFocusedBorder() const { return FShowFocusedBorder; }
    void SetShowFocusedBorder(bool show);
    float GetZoomScale() const { return FZoomScale; } ///< share of the scale that one zoom step adds or takes
    void SetZoomScale(float zoomScale) { FZoomScale = zoomScale; }

    QMenu* GetPopupMenu() const { return FPopupMenu; }
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
    /// Makes the layer of annotations for a manager, or nil. Here: nil, no such layer exists yet.
    virtual std::unique_ptr<TBaseMapLayer> CreateObjectLayer(const std::shared_ptr<ILayerManager>& manager,
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
    void AddSpecialLayers(const std::shared_ptr<ILayerManager>& manager);
    void RemoveSpecialLayers(ILayerManager& manager);

    void LayerManager_LayerAdded(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerRemoved(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerVisibilityChanged(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerReadyToDraw(ILayerManager* manager, TBaseMapLayer* layer);
    void LayerManager_LayerMoved(ILayerManager* manager, int fromIndex, int toIndex);
    void LayerManager_OnMapCommand(TBaseMapLayer* layer, TLayerMapCommand command, void* data);
    void Viewport_Changed(TWorldViewport* viewport);
    TWorldViewport& RequireViewport() const;

    bool CanPaintLayers() const;
    void PaintBackground(TBitmap32& buffer);
    void PaintLayers(TBitmap32& buffer);
    void PaintSpecialLayers(TBitmap32& buffer);
    void PaintCrosshair(TBitmap32& buffer);
    void PaintFocusBorder(TBitmap32& buffer);
    void UpdateCheckerboard();
    bool UpdateCrosshairSprite();
    int ScaledToDevice(int logicalPixels) const;

    void LeftButtonDown(TPoint point);
    void LeftButtonMove(TPoint point);
    void LeftButtonUp(TPoint point, bool wasDown);
    void OfferPress(TPoint point);
    void OfferMove(TPoint point);
    void OfferRelease(TPoint point, bool wasDown);
    TBaseMapLayer* LayerTaking(TMouseSupportAction action) const;
    void ZoomToSelection();
    void PanStep(TPoint point);
    TMapPoint MapPointAt(TPoint point) const;
    TMapMode EffectiveMode(bool isPanning) const { return isPanning ? TMapMode::mdPan : FMode; }

    void SetCapture() { FHasCapture = true; }
    void ReleaseCapture();
    void NoticeLostRelease(const QMouseEvent& event);

    std::shared_ptr<ILayerManager> FLayerManager;
    std::unique_ptr<TWorld> FWorld;
    std::unique_ptr<TWorldViewport> FViewport; // after the world: it goes first
    extended FScaleAmount = 0.1L;              // given to each viewport as its minimum scale
    TMapMode FMode = TMapMode::mdNone;
    TColor32 FBackgroundColor = clWhite32;
    TSpecialLayerAccess FSpecialLayerAccess;
    std::shared_ptr<IMapViewControlCustomModeObject> FCustomModeObject;
    TBorrowed<TSelectionMapLayer> FSpSelectionLayer;
    TBorrowed<TRulerMapLayer> FSpRulersLayer;
    TBorrowed<TInfoQueryPointLayer> FSpInfoQueryPointsLayer;
    TBorrowed<TBaseMapLayer> FSpObjectLayer;
    bool FIsMouseDown = false;
    TMouseButton FMouseButton = TMouseButton::mbLeft; // of the last press; never reset
    TPoint FCursorDownPt;
    TMouseCursorLocationChangedEvent FOnMouseCursorLocationChanged;
    TMapViewNotifyEvent FOnViewportUpdated;
    TMapModeChangedEventList FOnModeChanged;
    QMenu* FPopupMenu = nullptr;
    TMapViewNotifyEvent FOnBeforeLayerManagerChanged;
    TMapViewNotifyEvent FOnAfterLayerManagerChanged;
    std::unique_ptr<TBitmap32> FCheckerboard;
    int FCheckerboardSquare = 0;
    bool FShowCheckerboard = false;
    float FZoomScale = 0.04F;
    bool FShowCrosshair = false;
    TMapPoint FCrosshairMapPoint;
    bool FShowFocusedBorder = false;
    bool FAutoPan = false;
    bool FAutoPanning = false;
    int FCrosshairThickness = 1;
    TColor32 FCrosshairColor = clBlack32;
    bool FCrosshairHighlights = false;
    std::unique_ptr<TBitmap32> FCrosshairSprite;
    double FCrosshairRatio = 1; // device pixels in a logical one, as the sprite was drawn
    TPoint FCrosshairCenterPoint;
    bool FIsDestroying = false;
    bool FHasCapture = false;     // moves outside the view count
    bool FMayMissRelease = false; // the focus went during a drag, and the release may go elsewhere
};

} // namespace lmx
