#include <lmx/Controls/lmxMapControl.h>

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewRuler.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr int StripWidth = 20;

} // namespace

TMapControl::TMapControl(QWidget* owner)
    : QWidget(owner),
      FMapView(new TMapViewControl(this)),
      FHRuler(new TMapViewRuler(this)),
      FVRuler(new TMapViewRuler(this)) {
    FHRuler->hide();
    FVRuler->hide();
    FVRuler->SetOrientation(TMapRulerOrientation::roVertical);
    setFocusProxy(FMapView);
    FillWithMapView();
}

TMapControl::~TMapControl() {
    delete FMapView; // before anything else of this control goes
}

void TMapControl::SetShowRulers(bool show) {
    if (show == FShowRulers)
        return;
    FShowRulers = show;
    Layout();
}

// The platform does not tell a hidden control of its size.
TMapViewControl* TMapControl::GetMapView() const {
    FillWithMapView();
    return FMapView;
}

QSize TMapControl::sizeHint() const {
    return FMapView ? FMapView->sizeHint() : QWidget::sizeHint();
}

void TMapControl::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FillWithMapView();
    Layout();
}

// The view fills what lies to the right of and below its corner.
void TMapControl::FillWithMapView() const {
    if (!FMapView)
        return;
    const QPoint corner = FMapView->pos();
    FMapView->resize(std::max(0, width() - corner.x()), std::max(0, height() - corner.y()));
}

void TMapControl::Layout() {
    if (!FShowRulers)
        return;
    FHRuler->setGeometry(StripWidth, 0, std::max(0, width() - StripWidth), StripWidth);
    FVRuler->setGeometry(0, StripWidth, StripWidth, std::max(0, height() - StripWidth));
    if (FMapView)
        FMapView->move(StripWidth, StripWidth);
    FillWithMapView();
    FHRuler->show();
    FVRuler->show();
}

} // namespace lmx
