#pragma once

#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QObject>
#include <QPoint>

#include <memory>
#include <optional>

class QLabel;

namespace lmx {
class ILayerManager;
class TBaseMapLayer;
class TMapViewControl;
} // namespace lmx

/// Shows what is under the mouse in two labels: the place, and the values of the rasters. It is true at any time: also
/// when the map, its layers or their data change under a mouse that rests.
class TCursorReadout : public QObject, public lmx::TEventReceiver {
public:
    /// Takes the view's event of the mouse; the view is the parent.
    TCursorReadout(lmx::TMapViewControl* view, QLabel* place, QLabel* values);

    /// To be called with each manager that the view is given; may be nil.
    void SetLayerManager(const std::shared_ptr<lmx::ILayerManager>& manager);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Update();
    void UpdateLater();
    void FollowName(lmx::TBaseMapLayer* layer);
    void Layer_NameChanged(lmx::TBaseMapLayer*) { UpdateLater(); }

    lmx::TMapViewControl* FView;
    QLabel* FPlace;
    QLabel* FValues;
    std::optional<lmx::TPoint> FPixel; // of the mouse, while it is over the view
    QPoint FOrigin;                    // of the view in its window, when that was told
    bool FIsUpdatePending = false;
    lmx::TSubscription FAdded;
};
