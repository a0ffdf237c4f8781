#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QPointer>
#include <QWidget>

namespace lmx {

class TMapViewControl;
class TMapViewRuler;

/// A map view with a strip of ticks above it and one to its left, which are hidden at first.
class LMX_EXPORT TMapControl : public QWidget {
public:
    explicit TMapControl(QWidget* owner = nullptr);
    ~TMapControl() override;

    /// It has the place that it takes in the control as that is now, also while that is hidden. Nil once somebody else
    /// has destroyed it.
    TMapViewControl* GetMapView() const;
    TMapViewRuler* GetHRuler() const { return FHRuler; }
    TMapViewRuler* GetVRuler() const { return FVRuler; }

    bool GetShowRulers() const { return FShowRulers; }
    /// The first time with true brings the strips up and moves the view aside. They stay: with false they only stop
    /// following the size of the control, and the view keeps its place and fills the rest.
    void SetShowRulers(bool show);

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void FillWithMapView() const;
    void Layout();

    QPointer<TMapViewControl> FMapView;
    TMapViewRuler* FHRuler;
    TMapViewRuler* FVRuler;
    bool FShowRulers = false;
};

} // namespace lmx
