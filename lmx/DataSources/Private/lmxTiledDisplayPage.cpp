#include <lmx/DataSources/Private/lmxTiledDisplayPage.h>

#include <lmx/DataSources/lmxTiledRasterMapLayer.h>
#include <lmx/Dialogs/lmxLayerPropertiesDisplayFrame.h>
#include <lmx/Layers/lmxLayerManager.h>

namespace lmx {

TTiledDisplayPage::TTiledDisplayPage(TTiledRasterMapLayer& layer)
    : TOptionFrame(QStringLiteral("Raster display")),
      FFrame(new TLayerPropertiesDisplayFrame),
      FLayer(&layer) {
    TakeFrame(FFrame);
    const auto manager = layer.GetLayerManager();
    FFrame->SetData(layer.FindValueRange(), layer.GetColorCalc(), layer.GetOpacity(),
                    manager ? manager->GetConfig() : nullptr);
}

QWidget* TTiledDisplayPage::GetFrame() const {
    return FFrame;
}

void TTiledDisplayPage::Apply() {
    TOptionFrame::Apply();
    if (FLayer && FFrame)
        FFrame->ApplyTo(FLayer);
}

} // namespace lmx
