#include <lmx/Pictures/Private/lmxPictureSheet.h>

#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/Private/lmxPaintedLayer.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Pictures/Private/lmxColorBarItem.h>
#include <lmx/Pictures/Private/lmxScaleBarItem.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lmx {

namespace {

// In units to the eye.
constexpr double Margin = 20;
constexpr double Gap = 12;
constexpr double ColumnWidth = 160;
constexpr double FootHeight = 30;
constexpr double LeastMap = 32;
constexpr double GradientHeight = 240;
constexpr double LeastGradientHeight = 60;
constexpr double RowHeight = 26;      // a box of 22 and its margins
constexpr double LeastRowHeight = 13; // a line of text
constexpr double LegendInset = 10;
constexpr double KeyRowHeight = 21;
constexpr double KeyInset = 20;
constexpr double RoseSize = 84;
constexpr double ScaleWidth = 220;
constexpr int TitleFontSize = 18;
constexpr int LeastTitleFontSize = 10;
constexpr TColor32 FrameColor = 0xFF404040;
const QString FontName = QStringLiteral("Tahoma");

/// Rows of a palette or of classes; 0 for another calculator.
std::size_t RowCountOf(const IBaseColorCalculator* colors) {
    if (const auto* palette = dynamic_cast<const IBasicPaletteColorCalculator*>(colors))
        return PaletteLegendPainter_GetItems(palette).size();
    if (const auto* classes = dynamic_cast<const IColorClassCalculator*>(colors))
        return PaletteLegendPainter_GetItems(classes).size();
    return 0;
}

bool HasLegend(const TRasterMapLayer& raster) {
    const IBaseColorCalculator* colors = raster.GetColorCalc().get();
    return RowCountOf(colors) > 0 || dynamic_cast<const IGradientColorCalculator*>(colors);
}

/// Lines that a text takes, broken between words.
int LinesOf(const QString& text, std::int32_t width, const TBitmap32& bitmap) {
    int lines = 1;
    QString line;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        const QString longer = line.isEmpty() ? word : line + u' ' + word;
        if (!line.isEmpty() && bitmap.TextWidth(longer, 1) > width) {
            ++lines;
            line = word;
        } else {
            line = longer;
        }
    }
    return lines;
}

} // namespace

TPictureSheet::TPictureSheet(const std::shared_ptr<ILayerManager>& manager, const TMapPictureOptions& options,
                             TSize size, double aspect)
    : FOptions(options),
      FSize(size),
      FItems(manager, false) {
    FItems.SetDeviceRatio(options.Density);
    FTitle.Text = options.Title.simplified();
    if (options.ShowsLegends)
        Survey(*manager);
    FHasColumn = !FLegends.empty() || !FKeys.empty() || options.ShowsCompassRose;
    FHasFoot = options.ShowsScale || !options.Time.simplified().isEmpty();
    FIsFramed = FHasColumn || FHasFoot || !FTitle.Text.isEmpty();
    FMap = {0, 0, size.cx, size.cy};
    if (!FIsFramed)
        return;
    PlaceMap(aspect);
    AddTitle();
    AddFoot();
    if (FHasColumn)
        AddColumn();
}

std::int32_t TPictureSheet::Pixels(double units) const {
    return RoundToPixel(units * FOptions.Density);
}

void TPictureSheet::Survey(const ILayerManager& manager) {
    manager.GetLayers().ForEach([this](TBaseMapLayer* layer) {
        if (!IsPainted(*layer) || !layer->GetShowsInLayersList()) // or a part of another layer
            return;
        auto* raster = dynamic_cast<TRasterMapLayer*>(layer);
        if (raster && HasLegend(*raster))
            FLegends.insert(FLegends.begin(), TBorrowed<TRasterMapLayer>(raster));
        if (auto* shapes = dynamic_cast<TBaseShapeLayer*>(layer))
            FKeys.insert(FKeys.begin(), TBorrowed<TBaseShapeLayer>(shapes));
    });
    const auto hasGone = [](const auto& layer) { return !layer; }; // while a later one was asked
    std::erase_if(FLegends, hasGone);
    std::erase_if(FKeys, hasGone);
}

