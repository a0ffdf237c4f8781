#pragma once

#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Controls/Legend/lmxDrawnLegendControl.h>
#include <lmx/Runtime/lmxExport.h>

#include <vector>

namespace lmx {

/// A legend of rows, each a coloured box with its text, one below the other. Rows that do not fit are cut off. Screen
/// readers are given the texts.
class LMX_EXPORT TPaletteLegendControl : public TDrawnLegendControl {
public:
    const std::vector<TPaletteValueColorItem>& GetItems() const { return FItems; }

    int GetSuggestedHeight() const override; ///< 20 logical pixels a row
    QSize sizeHint() const override { return {160, GetSuggestedHeight()}; }

protected:
    TPaletteLegendControl(QWidget* parent, const QString& className);

    void SetItems(std::vector<TPaletteValueColorItem> items);

    /// @throws EAssertionFailed "Assertion failure" without rows.
    void DrawLegend(TBitmap32& bitmap) const override;

private:
    std::vector<TPaletteValueColorItem> FItems;
};

} // namespace lmx
