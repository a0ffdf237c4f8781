// What the mouse and the space bar do on the map.

#include <lmx/Controls/lmxMapViewControl.h>

#include <lmx/Controls/Private/lmxMapMouse.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxBorrowed.h>

#include <QKeyEvent>
#include <QMouseEvent>

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

bool TMapViewControl::GetAutoPan() const {
    return FMouse->GetAutoPan();
}

void TMapViewControl::SetAutoPan(bool autoPan) {
    FMouse->SetAutoPan(autoPan);
}

bool TMapViewControl::GetIsMouseDown() const {
    return FMouse->GetIsDown();
}

// Whoever is asked or told may set yet another mode: then nobody is told of this one any more.
void TMapViewControl::SetMode(TMapMode mode) {
    if (mode == FMode)
        return;
    FMode = mode;
    const auto isCurrent = [self = TBorrowed(this), mode] { return self && self->FMode == mode; };
    const auto customModeObject = FCustomModeObject;
    const TCursor cursor = CursorOf(mode, customModeObject.get());
    if (isCurrent())
        setCursor(ToQCursor(cursor));
    if (isCurrent())
        FOnModeChanged.SendWhile(isCurrent, this, mode);
}

void TMapViewControl::EnterPanMode() {
    RequireViewport().StartPan();
    FMouse->SetIsDown();
}

// The button counts as held until its release is told.
void TMapViewControl::ExitPanMode() {
    RequireViewport().EndPan();
}

// A button pressed during a drag is ignored.
void TMapViewControl::MouseDown(TMouseButton button, TPoint point) {
    if (!FViewport || FMouse->GetIsDown())
        return;
    const TBorrowed self(this); // others hear of the focus
    if (!hasFocus())
        setFocus(Qt::MouseFocusReason);
    if (!self)
        return;
    FMouse->Press(button, point);
    if (button == TMouseButton::mbLeft)
        LeftButtonDown(point);
    else if (button == TMouseButton::mbMiddle)
        EnterPanMode();
}

// The button of the last press decides, not what is held now.
void TMapViewControl::MouseMove(TPoint point) {
    if (!FViewport)
        return;
    const TBorrowed self(this); // a layer or a custom mode may close the view
    if (FMouse->GetButton() == TMouseButton::mbLeft)
        LeftButtonMove(point);
    else if (FMouse->GetButton() == TMouseButton::mbMiddle)
        PanStep(point);
    if (self)
        FOnMouseCursorLocationChanged(this, point, MapPointAt(point));
}

void TMapViewControl::MouseUp(TMouseButton button, TPoint point) {
    if (!FViewport)
        return;
    const bool wasDown = FMouse->Release();
    if (button == TMouseButton::mbLeft)
        LeftButtonUp(point, wasDown);
}

// Whatever a mode calls may change the mode, its object and the layers, and close the view: it is called last.

void TMapViewControl::LeftButtonDown(TPoint point) {
    switch (EffectiveMode(FMouse->DoesButtonPan())) {
    case TMapMode::mdNone:
        OfferPress(point);
        break;
    case TMapMode::mdPan:
        EnterPanMode();
        break;
    case TMapMode::mdSelection:
    case TMapMode::mdZoomToSelection:
        StartSelection(point);
        break;
    case TMapMode::mdPlaceRulerH:
        StartPlacingRuler(TPlacingMode::pmHorizontal, MapPointAt(point).X);
        break;
    case TMapMode::mdPlaceRulerV:
        StartPlacingRuler(TPlacingMode::pmVertical, MapPointAt(point).Y);
        break;
    case TMapMode::mdInfoQuery:
        AddInfoQueryPoint(point);
        break;
    case TMapMode::mdCustom:
        if (const auto mode = FCustomModeObject)
            mode->MouseDown(this, point, MapPointAt(point));
        break;
    }
}

