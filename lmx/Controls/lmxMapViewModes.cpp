// What the mouse and the space bar do on the map.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>

namespace lmx {

namespace {

TCursor CursorOf(TMapMode mode, const IMapViewControlCustomModeObject* customModeObject) {
    switch (mode) {
    case TMapMode::mdPan:
        return TCursor::crSize;
    case TMapMode::mdSelection:
    case TMapMode::mdZoomToSelection:
        return TCursor::crCross;
    case TMapMode::mdPlaceRulerH:
        return TCursor::crHSplit;
    case TMapMode::mdPlaceRulerV:
        return TCursor::crVSplit;
    case TMapMode::mdCustom:
        return customModeObject ? customModeObject->GetCursor() : TCursor::crDefault;
    case TMapMode::mdNone:
    case TMapMode::mdInfoQuery:
        break;
    }
    return TCursor::crDefault;
}

} // namespace

void TMapViewControl::SetMode(TMapMode mode) {
    if (mode == FMode)
        return;
    FMode = mode;
    setCursor(ToQCursor(CursorOf(mode, FCustomModeObject.get())));
    FOnModeChanged.Send(this, mode);
}

void TMapViewControl::EnterPanMode() {
    RequireViewport().StartPan();
    FIsMouseDown = true;
}

// The button counts as held until its release is told.
void TMapViewControl::ExitPanMode() {
    RequireViewport().EndPan();
}

// A button pressed during a drag is ignored.
void TMapViewControl::MouseDown(TMouseButton button, TPoint point) {
    if (!FViewport || FIsMouseDown)
        return;
    if (!hasFocus())
        setFocus(Qt::MouseFocusReason);
    FCursorDownPt = point;
    FMouseButton = button;
    if (button != TMouseButton::mbRight)
        SetCapture();
    if (button == TMouseButton::mbLeft)
        LeftButtonDown(point);
    else if (button == TMouseButton::mbMiddle)
        EnterPanMode();
}

// The button of the last press decides, not what is held now.
void TMapViewControl::MouseMove(TPoint point) {
    if (!FViewport)
        return;
    const QPointer<TMapViewControl> self(this); // a layer or a custom mode may close the view
    if (FMouseButton == TMouseButton::mbLeft)
        LeftButtonMove(point);
    else if (FMouseButton == TMouseButton::mbMiddle)
        PanStep(point);
    if (self && FViewport)
        FOnMouseCursorLocationChanged(this, point, MapPointAt(point));
}

void TMapViewControl::MouseUp(TMouseButton button, TPoint point) {
    if (!FViewport)
        return;
    const bool wasDown = FIsMouseDown;
    FIsMouseDown = false;
    ReleaseCapture();
    if (button == TMouseButton::mbLeft)
        LeftButtonUp(point, wasDown);
}

// Press, move and release each have a notion of their own of when the space bar pans: a move alone asks FAutoPan, too.
// Whatever a mode calls may change the mode, its object and the layers.

void TMapViewControl::LeftButtonDown(TPoint point) {
    switch (EffectiveMode(FAutoPanning)) {
    case TMapMode::mdNone:
        OfferPress(point);
        break;
    case TMapMode::mdPan:
        EnterPanMode();
        break;
    case TMapMode::mdSelection:
    case TMapMode::mdZoomToSelection:
        if (TSelectionMapLayer* selection = FSpSelectionLayer.Get()) {
            FIsMouseDown = true;
            selection->StartSelection(MapPointAt(point));
        }
        break;
    case TMapMode::mdPlaceRulerH:
        FIsMouseDown = true;
        if (TRulerMapLayer* rulers = FSpRulersLayer.Get())
            rulers->StartPlacing(TPlacingMode::pmHorizontal, MapPointAt(point).X);
        break;
    case TMapMode::mdPlaceRulerV:
        FIsMouseDown = true;
        if (TRulerMapLayer* rulers = FSpRulersLayer.Get())
            rulers->StartPlacing(TPlacingMode::pmVertical, MapPointAt(point).Y);
        break;
    case TMapMode::mdInfoQuery:
        if (TInfoQueryPointLayer* points = FSpInfoQueryPointsLayer.Get())
            points->GetPoints().Add(std::make_unique<TInfoQueryPoint>(points, MapPointAt(point), GetRandomColor32()));
        break;
    case TMapMode::mdCustom:
        if (const auto mode = FCustomModeObject)
            mode->MouseDown(this, point, MapPointAt(point));
        break;
    }
}

void TMapViewControl::LeftButtonMove(TPoint point) {
    switch (EffectiveMode(FAutoPan && FAutoPanning)) {
    case TMapMode::mdNone:
        OfferMove(point);
        break;
    case TMapMode::mdPan:
        PanStep(point);
        break;
    case TMapMode::mdSelection:
    case TMapMode::mdZoomToSelection:
        if (TSelectionMapLayer* selection = FSpSelectionLayer.Get(); selection && FIsMouseDown)
            selection->Adjust(MapPointAt(point));
        break;
    case TMapMode::mdPlaceRulerH:
        if (TRulerMapLayer* rulers = FSpRulersLayer.Get(); rulers && FIsMouseDown)
            rulers->SetPlacingValue(MapPointAt(point).X);
        break;
    case TMapMode::mdPlaceRulerV:
        if (TRulerMapLayer* rulers = FSpRulersLayer.Get(); rulers && FIsMouseDown)
            rulers->SetPlacingValue(MapPointAt(point).Y);
        break;
    case TMapMode::mdInfoQuery:
        break;
    case TMapMode::mdCustom:
        if (const auto mode = FCustomModeObject)
            mode->MouseMove(this, point, MapPointAt(point));
        break;
    }
}

// A ruler is confirmed whether or not a press began it here.
void TMapViewControl::LeftButtonUp(TPoint point, bool wasDown) {
    switch (EffectiveMode(FAutoPanning)) {
    case TMapMode::mdNone:
        OfferRelease(point, wasDown);
        break;
    case TMapMode::mdPan:
        ExitPanMode();
        break;
    case TMapMode::mdZoomToSelection:
        ZoomToSelection();
        break;
    case TMapMode::mdPlaceRulerH:
    case TMapMode::mdPlaceRulerV:
        if (TRulerMapLayer* rulers = FSpRulersLayer.Get())
            rulers->ConfirmPlacing();
        break;
    case TMapMode::mdCustom:
        if (const auto mode = FCustomModeObject)
            mode->MouseUp(this, point, MapPointAt(point));
        break;
    case TMapMode::mdSelection: // the rectangle stays for the host to read
    case TMapMode::mdInfoQuery:
        break;
    }
}

// Hosts hear of the zoom and may close the view, or give it another manager.
void TMapViewControl::ZoomToSelection() {
    const TBorrowed<TSelectionMapLayer> selection = FSpSelectionLayer;
    if (selection.Get())
        FViewport->ZoomTo(selection.Get()->GetSelectedRect());
    if (selection.Get())
        selection.Get()->SetEnabled(false);
}

TMapPoint TMapViewControl::MapPointAt(TPoint point) const {
    return FViewport->PointToMapPoint(TMapPoint(point));
}

void TMapViewControl::PanStep(TPoint point) {
    if (FIsMouseDown)
        FViewport->PanBy({point.X - FCursorDownPt.X, point.Y - FCursorDownPt.Y});
}

// The selected layer first, then the object layer.
TBaseMapLayer* TMapViewControl::LayerTaking(TMouseSupportAction action) const {
    for (TBaseMapLayer* layer : {FLayerManager ? FLayerManager->GetSelLayer() : nullptr, FSpObjectLayer.Get()})
        if (layer && layer->GetMouseSupport().Contains(action))
            return layer;
    return nullptr;
}

void TMapViewControl::OfferPress(TPoint point) {
    if (TBaseMapLayer* layer = LayerTaking(TMouseSupportAction::msMouseDown)) {
        FIsMouseDown = true;
        layer->MouseDown(FViewport.get(), point);
    }
}

void TMapViewControl::OfferMove(TPoint point) {
    if (TBaseMapLayer* layer = LayerTaking(TMouseSupportAction::msMouseMove))
        layer->MouseMove(FViewport.get(), point, FIsMouseDown);
}

void TMapViewControl::OfferRelease(TPoint point, bool wasDown) {
    if (TBaseMapLayer* layer = LayerTaking(TMouseSupportAction::msMouseUp))
        layer->MouseUp(FViewport.get(), point, wasDown);
}

// While a button is held the platform sends the mouse here, wherever it is. Between the release of one button and that
// of another the view has given it up: moves outside do not count.
void TMapViewControl::ReleaseCapture() {
    FHasCapture = false;
    FMayMissRelease = false;
}

// A menu or a dialog that came up during a drag may have had the release. The drag ends like by that of another button.
void TMapViewControl::NoticeLostRelease(const QMouseEvent& event) {
    if (!FMayMissRelease)
        return;
    const Qt::MouseButtons pressedNow = event.type() == QEvent::MouseMove ? Qt::NoButton : event.button();
    if (event.buttons() & ~pressedNow)
        return;
    FIsMouseDown = false;
    ReleaseCapture();
}

void TMapViewControl::mousePressEvent(QMouseEvent* event) {
    NoticeLostRelease(*event);
    TPaintBox32::mousePressEvent(event);
}

void TMapViewControl::mouseMoveEvent(QMouseEvent* event) {
    NoticeLostRelease(*event);
    const TSize size = GetDeviceSize();
    const bool isInside = TRect(0, 0, size.cx, size.cy).Contains(ToDevicePoint(event->position()));
    if (isInside || FHasCapture || !event->buttons())
        TPaintBox32::mouseMoveEvent(event);
}

void TMapViewControl::mouseReleaseEvent(QMouseEvent* event) {
    const QPointer<TMapViewControl> self(this); // a handler may close the view
    TPaintBox32::mouseReleaseEvent(event);
    if (!self)
        return;
    const QPointF at = event->globalPosition();
    if (event->button() == Qt::RightButton && QRectF(rect()).contains(event->position()))
        FPopupMenu->popup({static_cast<int>(at.x()), static_cast<int>(at.y())});
}

void TMapViewControl::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Menu)
        FPopupMenu->popup(mapToGlobal(rect().center()));
    else
        TPaintBox32::keyPressEvent(event);
}

void TMapViewControl::KeyDown(int key) {
    TPaintBox32::KeyDown(key);
    if (FAutoPan && key == Qt::Key_Space)
        FAutoPanning = true;
}

void TMapViewControl::KeyUp(int key) {
    TPaintBox32::KeyUp(key);
    if (key == Qt::Key_Space)
        FAutoPanning = false;
}

void TMapViewControl::DoEnter() {
    TPaintBox32::DoEnter();
    RepaintMap();
}

// Whoever has the keyboard now hears of the keys that go up.
void TMapViewControl::DoExit() {
    TPaintBox32::DoExit();
    FAutoPanning = false;
    FMayMissRelease = FIsMouseDown;
    RepaintMap();
}

} // namespace lmx