// The map keeps the proportions of what it shows, so that its frame is that of the data, and stands with its title in
// the middle of the sheet.
void TPictureSheet::PlaceMap(double aspect) {
    const std::int32_t margin = Pixels(Margin);
    const std::int32_t column = FHasColumn ? Pixels(ColumnWidth + Gap) : 0;
    const std::int32_t foot = FHasFoot ? Pixels(FootHeight + Gap) : 0;
    const std::int32_t width = FSize.cx - 2 * margin - column;
    if (!FTitle.Text.isEmpty()) {
        FTitle.IsBold = true;
        FTitle.FontSize = TitleFontSize + 1;
        do {
            --FTitle.FontSize;
            Measure(FTitle, width + column);
        } while (FTitle.FontSize > LeastTitleFontSize && FTitle.Height > Pixels(2.2 * FTitle.FontSize));
    }
    const std::int32_t title = FTitle.Height > 0 ? FTitle.Height + Pixels(Gap) : 0;
    const std::int32_t height = FSize.cy - 2 * margin - title - foot;
    if (width < Pixels(LeastMap) || height < Pixels(LeastMap))
        throw EArgumentException(QStringLiteral("The picture is too small for what stands around the map"));
    std::int32_t mapWidth = width;
    std::int32_t mapHeight = height;
    if (aspect > 0 && aspect * height < width)
        mapWidth = std::max(1, RoundToPixel(aspect * height));
    else if (aspect > 0)
        mapHeight = std::max(1, RoundToPixel(width / aspect));
    FMap.Left = margin + (width - mapWidth) / 2;
    FMap.Top = margin + title + (height - mapHeight) / 2;
    FMap.Right = FMap.Left + mapWidth;
    FMap.Bottom = FMap.Top + mapHeight;
}

void TPictureSheet::Measure(TLabel& label, std::int32_t width) const {
    TBitmap32 bitmap;
    TFont32 font;
    font.Name = FontName;
    font.Size = label.FontSize;
    font.Ratio = FOptions.Density;
    if (label.IsBold)
        font.Styles = {TFontStyle::fsBold};
    bitmap.SetFont(font);
    label.Height = bitmap.TextHeight(QStringLiteral("Wg"), 1) * LinesOf(label.Text, width, bitmap);
}

void TPictureSheet::AddText(const TLabel& label, const TRect& rect, bool isRight) {
    QString text = label.Text;
    text.replace(u'&', QStringLiteral("&&")); // which would underline the next letter
    const TFontStyles styles = label.IsBold ? TFontStyles{TFontStyle::fsBold} : TFontStyles{};
    auto box =
        std::make_unique<TTextBoxObjectLayerItem>(&FItems, text, FontName, label.FontSize, clBlack, styles,
                                                  isRight ? TAlignment::taRightJustify : TAlignment::taLeftJustify);
    box->SetRect(rect);
    FItems.GetObjects().Add(std::move(box));
}

void TPictureSheet::AddTitle() {
    if (FTitle.Text.isEmpty())
        return;
    const std::int32_t right = FSize.cx - Pixels(Margin);
    const std::int32_t top = FMap.Top - Pixels(Gap) - FTitle.Height;
    AddText(FTitle, {FMap.Left, top, right, FMap.Top});
}

void TPictureSheet::AddFoot() {
    const std::int32_t top = FMap.Bottom + Pixels(Gap);
    const std::int32_t bottom = top + Pixels(FootHeight);
    std::int32_t left = FMap.Left;
    if (FOptions.ShowsScale) {
        auto bar = std::make_unique<TScaleBarItem>(&FItems);
        const std::int32_t width = std::min(Pixels(ScaleWidth), FMap.GetWidth() / 2);
        bar->SetRect({left, top, left + width, bottom});
        FItems.GetObjects().Add(std::move(bar));
        left += width;
    }
    if (const QString time = FOptions.Time.simplified(); !time.isEmpty())
        AddText({time, 10, false, 0}, {left, top, FMap.Right, bottom}, true);
}

TPictureSheet::TLabel TPictureSheet::LabelOf(const TRasterMapLayer& raster) const {
    TLabel label;
    label.Text = raster.GetLayerName().simplified();
    if (const QString units = TMapPictureLayer::Of(raster).Units.simplified(); !units.isEmpty())
        label.Text += QStringLiteral(" (") + units + u')';
    Measure(label, Pixels(ColumnWidth));
    return label;
}

std::int32_t TPictureSheet::LegendHeight(const TRasterMapLayer& raster, double ease) const {
    const auto rows = static_cast<double>(RowCountOf(raster.GetColorCalc().get()));
    const double most = rows > 0 ? rows * RowHeight + LegendInset : GradientHeight;
    const double least = rows > 0 ? rows * LeastRowHeight + LegendInset : LeastGradientHeight;
    return Pixels(least + (most - least) * ease);
}

