#pragma once

#include <lmx/Controls/Legend/lmxDrawnLegendControl.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

namespace lmx {

/// One swatch with one label: a row of its own, 20 logical pixels high at first.
class LMX_EXPORT TMapViewPaletteValueControl : public TDrawnLegendControl {
public:
    explicit TMapViewPaletteValueControl(QWidget* parent = nullptr);

    TColor GetValueColor() const { return FValueColor; } ///< of the swatch; black at first
    void SetValueColor(TColor color);
    const QString& GetValueLabel() const { return FValueLabel; }
    void SetValueLabel(const QString& label);
    int GetContentMargin() const { return FContentMargin; } ///< around the swatch, in logical pixels; 2 at first
    void SetContentMargin(int margin);

    /// The swatch: a square as high as the control without the margins, in logical pixels.
    TRect GetColorRect() const;

    QSize sizeHint() const override { return {120, 20}; }

protected:
    void DrawLegend(TBitmap32& bitmap) const override;

private:
    TColor FValueColor;
    QString FValueLabel;
    int FContentMargin = 2;
};

} // namespace lmx
