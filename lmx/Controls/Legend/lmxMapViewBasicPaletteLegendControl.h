#pragma once

#include <lmx/Controls/Legend/lmxPaletteLegendControl.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class IBasicPaletteColorCalculator;

/// The legend of a palette: a row for each colour. The rows are those of the moment at which the calculator was set.
class LMX_EXPORT TMapViewBasicPaletteLegendControl : public TPaletteLegendControl {
public:
    explicit TMapViewBasicPaletteLegendControl(QWidget* parent = nullptr);

    static TMapViewBasicPaletteLegendControl* CreateComp(QWidget* owner,
                                                         std::shared_ptr<IBasicPaletteColorCalculator> palette);

    const std::shared_ptr<IBasicPaletteColorCalculator>& GetPalette() const { return FPalette; }
    /// Takes the rows anew; nil leaves none, and then the control must not be shown.
    void SetPalette(std::shared_ptr<IBasicPaletteColorCalculator> palette);

private:
    std::shared_ptr<IBasicPaletteColorCalculator> FPalette;
};

} // namespace lmx
