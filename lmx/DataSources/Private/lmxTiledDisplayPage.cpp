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

// Whoever is told of the new calculator may end the layer, and the dialog with this page.
void TTiledDisplayPage::Apply() {
    TOptionFrame::Apply();
    const TBorrowed<TTiledRasterMapLayer> layer = FLayer;
    if (!layer || !FFrame)
        return;
    const std::uint8_t opacity = FFrame->GetOpacity();
    layer->SetColorCalc(FFrame->CreateColorCalc());
    if (layer)
        layer->SetOpacity(opacity);
}

} // namespace lmx
