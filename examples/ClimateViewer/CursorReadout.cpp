#include "CursorReadout.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <QEvent>
#include <QLabel>

#include <utility>

#include "MapReading.h"

TCursorReadout::TCursorReadout(lmx::TMapViewControl* view, QLabel* place, QLabel* values)
    : QObject(view),
      FView(view),
      FPlace(place),
      FValues(values) {
    view->installEventFilter(this);
    view->SetOnMouseCursorLocationChanged(
        [this](lmx::TMapViewControl*, const lmx::TPoint& pixel, const lmx::TMapPoint&) {
            FPixel = pixel;
            FOrigin = FView->mapTo(FView->window(), QPoint(0, 0));
            Update();
        });
}

void TCursorReadout::SetLayerManager(const std::shared_ptr<lmx::ILayerManager>& manager) {
    FAdded = {};
    if (manager) {
        for (lmx::TBaseMapLayer* layer : manager->GetLayers())
            FollowName(layer);
        FAdded = manager->GetOnLayerAdded().Add(
            [this](lmx::ILayerManager*, lmx::TBaseMapLayer* layer) { FollowName(layer); });
    }
    UpdateLater();
}

void TCursorReadout::FollowName(lmx::TBaseMapLayer* layer) {
    layer->GetOnLayerNameChanged().Add(this, &TCursorReadout::Layer_NameChanged);
}

// Whatever changes on the map has it painted again.
bool TCursorReadout::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Leave) {
        FPixel.reset();
        UpdateLater();
    }
    if (event->type() == QEvent::Paint || event->type() == QEvent::Move)
        UpdateLater();
    return QObject::eventFilter(watched, event);
}

// After the paint: which places are shown, and where, is known by then.
void TCursorReadout::UpdateLater() {
    if (std::exchange(FIsUpdatePending, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            FIsUpdatePending = false;
            Update();
        },
        Qt::QueuedConnection);
}

void TCursorReadout::Update() {
    TMapReading reading;
    if (FPixel) { // the view may have moved under the mouse
        const QPoint origin = FView->mapTo(FView->window(), QPoint(0, 0));
        const lmx::TPoint moved = FView->ToDevicePoint(FOrigin - origin);
        reading = ReadMap(*FView, {FPixel->X + moved.X, FPixel->Y + moved.Y});
    }
    FPlace->setText(reading.Place);
    FValues->setText(reading.Values.join("   "));
}
