#pragma once

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

namespace lmx {

class TBitmap32;

/// A legend control that draws itself into a bitmap of its size, in device pixels, which is then copied to the screen.
/// A drawing that raises is reported once and leaves the ground; it is tried again after the next change.
class LMX_EXPORT TDrawnLegendControl : public TBaseLegendControl {
public:
    TDrawnLegendControl(QWidget* parent, const QString& className);

    TColor GetColor() const { return FColor; } ///< of the ground; clBtnFace at first
    void SetColor(TColor color);

protected:
    /// Draws into a bitmap that is filled with the ground's colour; sizes are times its device ratio.
    virtual void DrawLegend(TBitmap32& bitmap) const = 0;
    /// Asks for a paint after a change.
    void LegendChanged();

    QString FontName() const; ///< of the control's font
    int FontSize() const;     ///< in points

    void paintEvent(QPaintEvent* event) override;

private:
    TColor FColor = clBtnFace;
    bool FHasFailed = false;
};

} // namespace lmx