void TMapViewControl::LeftButtonMove(TPoint point) {
    switch (EffectiveMode(FMouse->DoesMovePan())) {
    case TMapMode::mdNone:
        OfferMove(point);
        break;
    case TMapMode::mdPan:
        PanStep(point);
        break;
    case TMapMode::mdSelection:
    case TMapMode::mdZoomToSelection:
        if (TSelectionMapLayer* selection = GetSpSelectionLayer(); selection && FMouse->GetIsDown())
            selection->Adjust(MapPointAt(point));
        break;
    case TMapMode::mdPlaceRulerH:
        MovePlacedRuler(MapPointAt(point).X);
        break;
    case TMapMode::mdPlaceRulerV:
        MovePlacedRuler(MapPointAt(point).Y);
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
    switch (EffectiveMode(FMouse->DoesButtonPan())) {
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
        if (TRulerMapLayer* rulers = GetSpRulersLayer())
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

void TMapViewControl::StartSelection(TPoint point) {
    TSelectionMapLayer* selection = GetSpSelectionLayer();
    if (!selection)
        return;
    FMouse->SetIsDown();
    selection->StartSelection(MapPointAt(point));
}

void TMapViewControl::StartPlacingRuler(TPlacingMode mode, extended value) {
    FMouse->SetIsDown();
    if (TRulerMapLayer* rulers = GetSpRulersLayer())
        rulers->StartPlacing(mode, value);
}

void TMapViewControl::MovePlacedRuler(extended value) {
    if (TRulerMapLayer* rulers = GetSpRulersLayer(); rulers && FMouse->GetIsDown())
        rulers->SetPlacingValue(value);
}

void TMapViewControl::AddInfoQueryPoint(TPoint point) {
    if (TInfoQueryPointLayer* points = GetSpInfoQueryPointsLayer())
        points->GetPoints().Add(std::make_unique<TInfoQueryPoint>(points, MapPointAt(point), GetRandomColor32()));
}

// Hosts hear of the zoom and may close the view, or give it another manager.
void TMapViewControl::ZoomToSelection() {
    const TBorrowed selection(GetSpSelectionLayer());
    if (selection)
        FViewport->ZoomTo(selection->GetSelectedRect());
    if (selection)
        selection->SetEnabled(false);
}

TMapPoint TMapViewControl::MapPointAt(TPoint point) const {
    return FViewport->PointToMapPoint(TMapPoint(point));
}

void TMapViewControl::PanStep(TPoint point) {
    if (FMouse->GetIsDown())
        FViewport->PanBy(FMouse->WayTo(point));
}

// The selected layer first, then the object layer. Each is asked, and may close the view as it answers.
TBaseMapLayer* TMapViewControl::LayerTaking(TMouseSupportAction action) const {
    const TBorrowed<TBaseMapLayer> candidates[] = {FLayerManager ? FLayerManager->GetSelLayer() : nullptr,
                                                   GetSpObjectLayer()};
    for (const TBorrowed<TBaseMapLayer>& layer : candidates)
        if (layer && layer->GetMouseSupport().Contains(action) && layer)
            return layer.Get();
    return nullptr;
}

void TMapViewControl::OfferPress(TPoint point) {
    const TBorrowed self(this);
    TBaseMapLayer* layer = LayerTaking(TMouseSupportAction::msMouseDown);
    if (!self || !layer)
        return;
    FMouse->SetIsDown();
    layer->MouseDown(FViewport.get(), point);
}

void TMapViewControl::OfferMove(TPoint point) {
    const TBorrowed self(this);
    TBaseMapLayer* layer = LayerTaking(TMouseSupportAction::msMouseMove);
    if (self && layer)
        layer->MouseMove(FViewport.get(), point, FMouse->GetIsDown());
}

void TMapViewControl::OfferRelease(TPoint point, bool wasDown) {
    const TBorrowed self(this);
    TBaseMapLayer* layer = LayerTaking(TMouseSupportAction::msMouseUp);
    if (self && layer)
        layer->MouseUp(FViewport.get(), point, wasDown);
}

void TMapViewControl::NoticeLostRelease(const QMouseEvent& event) {
    const Qt::MouseButtons pressedNow = event.type() == QEvent::MouseMove ? Qt::NoButton : event.button();
    if (!(event.buttons() & ~pressedNow))
        FMouse->NoticeNoButtonHeld();
}

void TMapViewControl::mousePressEvent(QMouseEvent* event) {
    NoticeLostRelease(*event);
    TPaintBox32::mousePressEvent(event);
}

void TMapViewControl::mouseMoveEvent(QMouseEvent* event) {
    NoticeLostRelease(*event);
    const TSize size = GetDeviceSize();
    const bool isInside = TRect(0, 0, size.cx, size.cy).Contains(ToDevicePoint(event->position()));
    if (FMouse->CountsMove(isInside, event->buttons() != Qt::NoButton))
        TPaintBox32::mouseMoveEvent(event);
}

void TMapViewControl::mouseReleaseEvent(QMouseEvent* event) {
    const TBorrowed self(this); // a handler may close the view
    TPaintBox32::mouseReleaseEvent(event);
    if (!self)
        return;
    const QPointF at = event->globalPosition();
    if (event->button() == Qt::RightButton && QRectF(rect()).contains(event->position()))
        FPopupMenu->popup({static_cast<int>(at.x()), static_cast<int>(at.y())});
}

void TMapViewControl::keyPressEvent(QKeyEvent* event) {
    const bool isShiftF10 = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (event->key() == Qt::Key_Menu || isShiftF10)
        FPopupMenu->popup(mapToGlobal(rect().center()));
    else
        TPaintBox32::keyPressEvent(event);
}

void TMapViewControl::KeyDown(int key) {
    TPaintBox32::KeyDown(key);
    if (key == Qt::Key_Space)
        FMouse->PressSpace();
}

void TMapViewControl::KeyUp(int key) {
    TPaintBox32::KeyUp(key);
    if (key == Qt::Key_Space)
        FMouse->ReleaseSpace();
}

void TMapViewControl::DoEnter() {
    TPaintBox32::DoEnter();
    RepaintMap();
}

void TMapViewControl::DoExit() {
    TPaintBox32::DoExit();
    FMouse->NoticeLostFocus();
    RepaintMap();
}

} // namespace lmx