std::int32_t TPictureSheet::KeyHeight() const {
    return FKeys.empty() ? 0 : Pixels(static_cast<double>(FKeys.size() + 1) * KeyRowHeight + KeyInset);
}

// Where the room does not do, bars become shorter and boxes smaller, as far as their texts stay apart; what does not
// fit then is cut off by the edge of the sheet.
void TPictureSheet::AddColumn() {
    const std::int32_t rose = FOptions.ShowsCompassRose ? Pixels(RoseSize + Gap) : 0;
    const std::int32_t bottom = FSize.cy - Pixels(Margin);
    std::int32_t room = bottom - FMap.Top - KeyHeight() - rose;
    std::int32_t least = 0;
    std::int32_t most = 0;
    for (const auto& raster : FLegends) {
        room -= LabelOf(*raster.Get()).Height + Pixels(Gap);
        least += LegendHeight(*raster.Get(), 0);
        most += LegendHeight(*raster.Get(), 1);
    }
    const double ease = most > least ? std::clamp((room - least) / static_cast<double>(most - least), 0.0, 1.0) : 1;
    std::int32_t top = FMap.Top;
    for (const auto& raster : FLegends)
        top = AddLegend(*raster.Get(), top, ease);
    top = AddKey(top);
    if (!FOptions.ShowsCompassRose)
        return;
    auto compass = std::make_unique<TCompassRoseObjectLayerItem>(&FItems);
    const std::int32_t left = FMap.Right + Pixels(Gap);
    const std::int32_t roseTop = std::max(top, std::min(FMap.Bottom, bottom) - Pixels(RoseSize));
    compass->SetRect({left, roseTop, left + Pixels(RoseSize), roseTop + Pixels(RoseSize)});
    FItems.GetObjects().Add(std::move(compass));
}

std::int32_t TPictureSheet::AddLegend(TRasterMapLayer& raster, std::int32_t top, double ease) {
    const std::int32_t left = FMap.Right + Pixels(Gap);
    const std::int32_t right = left + Pixels(ColumnWidth);
    const TLabel label = LabelOf(raster);
    AddText(label, {left, top, right, top + label.Height});
    top += label.Height;
    const auto rows = static_cast<double>(RowCountOf(raster.GetColorCalc().get()));
    std::int32_t height = LegendHeight(raster, ease);
    if (rows == 0) {
        auto bar = std::make_unique<TColorBarItem>(&FItems, raster);
        bar->SetRect({left, top + Pixels(LegendInset / 2), right, top + height});
        FItems.GetObjects().Add(std::move(bar));
        return top + height + Pixels(Gap);
    }
    auto legend = std::make_unique<TLegendObjectLayerItem>(&FItems, &raster, TLegendOrientation::loVertical);
    const double row =
        std::clamp(std::floor((height / FOptions.Density - LegendInset) / rows), LeastRowHeight, RowHeight);
    legend->SetPaletteBoxSize(RoundToPixel(row - 4)); // margins of 2
    height = Pixels(rows * row + LegendInset);
    legend->SetRect({left - Pixels(5), top, right, top + height}); // its content is 5 units inside
    FItems.GetObjects().Add(std::move(legend));
    return top + height + Pixels(Gap);
}

std::int32_t TPictureSheet::AddKey(std::int32_t top) {
    if (FKeys.empty())
        return top;
    auto key = std::make_unique<TShapeLegendObjectLayerItem>(&FItems);
    key->SetShowAll(false);
    std::vector<TBaseShapeLayer*> layers;
    for (const auto& layer : FKeys)
        layers.push_back(layer.Get());
    key->SetLayers(layers);
    const std::int32_t left = FMap.Right + Pixels(Gap);
    const std::int32_t bottom = top + KeyHeight();
    key->SetRect({left - Pixels(10), top, left + Pixels(ColumnWidth), bottom}); // 10 units inside
    FItems.GetObjects().Add(std::move(key));
    return bottom + Pixels(Gap);
}

void TPictureSheet::Paint(TWorldViewport& viewport, TBitmap32& picture) {
    if (!FIsFramed)
        return;
    for (std::int32_t line = std::max(1, Pixels(1)); line > 0; --line)
        picture.FrameRectS(FMap.Left - line, FMap.Top - line, FMap.Right + line, FMap.Bottom + line, FrameColor);
    FItems.Paint(viewport.GetWorld(), &viewport, picture);
}

} // namespace lmx
