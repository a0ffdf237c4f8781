// What the mouse and the space bar do on the map.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>

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
    if (button != TMouseButton::mbLeft) {
        if (button == TMouseButton::mbMiddle)
            EnterPanMode();
        return;
    }
    switch (EffectiveMode(FAutoPanning)) {
    case TMapMode::mdNone:
        OfferPress(point);
        break;
    case TMapMode::mdPan:
        EnterPanMode();
        break;
    case TMapMode::mdCustom:
        if (FCustomModeObject)
            FCustomModeObject->MouseDown(this, point, FViewport->PointToMapPoint(TMapPoint(point)));
        break;
    default: // modes of special layers, silent without them
        break;
    }
}

// The button of the last press decides, not what is held now.
void TMapViewControl::MouseMove(TPoint point) {
    if (!FViewport)
        return;
    const QPointer<TMapViewControl> self(this); // a layer or a custom mode may close the view
    if (FMouseButton == TMouseButton::mbMiddle) {
        PanStep(point);
    } else if (FMouseButton == TMouseButton::mbLeft) {
        switch (EffectiveMode(FAutoPan && FAutoPanning)) {
        case TMapMode::mdNone:
            OfferMove(point);
            break;
        case TMapMode::mdPan:
            PanStep(point);
            break;
        case TMapMode::mdCustom:
            if (FCustomModeObject)
                FCustomModeObject->MouseMove(this, point, FViewport->PointToMapPoint(TMapPoint(point)));
            break;
        default:
            break;
        }
    }
    if (self && FOnMouseCursorLocationChanged && FViewport)
        FOnMouseCursorLocationChanged(this, point, FViewport->PointToMapPoint(TMapPoint(point)));
}

void TMapViewControl::MouseUp(TMouseButton button, TPoint point) {
    if (!FViewport)
        return;
    const bool wasDown = FIsMouseDown;
    FIsMouseDown = false;
    if (button != TMouseButton::mbLeft)
        return;
    switch (EffectiveMode(FAutoPanning)) {
    case TMapMode::mdNone:
        OfferRelease(point, wasDown);
        break;
    case TMapMode::mdPan:
        ExitPanMode();
        break;
    case TMapMode::mdCustom:
        if (FCustomModeObject)
            FCustomModeObject->MouseUp(this, point, FViewport->PointToMapPoint(TMapPoint(point)));
        break;
    default:
        break;
    }
}

void TMapViewControl::PanStep(TPoint point) {
    if (FIsMouseDown)
        FViewport->PanBy({point.X - FCursorDownPt.X, point.Y - FCursorDownPt.Y});
}

TBaseMapLayer* TMapViewControl::LayerTaking(TMouseSupportAction action) const {
    TBaseMapLayer* selected = FLayerManager ? FLayerManager->GetSelLayer() : nullptr;
    return selected && selected->GetMouseSupport().Contains(action) ? selected : nullptr;
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

void TMapViewControl::DoExit() {
    TPaintBox32::DoExit();
    RepaintMap();
}

} // namespace lmx
