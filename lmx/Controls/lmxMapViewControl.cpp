#include <lmx/Controls/lmxMapViewControl.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QApplication>
#include <QPointer>

namespace lmx {

namespace {

// The flag and the view's reference come first: the manager tells of the layer as soon as it has it.
template<class Layer>
void AddSpecialLayer(ILayerManager& manager, TBorrowed<Layer>& reference, std::unique_ptr<Layer> layer) {
    reference = layer.get();
    layer->SetFlags(layer->GetFlags() + TLayerFlags{TLayerFlag::lfSpecial});
    manager.GetSpecialLayers().Add(std::move(layer));
}

template<class Layer>
void RemoveSpecialLayer(ILayerManager& manager, TBorrowed<Layer>& reference) {
    manager.GetSpecialLayers().Remove(reference.Get());
    reference = nullptr;
}

} // namespace

TMapViewControl::TMapViewControl(QWidget* owner)
    : TMapViewControl(owner, {TSpecialLayers::slSelection, TSpecialLayers::slRulers,
                              TSpecialLayers::slInfoQueryPointLayer, TSpecialLayers::slObject}) {}

TMapViewControl::TMapViewControl(QWidget* owner, TSpecialLayerAccess specialLayers)
    : TPaintBox32(owner),
      FSpecialLayerAccess(specialLayers) {
    CreateMapControl();
}

// Its manager stays as it is and keeps this view's subscriptions, which fall silent here.
TMapViewControl::~TMapViewControl() {
    FIsDestroying = true;
    StopReceiving();
}

void TMapViewControl::CreateMapControl() {
    SetRepaintMode(TRepaintMode::rmDirect);
    SetBufferOversize(0);
    setContextMenuPolicy(Qt::PreventContextMenu); // the menu opens with the release of the right button
    setAccessibleName(QStringLiteral("Map"));
    FPopupMenu = new QMenu(this);
    AddPopupMenuItem(QStringLiteral("Change &background color..."),
                     [this] { PopupMenu_ChangeBackgroundColor_Click(); });
    AddPopupMenuItem(QStringLiteral("Toggle Checkerboard"), [this] { PopupMenu_ToggleCheckerboard_Click(); });
}

void TMapViewControl::SetLayerManager(const std::shared_ptr<ILayerManager>& manager) {
    if (manager == FLayerManager)
        return;
    const QPointer<TMapViewControl> self(this); // whoever is told may close the view
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the caller's may change meanwhile
    const std::shared_ptr<ILayerManager> next = manager;
    FOnBeforeLayerManagerChanged(this);
    if (const auto previous = self ? FLayerManager : nullptr) {
        RegisterLayerManagerEvents(previous.get(), false);
        RegisterSpecialLayers(previous, false);
    }
    if (!self)
        return;
    FLayerManager = next;
    if (next) {
        RegisterLayerManagerEvents(next.get(), true);
        RegisterSpecialLayers(next, true);
    }
    if (self)
        FOnAfterLayerManagerChanged(this);
    if (self)
        RepaintMap();
}

// The two directions are no mirror images, and each is fixed: a removed layer runs the added handler, and a manager that
// the view has left goes on calling it for removed and for ready layers.
void TMapViewControl::RegisterLayerManagerEvents(ILayerManager* manager, bool registering) {
    if (!manager)
        throw EExArgumentNilException(QStringLiteral("TMapViewControl.RegisterLayerManagerEvents"),
                                      QStringLiteral("LayerManager"));
    if (registering) {
        manager->GetOnLayerAdded().Add(this, &TMapViewControl::LayerManager_LayerAdded);
        manager->GetOnLayerRemoved().Add(this, &TMapViewControl::LayerManager_LayerAdded);
        manager->GetOnLayerVisibilityChanged().Add(this, &TMapViewControl::LayerManager_LayerVisibilityChanged);
        manager->GetOnLayerReadyToDraw().Add(this, &TMapViewControl::LayerManager_LayerReadyToDraw);
        manager->GetOnLayerMoved().Add(this, &TMapViewControl::LayerManager_LayerMoved);
        manager->GetOnMapCommand().Add(this, &TMapViewControl::LayerManager_OnMapCommand);
    } else {
        manager->GetOnLayerAdded().Remove(this, &TMapViewControl::LayerManager_LayerAdded);
        manager->GetOnLayerRemoved().Remove(this, &TMapViewControl::LayerManager_LayerRemoved);
        manager->GetOnLayerRemoved().Remove(this, &TMapViewControl::LayerManager_LayerReadyToDraw);
        manager->GetOnLayerVisibilityChanged().Remove(this, &TMapViewControl::LayerManager_LayerVisibilityChanged);
        manager->GetOnLayerMoved().Remove(this, &TMapViewControl::LayerManager_LayerMoved);
        manager->GetOnMapCommand().Remove(this, &TMapViewControl::LayerManager_OnMapCommand);
    }
}

void TMapViewControl::RegisterSpecialLayers(const std::shared_ptr<ILayerManager>& manager, bool registering) {
    if (!manager)
        throw EExArgumentNilException(QStringLiteral("TMapViewControl.RegisterSpecialLayers"),
                                      QStringLiteral("LayerManager"));
    if (registering)
        AddSpecialLayers(manager);
    else
        RemoveSpecialLayers(*manager);
}

void TMapViewControl::AddSpecialLayers(const std::shared_ptr<ILayerManager>& manager) {
    if (FSpecialLayerAccess.Contains(TSpecialLayers::slSelection))
        AddSpecialLayer(*manager, FSpSelectionLayer, std::make_unique<TSelectionMapLayer>(manager));
    if (FSpecialLayerAccess.Contains(TSpecialLayers::slRulers))
        AddSpecialLayer(*manager, FSpRulersLayer, std::make_unique<TRulerMapLayer>(manager));
    if (FSpecialLayerAccess.Contains(TSpecialLayers::slInfoQueryPointLayer))
        AddSpecialLayer(*manager, FSpInfoQueryPointsLayer, std::make_unique<TInfoQueryPointLayer>(manager));
    if (!FSpecialLayerAccess.Contains(TSpecialLayers::slObject))
        return;
    const bool allowLegends = !FSpecialLayerAccess.Contains(TSpecialLayers::slDisableObjectLegendControlOption);
    if (auto layer = CreateObjectLayer(manager, allowLegends))
        AddSpecialLayer(*manager, FSpObjectLayer, std::move(layer));
}

void TMapViewControl::RemoveSpecialLayers(ILayerManager& manager) {
    RemoveSpecialLayer(manager, FSpSelectionLayer);
    RemoveSpecialLayer(manager, FSpRulersLayer);
    RemoveSpecialLayer(manager, FSpInfoQueryPointsLayer);
    RemoveSpecialLayer(manager, FSpObjectLayer);
}

std::unique_ptr<TBaseMapLayer> TMapViewControl::CreateObjectLayer(const std::shared_ptr<ILayerManager>&, bool) {
    return nullptr;
}

void TMapViewControl::LayerManager_LayerAdded(ILayerManager*, TBaseMapLayer* layer) {
    if (!WorldCreated() && !layer->GetFlags().Contains(TLayerFlag::lfSpecial))
        CreateWorldAndViewport(layer->GetLayerArea().WorldSystem);
    RepaintMap();
}

void TMapViewControl::LayerManager_LayerRemoved(ILayerManager*, TBaseMapLayer*) {
    if (WorldCreated())
        RepaintMap();
}

void TMapViewControl::LayerManager_LayerVisibilityChanged(ILayerManager*, TBaseMapLayer*) {
    if (WorldCreated())
        RepaintMap();
}

void TMapViewControl::LayerManager_LayerReadyToDraw(ILayerManager*, TBaseMapLayer*) {
    if (WorldCreated())
        RepaintMap();
}

void TMapViewControl::LayerManager_LayerMoved(ILayerManager*, int, int) {
    if (WorldCreated())
        RepaintMap();
}

void TMapViewControl::LayerManager_OnMapCommand(TBaseMapLayer* layer, TLayerMapCommand command, void*) {
    if (command == TLayerMapCommand::cmdGotoExtent && FViewport)
        FViewport->ZoomTo(layer->GetLayerArea().Area);
}

void TMapViewControl::CreateWorldAndViewport(const std::shared_ptr<IWorldSystem>& worldSystem) {
    if (!worldSystem)
        return;
    FViewport.reset();
    FWorld = std::make_unique<TWorld>(worldSystem);
    FViewport = std::make_unique<TWorldViewport>(FWorld.get());
    FViewport->GetOnChanged().Add(this, &TMapViewControl::Viewport_Changed);
    FViewport->SetMinScale(FScaleAmount);
    UpdateViewSize();
}

void TMapViewControl::ChangeWorldSystem(const std::shared_ptr<IWorldSystem>& worldSystem) {
    if (!FWorld) {
        CreateWorldAndViewport(worldSystem);
        return;
    }
    if (worldSystem == FWorld->GetWorldSystem())
        return;
    const QPointer<TMapViewControl> self(this); // whoever is told may close the view
    FWorld->SetWorldSystem(worldSystem);
    const auto manager = self ? FLayerManager : nullptr;
    if (!manager)
        return;
    TObjectList<TBaseMapLayer>& layers = manager->GetLayers();
    for (int i = 0; i < layers.Count(); ++i)
        layers[i]->Invalidate();
}

const std::shared_ptr<IWorldSystem>& TMapViewControl::GetWorldSystem() const {
    RequireViewport();
    return FWorld->GetWorldSystem();
}

TWorldViewport& TMapViewControl::RequireViewport() const {
    if (!FViewport)
        throw EInvalidOperation(QStringLiteral("World not created"));
    return *FViewport;
}

void TMapViewControl::Viewport_Changed(TWorldViewport*) {
    RepaintMap();
    FOnViewportUpdated(this);
}

void TMapViewControl::RepaintMap() {
    if (FIsDestroying)
        return;
    try {
        Invalidate();
    } catch (...) {
        // The caller may stand in the middle of a paint or an event: the box waits until that is over.
        QMetaObject::invokeMethod(
            qApp, [] { ShowMessage(QStringLiteral("Error in RepaintMap()")); }, Qt::QueuedConnection);
    }
}

void TMapViewControl::ZoomIn() {
    if (!FViewport || (FIsMouseDown && FMouseButton == TMouseButton::mbMiddle))
        return;
    const extended scale = FViewport->GetScale();
    FViewport->SetScale(scale + scale * static_cast<extended>(FZoomScale));
}

void TMapViewControl::ZoomOut() {
    if (!FViewport || (FIsMouseDown && FMouseButton == TMouseButton::mbMiddle))
        return;
    const extended scale = FViewport->GetScale();
    FViewport->SetScale(scale - scale * static_cast<extended>(FZoomScale));
}

void TMapViewControl::ZoomTo(TBaseMapLayer* layer) {
    if (FWorld && layer && FLayerManager && FLayerManager->GetLayers().Contains(layer))
        FViewport->ZoomTo(layer->GetLayerArea().Area);
}

void TMapViewControl::SetCenter(const TMapPoint& mapPoint) {
    RequireViewport().SetCenter(mapPoint);
}

TMapPoint TMapViewControl::GetMapPoint() const {
    return RequireViewport().PointToMapPoint(TMapPoint(FCursorDownPt));
}

void TMapViewControl::SetBackgroundColor(TColor32 color) {
    if (color == FBackgroundColor)
        return;
    FBackgroundColor = color;
    RepaintMap();
}

void TMapViewControl::SetShowCheckerboard(bool show) {
    if (show == FShowCheckerboard)
        return;
    FShowCheckerboard = show;
    RepaintMap();
}

void TMapViewControl::SetShowCrosshair(bool show) {
    if (show == FShowCrosshair)
        return;
    FShowCrosshair = show;
    RepaintMap();
}

void TMapViewControl::SetCrosshairMapPoint(const TMapPoint& point) {
    if (point.Equals(FCrosshairMapPoint))
        return;
    FCrosshairMapPoint = point;
    RepaintMap();
}

void TMapViewControl::SetCrosshairColor(TColor32 color) {
    if (color == FCrosshairColor)
        return;
    FCrosshairColor = color;
    UpdateCrosshairSprite();
    RepaintMap();
}

void TMapViewControl::SetCrosshairThickness(int thickness) {
    if (thickness == FCrosshairThickness)
        return;
    FCrosshairThickness = thickness;
    UpdateCrosshairSprite();
    RepaintMap();
}

void TMapViewControl::SetCrosshairHighlights(bool highlights) {
    if (highlights == FCrosshairHighlights)
        return;
    FCrosshairHighlights = highlights;
    UpdateCrosshairSprite();
    RepaintMap();
}

void TMapViewControl::SetShowFocusedBorder(bool show) {
    if (show == FShowFocusedBorder)
        return;
    FShowFocusedBorder = show;
    RepaintMap();
}

void TMapViewControl::Resize() {
    TPaintBox32::Resize();
    UpdateViewSize();
    UpdateCheckerboard();
    if (FCrosshairSprite && GetDeviceRatio() != FCrosshairRatio)
        UpdateCrosshairSprite();
}

void TMapViewControl::UpdateViewSize() {
    if (FViewport)
        FViewport->SetViewSize(GetDeviceSize());
}

} // namespace lmx
