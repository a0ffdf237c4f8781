#include <lmx/Controls/lmxMapViewControl.h>

#include <lmx/Controls/Private/lmxCrosshair.h>
#include <lmx/Controls/Private/lmxMapCheckerboard.h>
#include <lmx/Controls/Private/lmxMapMouse.h>
#include <lmx/Controls/Private/lmxSpecialLayerSet.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerStackPainter.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxWidgetMenu.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <array>

namespace lmx {

namespace {

constexpr int CheckerboardSquare = 8; // logical pixels

} // namespace

TMapViewControl::TMapViewControl(QWidget* owner)
    : TMapViewControl(owner, {TSpecialLayers::slSelection, TSpecialLayers::slRulers,
                              TSpecialLayers::slInfoQueryPointLayer, TSpecialLayers::slObject}) {}

TMapViewControl::TMapViewControl(QWidget* owner, TSpecialLayerAccess specialLayers)
    : TPaintBox32(owner),
      FSpecialLayerAccess(specialLayers),
      FSpecialLayers(std::make_unique<TSpecialLayerSet>()),
      FMouse(std::make_unique<TMapMouse>()),
      FCheckerboard(std::make_unique<TMapCheckerboard>()),
      FCrosshair(std::make_unique<TCrosshair>()) {
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
    FPopupMenu = new TWidgetMenu(this);
    AddPopupMenuItem(QStringLiteral("Change &background color..."),
                     [this] { PopupMenu_ChangeBackgroundColor_Click(); });
    AddPopupMenuItem(QStringLiteral("Toggle Checkerboard"), [this] { PopupMenu_ToggleCheckerboard_Click(); });
}

void TMapViewControl::SetLayerManager(const std::shared_ptr<ILayerManager>& manager) {
    if (manager == FLayerManager)
        return;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the caller's may change meanwhile
    const std::shared_ptr<ILayerManager> next = manager;
    const TBorrowed self(this);
    FOnBeforeLayerManagerChanged(this);
    if (self)
        ExchangeLayerManager(next);
    if (self)
        FOnAfterLayerManagerChanged(this);
    if (self)
        RepaintMap();
}

void TMapViewControl::ExchangeLayerManager(const std::shared_ptr<ILayerManager>& next) {
    if (next == FLayerManager)
        return;
    const TBorrowed self(this);
    const int turn = ++FManagerTurn;
    if (const auto previous = FLayerManager) {
        RegisterLayerManagerEvents(previous.get(), false);
        RegisterSpecialLayers(previous, false);
    }
    if (!self || turn != FManagerTurn)
        return;
    FLayerManager = next;
    if (!next)
        return;
    RegisterLayerManagerEvents(next.get(), true);
    RegisterSpecialLayers(next, true);
}

// The two directions are no mirror images, and what follows from that is fixed: a removed layer runs the added handler,
// and a manager that the view has left goes on calling it for removed and for ready layers.
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
    if (!registering) {
        FSpecialLayers->Remove(manager);
        return;
    }
    FSpecialLayers->Add(manager, FSpecialLayerAccess, [&] { return MakeObjectLayer(manager); });
}

// The ratio comes before the layer is in the stack: what is put into it from then on has the right size.
std::unique_ptr<TObjectMapLayer> TMapViewControl::MakeObjectLayer(const std::shared_ptr<ILayerManager>& manager) {
    const TBorrowed self(this); // a host's override may do anything
    const bool allowLegends = !FSpecialLayerAccess.Contains(TSpecialLayers::slDisableObjectLegendControlOption);
    auto layer = CreateObjectLayer(manager, allowLegends);
    if (self && layer)
        layer->SetDeviceRatio(GetDeviceRatio());
    return layer;
}

std::unique_ptr<TObjectMapLayer> TMapViewControl::CreateObjectLayer(const std::shared_ptr<ILayerManager>& manager,
                                                                    bool allowLegendControlOption) {
    return std::make_unique<TObjectMapLayer>(manager, allowLegendControlOption);
}

void TMapViewControl::TellDeviceRatio() const {
    if (TObjectMapLayer* objects = GetSpObjectLayer())
        objects->SetDeviceRatio(GetDeviceRatio());
}

TSelectionMapLayer* TMapViewControl::GetSpSelectionLayer() const {
    return FSpecialLayers->GetSelection();
}

TRulerMapLayer* TMapViewControl::GetSpRulersLayer() const {
    return FSpecialLayers->GetRulers();
}

TInfoQueryPointLayer* TMapViewControl::GetSpInfoQueryPointsLayer() const {
    return FSpecialLayers->GetPoints();
}

