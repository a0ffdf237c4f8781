#pragma once

#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Runtime/lmxBorrowed.h>

namespace lmx {

class TLayerPropertiesDisplayFrame;
class TTiledRasterMapLayer;

/// The page "Raster display" of tiles: the same as that of images.
class TTiledDisplayPage final : public TOptionFrame {
public:
    /// @throws as TLayerPropertiesDisplayFrame::SetData.
    explicit TTiledDisplayPage(TTiledRasterMapLayer& layer);

    QWidget* GetFrame() const override;
    /// Gives the layer a new calculator and the opacity; the tiles that it has read stay. Nothing once it has gone.
    /// @throws as TLayerPropertiesDisplayFrame::CreateColorCalc; the layer is as it was then.
    void Apply() override;

private:
    QPointer<TLayerPropertiesDisplayFrame> FFrame;
    TBorrowed<TTiledRasterMapLayer> FLayer;
};

} // namespace lmx
