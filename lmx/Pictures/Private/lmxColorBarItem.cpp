#include <lmx/Pictures/Private/lmxColorBarItem.h>

#include <lmx/Colour/Legend/lmxGradientLegendPainter.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>
#include <cmath>

namespace lmx {

namespace {

// In units to the eye.
constexpr int BarWidth = 20;
constexpr int TickLength = 4;
constexpr int LabelGap = 3;
constexpr int LabelPitch = 24; // labels stand at least so far apart
constexpr int FontSize = 8;
constexpr int MostLabels = 12;
constexpr int Digits = 7;      // what a 32-bit float holds for sure
constexpr double Slack = 1e-9; // of a step: ends that are meant to be round
constexpr TColor32 Ink = 0xFF202020;
const QString FontName = QStringLiteral("Tahoma");

} // namespace

TColorBarItem::TColorBarItem(TObjectMapLayer* objectLayer, TRasterMapLayer& raster)
    : TBaseObjectLayerItem(objectLayer),
      FRaster(&raster) {}

std::vector<double> TColorBarItem::RoundValues(double low, double high, int most) {
    if (!(low < high) || !std::isfinite(high - low) || most < 2)
        return {};
    const double power = std::pow(10, std::floor(std::log10((high - low) / most)));
    for (const double factor : {1.0, 2.0, 5.0, 10.0, 20.0}) {
        const double step = factor * power;
        const double first = std::ceil(low / step - Slack);
        const double count = std::floor(high / step + Slack) - first + 1;
        if (count > most)
            continue;
        std::vector<double> values;
        for (int i = 0; i < static_cast<int>(count); ++i)
            values.push_back((first + i) * step + 0.0); // no negative zero
        return values.size() < 2 ? std::vector<double>() : values;
    }
    return {};
}

QString TColorBarItem::GetObjectType() const {
    return QStringLiteral("Color bar");
}

QString TColorBarItem::GetObjectClassType() const {
    return {};
}

void TColorBarItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    const auto calculator = FRaster ? FRaster->GetColorCalc() : nullptr;
    const auto* colors = dynamic_cast<const IGradientColorCalculator*>(calculator.get());
    const TRect& place = GetRect();
    if (!colors || place.GetHeight() <= 0)
        return;
    const std::int32_t barWidth = ToDevicePixels(BarWidth);
    TBitmap32 bar(barWidth + 1, place.GetHeight());
    bar.SetDeviceRatio(GetDeviceRatio());
    GradientLegendPainter_Paint(bar, TLegendOrientation::loVertical, barWidth, colors, {}, 0, Ink, Ink, FontName,
                                FontSize, {}, {});
    bitmap.Draw(place.Left, place.Top, bar);

    const double low = colors->GetMinVal();
    const double high = colors->GetMaxVal();
    const int most = std::min(MostLabels, place.GetHeight() / std::max(1, ToDevicePixels(LabelPitch)) + 1);
    std::vector<double> values = RoundValues(low, high, most);
    if (values.empty())
        values = {low, high};
    const std::int32_t line = std::max(1, ToDevicePixels(1));
    for (const double value : values) {
        const double share = high > low ? (value - low) / (high - low) : value == low ? 0 : 1;
        const std::int32_t y = place.Bottom - 1 - RoundToPixel(std::clamp(share, 0.0, 1.0) * (place.GetHeight() - 1));
        bitmap.FillRectS(place.Left + barWidth, y, place.Left + barWidth + ToDevicePixels(TickLength), y + line, Ink);
        PaintLabel(bitmap, y, FloatToGeneral(value, Digits));
    }
}

// Labels of the ends stay beside the bar.
void TColorBarItem::PaintLabel(TBitmap32& bitmap, std::int32_t y, const QString& text) const {
    TFont32 font;
    font.Name = FontName;
    font.Size = FontSize;
    font.Ratio = GetDeviceRatio();
    bitmap.SetFont(font);
    const TRect& place = GetRect();
    const std::int32_t height = bitmap.TextHeight(text, 1);
    const std::int32_t top =
        std::max(place.Top, std::min(y - height / 2, place.Bottom - height)); // the bar may be lower than a text
    bitmap.RenderText(place.Left + ToDevicePixels(BarWidth + TickLength + LabelGap), top, text, 1, Ink);
}

} // namespace lmx
