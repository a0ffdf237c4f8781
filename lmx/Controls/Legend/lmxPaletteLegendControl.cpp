#include <lmx/Controls/Legend/lmxPaletteLegendControl.h>

#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <utility>

namespace lmx {

namespace {

constexpr int BoxSize = 16;
constexpr int TextGap = 8;
constexpr int Margin = 2;
constexpr int MostDescribedRows = 100; // a screen reader reads them all out

} // namespace

TPaletteLegendControl::TPaletteLegendControl(QWidget* parent, const QString& className)
    : TDrawnLegendControl(parent, className) {
    setAccessibleName(QStringLiteral("Legend"));
}

void TPaletteLegendControl::SetItems(std::vector<TPaletteValueColorItem> items) {
    FItems = std::move(items);
    QStringList texts;
    for (std::size_t i = 0; i < FItems.size() && i < MostDescribedRows; ++i)
        texts += FItems[i].Text;
    setAccessibleDescription(texts.join(QStringLiteral("; ")));
    updateGeometry();
    LegendChanged();
}

int TPaletteLegendControl::GetSuggestedHeight() const {
    return SaturateToInt32(static_cast<std::int64_t>(FItems.size()) *
                           PaletteLegendPainter_GetItemHeight(BoxSize, Margin, 0));
}

void TPaletteLegendControl::DrawLegend(TBitmap32& bitmap) const {
    if (FItems.empty())
        throw EAssertionFailed(QStringLiteral("Assertion failure"));
    const auto scaled = [&](int pixels) {
        return RoundToPixel(pixels * static_cast<extended>(bitmap.GetDeviceRatio()));
    };
    PaletteLegendPainter_Paint(&bitmap, TLegendOrientation::loVertical, FItems, scaled(BoxSize), scaled(TextGap), 0,
                               scaled(Margin), clBlack32, FontName(), FontSize(), Color32(clWindowText));
}

} // namespace lmx
