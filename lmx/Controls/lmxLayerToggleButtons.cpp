#include <lmx/Controls/lmxLayerToggleButtons.h>

#include <lmx/Controls/lmxMapViewAssets.h>

namespace lmx {

TLayerRowToggleButton::TLayerRowToggleButton(QWidget* parent, const QString& hint, int imageOn, int imageOff)
    : TBaseToggleButton(parent),
      FImageOn(imageOn),
      FImageOff(imageOff) {
    SetHint(hint);
}

void TLayerRowToggleButton::RenderToggleState(QPainter& canvas, bool state) {
    const TImageList& images = TMapViewAssets::GetInstance().GetLayerPanelAssets();
    images.Draw(canvas, GetRenderPoint(images.GetSize()), state ? FImageOn : FImageOff, GetInk());
}

TLayerOpenCloseToggleButton::TLayerOpenCloseToggleButton(QWidget* parent)
    : TLayerRowToggleButton(parent, QStringLiteral("Toggle layer information"), 1, 0) {}

TLayerVisibilityToggleButton::TLayerVisibilityToggleButton(QWidget* parent)
    : TLayerRowToggleButton(parent, QStringLiteral("Toggle layer visibility"), 3, 2) {}

TShowMenuButton::TShowMenuButton(QWidget* parent) : TLayerRowToggleButton(parent, QStringLiteral("Layer menu"), 5, 5) {}

} // namespace lmx
