#pragma once

#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Controls/Legend/lmxDrawnLegendControl.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <memory>

namespace lmx {

class IGradientColorCalculator;

/// The legend of a gradient: an upright bar with up to five labels. It reads its calculator at every paint and does not
/// hear of its changes: whoever changes it asks for an update. Sizes are logical pixels.
class LMX_EXPORT TMapViewGradientLegendControl : public TDrawnLegendControl {
public:
    explicit TMapViewGradientLegendControl(QWidget* parent = nullptr);

    static TMapViewGradientLegendControl* CreateComp(QWidget* owner,
                                                     std::shared_ptr<IGradientColorCalculator> gradient);

    const std::shared_ptr<IGradientColorCalculator>& GetGradient() const { return FGradient; }
    void SetGradient(std::shared_ptr<IGradientColorCalculator> gradient);
    int GetBarSize() const { return FBarSize; } ///< width of the bar; 24 at first
    void SetBarSize(int size);
    TTicks GetTicks() const { return FTicks; } ///< which labels are shown; all at first
    void SetTicks(TTicks ticks);
    /// Only asks for a repaint: the bar's border has the colour clBtnText.
    TColor GetBorderColor() const { return FBorderColor; }
    void SetBorderColor(TColor color);

    /// Where a host may place things beside the legend: the bar without the halves of a line above and below it, and
    /// the lines of the labels at its end, middle and beginning; empty for a label that is not shown and for the two in
    /// between. They follow the size of the control at once; the drawing does not depend on them.
    TRect GetBarRect() const;
    TRect GetTickRect(TTick tick) const;

    int GetSuggestedHeight() const override { return 300; }
    QSize sizeHint() const override { return {120, 300}; }

protected:
    void DrawLegend(TBitmap32& bitmap) const override;

private:
    TColor FBorderColor = clBtnShadow;
    int FBarSize = 24;
    TTicks FTicks = AllTicks;
    std::shared_ptr<IGradientColorCalculator> FGradient;
};

} // namespace lmx
