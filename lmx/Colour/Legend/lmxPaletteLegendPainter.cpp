#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>

#include <lmx/Colour/Legend/Private/lmxLegendDrawing.h>
#include <lmx/Colour/Legend/Private/lmxLegendPictures.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxFormat.h>

#include <algorithm>

namespace lmx {

namespace {

using TRows = std::vector<const TPaletteValueColorItem*>;

TRows KeptRows(std::span<const TPaletteValueColorItem> items, const TPalettePainterFilterCallback& filter) {
    TRows rows;
    rows.reserve(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        if (!filter || filter(static_cast<int>(i), items[i]))
            rows.push_back(&items[i]);
    return rows;
}

void DrawBox(const TPictureWindow& picture, const TRect& box, TColor32 color, TColor32 frameColor) {
    picture.FillRectS(box, color);
    for (std::int32_t inset = 0; inset < std::max(1, ToDevicePixels(1, picture.GetBitmap())); ++inset)
        picture.FrameRectS({box.Left + inset, box.Top + inset, box.Right - inset, box.Bottom - inset}, frameColor);
}

/// The sizes and colours of a legend.
struct TStyle {
    std::int32_t BoxSize;
    std::int32_t TextGap;
    std::int32_t ItemSpacing;
    std::int32_t Margin;
    TColor32 FrameColor;
    TColor32 TextColor;
};

void PaintVertical(const TPictureWindow& picture, const TRows& rows, const TStyle& style) {
    const extended itemHeight = PaletteLegendPainter_GetItemHeight(style.BoxSize, style.Margin, style.ItemSpacing);
    const std::int32_t textHeight = picture.GetBitmap().TextHeight(LineHeightSample());
    const std::int32_t textTop = RoundToPixel(style.BoxSize / 2.0L - textHeight / 2.0L);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::int32_t top = RoundToPixel(itemHeight * static_cast<extended>(i) + style.Margin);
        if (itemHeight > 0 && top >= picture.GetVisible().Bottom && top + textTop >= picture.GetVisible().Bottom)
            break; // the rows below show nothing either
        const TRect box(style.Margin, top, style.Margin + style.BoxSize, top + style.BoxSize);
        DrawBox(picture, box, rows[i]->Color, style.FrameColor);
        picture.RenderText(box.Right + style.TextGap, top + textTop, rows[i]->Text, style.TextColor);
    }
}

void PaintHorizontal(const TPictureWindow& picture, const TRows& rows, const TStyle& style) {
    const std::int32_t boxTop = picture.GetBitmap().TextHeight(LineHeightSample()) + style.Margin;
    const std::int32_t boxBottom = boxTop + style.BoxSize;
    std::int32_t widest = style.BoxSize;
    for (const TPaletteValueColorItem* row : rows)
        widest = std::max(widest, picture.GetBitmap().TextWidth(row->Text));
    const extended cell = static_cast<extended>(widest) + style.ItemSpacing;
    const extended count = static_cast<extended>(rows.size());
    const extended start = RoundToPixel(picture.GetWidth() / 2.0L - count * cell / 2);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const extended offset = static_cast<extended>(i) * cell;
        const std::int32_t left = RoundToPixel(start + RoundToPixel(offset + cell / 2 - style.BoxSize / 2.0L));
        const std::int32_t textLeft = RoundToPixel(start + offset);
        if (std::min(left, textLeft) >= picture.GetVisible().Right)
            break; // and so are the cells to the right
        DrawBox(picture, {left, boxTop, left + style.BoxSize, boxBottom}, rows[i]->Color, style.FrameColor);
        const std::int32_t textTop = i % 2 == 0 ? 0 : boxBottom + style.Margin;
        picture.RenderText(textLeft, textTop, rows[i]->Text, style.TextColor);
    }
}

} // namespace

std::vector<TPaletteValueColorItem> PaletteLegendPainter_GetItems(const IBasicPaletteColorCalculator* calculator) {
    const auto key = calculator ? calculator->GetColorKey() : nullptr;
    if (!key)
        return {};
    const std::vector<TColorKeyItem>& colors = key->GetColors();
    const bool isFirstReserved = calculator->GetReserveFirstColorForNoData();
    const extended bands = static_cast<extended>(colors.size()) - (isFirstReserved ? 1 : 0);
    extended value = calculator->GetMinVal();
    const extended step = (static_cast<extended>(calculator->GetMaxVal()) - value) / bands;
    std::vector<TPaletteValueColorItem> items;
    items.reserve(colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i) {
        if (i == 0 && isFirstReserved) {
            items.push_back({QStringLiteral("NODATA"), colors[i].Color});
            continue;
        }
        const QString& name = colors[i].Name;
        items.push_back({name.isEmpty() ? Format(u"%.3f - %.3f", {value, value + step}) : name, colors[i].Color});
        value += step;
    }
    return items;
}

std::vector<TPaletteValueColorItem> PaletteLegendPainter_GetItems(const IColorClassCalculator* calculator) {
    const auto classes = calculator ? calculator->GetColorClasses() : nullptr;
    if (!classes)
        return {};
    std::vector<TPaletteValueColorItem> items;
    items.reserve(static_cast<std::size_t>(classes->GetClasses().Count()));
    for (const TColorClass* colorClass : classes->GetClasses())
        items.push_back({colorClass->GetLabel(), colorClass->GetColor()});
    return items;
}

std::int32_t PaletteLegendPainter_GetItemHeight(std::int32_t boxSize, std::int32_t margin, std::int32_t itemSpacing) {
    return boxSize + 2 * margin + itemSpacing;
}

void PaletteLegendPainter_Paint(TBitmap32* bitmap, TLegendOrientation orientation,
                                std::span<const TPaletteValueColorItem> items, std::int32_t boxSize,
                                std::int32_t textGap, std::int32_t itemSpacing, std::int32_t margin,
                                TColor32 frameColor, const QString& fontName, int fontSize, TColor32 textColor,
                                const TPalettePainterFilterCallback& filter) {
    if (!bitmap)
        throw EExArgumentNilException(QStringLiteral("PaletteLegendPainter_Paint"), QStringLiteral("Bitmap"));
    PaintPaletteLegend(TPictureWindow(*bitmap), orientation, items, boxSize, textGap, itemSpacing, margin, frameColor,
                       fontName, fontSize, textColor, filter);
}

void PaintPaletteLegend(const TPictureWindow& picture, TLegendOrientation orientation,
                        std::span<const TPaletteValueColorItem> items, std::int32_t boxSize, std::int32_t textGap,
                        std::int32_t itemSpacing, std::int32_t margin, TColor32 frameColor, const QString& fontName,
                        int fontSize, TColor32 textColor, const TPalettePainterFilterCallback& filter) {
    const TRows rows = KeptRows(items, filter);
    if (rows.empty())
        return;
    SetLegendFont(picture.GetBitmap(), fontName, fontSize);
    const TStyle style{boxSize, textGap, itemSpacing, margin, frameColor, textColor};
    if (orientation == TLegendOrientation::loVertical)
        PaintVertical(picture, rows, style);
    else
        PaintHorizontal(picture, rows, style);
}

} // namespace lmx