TObjectMapLayer* TMapViewControl::GetSpObjectLayer() const {
    return FSpecialLayers->GetObjects();
}

void TMapViewControl::LayerManager_LayerAdded(ILayerManager*, TBaseMapLayer* layer) {
    const TBorrowed self(this);
    if (!WorldCreated() && !layer->GetFlags().Contains(TLayerFlag::lfSpecial))
        CreateWorldAndViewport(layer->GetLayerArea().WorldSystem);
    if (self)
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
    if (command != TLayerMapCommand::cmdGotoExtent)
        return;
    const TMapArea area = layer->GetLayerArea().Area;
    if (TWorldViewport* viewport = GetViewport())
        viewport->ZoomTo(area);
}

// Both stand before anybody is told. Whoever hears of the size may make yet another world.
void TMapViewControl::CreateWorldAndViewport(const std::shared_ptr<IWorldSystem>& worldSystem) {
    if (!worldSystem)
        return;
    auto world = std::make_unique<TWorld>(worldSystem);
    auto viewport = std::make_unique<TWorldViewport>(world.get());
    viewport->GetOnChanged().Add(this, &TMapViewControl::Viewport_Changed);
    viewport->SetMinScale(FScaleAmount);
    FViewport = std::move(viewport);
    FWorld = std::move(world);
    UpdateViewSize();
}

void TMapViewControl::ChangeWorldSystem(const std::shared_ptr<IWorldSystem>& worldSystem) {
    if (!FWorld) {
        CreateWorldAndViewport(worldSystem);
        return;
    }
    if (worldSystem == FWorld->GetWorldSystem())
        return;
    const TBorrowed self(this);
    FWorld->SetWorldSystem(worldSystem);
    const auto manager = self ? FLayerManager : nullptr;
    if (!manager)
        return;
    manager->GetLayers().ForEach([&](TBaseMapLayer* layer) {
        layer->Invalidate();
        return self && FLayerManager == manager;
    });
}

const std::shared_ptr<IWorldSystem>& TMapViewControl::GetWorldSystem() const {
    RequireViewport();
    return FWorld->GetWorldSystem();
}

TWorldViewport& TMapViewControl::RequireViewport() const {
    if (TWorldViewport* viewport = GetViewport())
        return *viewport;
    throw EInvalidOperation(QStringLiteral("World not created"));
}

// The platform does not tell a hidden view of its size. Whoever hears of the new one may replace the viewport, and
// destroy the view.
TWorldViewport* TMapViewControl::GetViewport() const {
    const TBorrowed self(this);
    TellDeviceRatio(); // first, for annotations are laid out in the new size
    if (self && FViewport)
        FViewport->SetViewSize(GetDeviceSize());
    return self ? FViewport.get() : nullptr;
}

void TMapViewControl::UpdateViewSize() {
    GetViewport();
}

void TMapViewControl::Viewport_Changed(TWorldViewport* viewport) {
    const TBorrowed self(this);
    if (TObjectMapLayer* objects = GetSpObjectLayer())
        objects->UpdateLayouts(viewport);
    if (!self)
        return;
    RepaintMap();
    if (self)
        FOnViewportUpdated(this);
}

// The caller may stand in the middle of a paint or an event: the box waits until that is over.
void TMapViewControl::RepaintMap() {
    if (FIsDestroying)
        return;
    try {
        Invalidate();
    } catch (...) {
        const QString text = QStringLiteral("Error in RepaintMap()");
        ReportOnce(text, [text] { ShowMessage(text); });
    }
}

void TMapViewControl::ZoomIn() {
    ZoomBy(FZoomScale);
}

void TMapViewControl::ZoomOut() {
    ZoomBy(-FZoomScale);
}

void TMapViewControl::ZoomBy(float share) {
    if (FMouse->IsHolding(TMouseButton::mbMiddle))
        return;
    TWorldViewport* viewport = GetViewport();
    if (!viewport)
        return;
    const extended scale = viewport->GetScale();
    viewport->SetScale(scale + scale * static_cast<extended>(share));
}

void TMapViewControl::ZoomTo(TBaseMapLayer* layer) {
    if (!FWorld || !layer || !FLayerManager || !FLayerManager->GetLayers().Contains(layer))
        return;
    const TMapArea area = layer->GetLayerArea().Area;
    if (TWorldViewport* viewport = GetViewport())
        viewport->ZoomTo(area);
}

void TMapViewControl::SetCenter(const TMapPoint& mapPoint) {
    const TMapPoint center = mapPoint; // the caller's may go meanwhile
    RequireViewport().SetCenter(center);
}

