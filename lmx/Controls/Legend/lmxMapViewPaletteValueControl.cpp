#include <lmx/Controls/Legend/lmxMapViewPaletteValueControl.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExtended.h>

#include <QFontMetrics>

#include <algorithm>

namespace lmx {

namespace {

constexpr int LabelGap = 4;

} // namespace

TMapViewPaletteValueControl::TMapViewPaletteValueControl(QWidget* parent)
    : TDrawnLegendControl(parent, QStringLiteral("TMapViewPaletteValueControl")) {
    resize(sizeHint());
}

void TMapViewPaletteValueControl::SetValueColor(TColor color) {
    if (color == FValueColor)
        return;
    FValueColor = color;
    LegendChanged();
}

void TMapViewPaletteValueControl::SetValueLabel(const QString& label) {
    if (label == FValueLabel)
        return;
    FValueLabel = label;
    setAccessibleName(label);
    LegendChanged();
}

void TMapViewPaletteValueControl::SetContentMargin(int margin) {
    if (margin == FContentMargin)
        return;
    FContentMargin = margin;
    LegendChanged();
}

TRect TMapViewPaletteValueControl::GetColorRect() const {
    const int side = height() - 2 * FContentMargin;
    return {FContentMargin, FContentMargin, FContentMargin + side, FContentMargin + side};
}

void TMapViewPaletteValueControl::DrawLegend(TBitmap32& bitmap) const {
    const auto scaled = [&](int pixels) {
        return RoundToPixel(pixels * static_cast<extended>(bitmap.GetDeviceRatio()));
    };
    const TRect swatch = GetColorRect();
    const TRect box(scaled(swatch.Left), scaled(swatch.Top), scaled(swatch.Right), scaled(swatch.Bottom));
    bitmap.FillRectS(box, Color32(FValueColor));
    for (int inset = 0; inset < std::max(1, scaled(1)); ++inset)
        bitmap.FrameRectS(box.Left + inset, box.Top + inset, box.Right - inset, box.Bottom - inset,
                          Color32(clBtnShadow));
    TFont32& font = bitmap.GetFont();
    font.Name = FontName();
    font.Size = FontSize();
    font.Ratio = bitmap.GetDeviceRatio();
    const std::int32_t top = box.Top + box.GetHeight() / 2 - bitmap.TextHeight(QStringLiteral("Wg")) / 2;
    bitmap.RenderText(box.Right + scaled(LabelGap), top, FValueLabel, 1, Color32(clWindowText));
}

} // namespace lmx