TMapPoint TMapViewControl::GetMapPoint() const {
    const TPoint pixel = FMouse->GetDownPoint();
    return RequireViewport().PointToMapPoint(TMapPoint(pixel));
}

template<class Value>
void TMapViewControl::Store(Value& present, const Value& value) {
    RepaintIf(std::exchange(present, value) != value);
}

void TMapViewControl::RepaintIf(bool hasChanged) {
    if (hasChanged)
        RepaintMap();
}

void TMapViewControl::SetBackgroundColor(TColor32 color) {
    Store(FBackgroundColor, color);
}

void TMapViewControl::SetShowCheckerboard(bool show) {
    Store(FShowCheckerboard, show);
}

void TMapViewControl::SetShowFocusedBorder(bool show) {
    Store(FShowFocusedBorder, show);
}

bool TMapViewControl::GetShowCrosshair() const {
    return FCrosshair->GetIsShown();
}

void TMapViewControl::SetShowCrosshair(bool show) {
    RepaintIf(FCrosshair->SetIsShown(show));
}

const TMapPoint& TMapViewControl::GetCrosshairMapPoint() const {
    return FCrosshair->GetPlace();
}

void TMapViewControl::SetCrosshairMapPoint(const TMapPoint& point) {
    RepaintIf(FCrosshair->SetPlace(point));
}

TColor32 TMapViewControl::GetCrosshairColor() const {
    return FCrosshair->GetColor();
}

void TMapViewControl::SetCrosshairColor(TColor32 color) {
    RepaintIf(FCrosshair->SetColor(color));
}

int TMapViewControl::GetCrosshairThickness() const {
    return FCrosshair->GetThickness();
}

void TMapViewControl::SetCrosshairThickness(int thickness) {
    RepaintIf(FCrosshair->SetThickness(thickness));
}

bool TMapViewControl::GetCrosshairHighlights() const {
    return FCrosshair->GetHighlights();
}

void TMapViewControl::SetCrosshairHighlights(bool highlights) {
    RepaintIf(FCrosshair->SetHighlights(highlights));
}

void TMapViewControl::Resize() {
    const TBorrowed self(this);
    TPaintBox32::Resize();
    if (self)
        UpdateViewSize();
}

// A stack that was left halfway is painted again, as it is now.
void TMapViewControl::DoPaintBuffer() {
    const TBorrowed self(this);
    PaintBackground(GetBuffer());
    const bool isComplete = PaintStack(GetBuffer());
    if (!self)
        return;
    PaintFocusBorder(GetBuffer());
    TPaintBox32::DoPaintBuffer();
    RepaintIf(!isComplete);
}

void TMapViewControl::PaintBackground(TBitmap32& buffer) {
    if (FShowCheckerboard)
        FCheckerboard->Paint(buffer, ScaledToDevice(CheckerboardSquare));
    else
        buffer.Clear(FBackgroundColor);
}

// False once the view has gone, or shows another manager or world than when the paint began.
bool TMapViewControl::PaintStack(TBitmap32& buffer) {
    if (FIsDestroying || !FLayerManager || !FViewport)
        return true;
    const bool isSelecting = FMode == TMapMode::mdSelection || FMode == TMapMode::mdZoomToSelection;
    TSelectionMapLayer* selection = GetSpSelectionLayer();
    const std::array<TBorrowed<TBaseMapLayer>, 4> above = {
        isSelecting && selection && selection->GetEnabled() ? selection : nullptr, GetSpInfoQueryPointsLayer(),
        GetSpRulersLayer(), GetSpObjectLayer()};
    const auto goesOn = [self = TBorrowed(this), manager = FLayerManager] {
        return self && self->FLayerManager == manager;
    };
    if (!PaintLayerStack(FLayerManager, *FViewport, buffer, above, goesOn))
        return false;
    FCrosshair->Paint(buffer, *FViewport, GetDeviceRatio());
    return true;
}

void TMapViewControl::PaintFocusBorder(TBitmap32& buffer) {
    if (!FShowFocusedBorder || !hasFocus())
        return;
    const TColor32 color = Color32(clHighlight);
    for (int inset = 0; inset < ScaledToDevice(1); ++inset)
        buffer.FrameRectS(inset, inset, buffer.GetWidth() - inset, buffer.GetHeight() - inset, color);
}

// Decorations keep their size to the eye on dense screens.
int TMapViewControl::ScaledToDevice(int logicalPixels) const {
    return static_cast<int>(Round(logicalPixels * static_cast<extended>(GetDeviceRatio())));
}

} // namespace lmx
