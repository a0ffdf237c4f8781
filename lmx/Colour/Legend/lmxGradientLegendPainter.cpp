#include <lmx/Colour/Legend/lmxGradientLegendPainter.h>

#include <lmx/Colour/Legend/Private/lmxLegendDrawing.h>
#include <lmx/Colour/Legend/Private/lmxLegendPictures.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxFormat.h>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

constexpr int LabelGap = 4;
constexpr double LeastRadius = 2;

// The colour at `t` of the way along the bar, low end first.
TColor32 ColorAt(const IGradient& scale, extended t) {
    return scale.GetColor(static_cast<double>(t));
}

void FillVertical(const TPictureWindow& picture, const TRect& bar, const IGradient& scale) {
    const TRect& visible = picture.GetVisible();
    const std::int32_t end = std::min(visible.Bottom, bar.GetHeight());
    for (std::int32_t y = visible.Top; y < end; ++y)
        picture.FillRectS({0, y, bar.Right, y + 1}, ColorAt(scale, 1.0L - static_cast<extended>(y) / bar.GetHeight()));
}

void FillHorizontal(const TPictureWindow& picture, const TRect& bar, const IGradient& scale) {
    const TRect& visible = picture.GetVisible();
    const std::int32_t end = std::min(visible.Right, bar.GetWidth());
    for (std::int32_t x = visible.Left; x < end; ++x)
        picture.FillRectS({x, 0, x + 1, bar.Bottom}, ColorAt(scale, static_cast<extended>(x) / bar.GetWidth()));
}

void DrawMark(const TPictureWindow& picture, const TRect& bar, bool isVertical, const TGradientLegendMark& mark,
              extended t) {
    const auto along = static_cast<double>(t);
    const double width = bar.GetWidth();
    const double height = bar.GetHeight();
    const double x = isVertical ? width / 2 + bar.Left : width * along + bar.Left;
    const double y = isVertical ? bar.Bottom - height * along : height / 2 + bar.Top;
    const double ratio = picture.GetBitmap().GetDeviceRatio();
    const double radius =
        std::max((isVertical ? width : height) / 2 - static_cast<double>(mark.Spacing), LeastRadius * ratio);
    const TFloatPoints circle = CirclePolygon(x, y, radius);
    picture.PolygonFS(circle, mark.FillColor);
    picture.PolylineFS(circle, mark.StrokeColor, true, {ratio, TJoinStyle::jsMiter, TEndStyle::esButt, 4});
}

// A range of one value, or of none, has no place for any mark.
void DrawMarks(const TPictureWindow& picture, const TRect& bar, bool isVertical,
               const IGradientColorCalculator& gradient, const TGradientLegendMarkArray& marks) {
    const float min = gradient.GetMinVal();
    const float max = gradient.GetMaxVal();
    for (const TGradientLegendMark& mark : marks)
        if (min <= mark.Value && mark.Value < max)
            DrawMark(picture, bar, isVertical, mark,
                     (static_cast<extended>(mark.Value) - min) / (static_cast<extended>(max) - min));
}

struct TLabel {
    QString Text;
    std::int32_t X = 0;
    std::int32_t Y = 0;
};

// Quarter `i` of the range, of 4.
TLabel LabelAt(int i, const TBitmap32& bitmap, const TRect& bar, bool isVertical, std::int32_t textHeight,
               QString text) {
    const std::int32_t gap = ToDevicePixels(LabelGap, bitmap);
    const std::int32_t width = bitmap.TextWidth(text);
    const extended along = static_cast<extended>(isVertical ? bar.GetHeight() : bar.GetWidth()) / 4 * i;
    TLabel label{std::move(text), bar.Right + gap, bar.Bottom + gap};
    if (isVertical)
        label.Y = i == 0   ? bar.Bottom - textHeight
                  : i == 4 ? bar.Top
                           : RoundToPixel(bar.Bottom - along - static_cast<extended>(textHeight) / 2);
    else
        label.X = i == 0   ? bar.Left
                  : i == 4 ? bar.Right - width
                           : RoundToPixel(along + bar.Left - static_cast<extended>(width) / 2);
    return label;
}

} // namespace

void GradientLegendPainter_Paint(TBitmap32& bitmap, TLegendOrientation orientation, std::int32_t barSize,
                                 const IGradientColorCalculator* gradient, TTicks ticks, TColor32 backgroundColor,
                                 TColor32 borderColor, TColor32 textColor, const QString& fontName, int fontSize,
                                 const TGradientLegendMarkArray& marks, const QString& valueFormat) {
    PaintGradientLegend(TPictureWindow(bitmap), orientation, barSize, gradient, ticks, backgroundColor, borderColor,
                        textColor, fontName, fontSize, marks, valueFormat);
}

void PaintGradientLegend(const TPictureWindow& picture, TLegendOrientation orientation, std::int32_t barSize,
                         const IGradientColorCalculator* gradient, TTicks ticks, TColor32 backgroundColor,
                         TColor32 borderColor, TColor32 textColor, const QString& fontName, int fontSize,
                         const TGradientLegendMarkArray& marks, const QString& valueFormat) {
    TBitmap32& bitmap = picture.GetBitmap();
    if (backgroundColor != 0)
        picture.Clear(backgroundColor);
    const bool isVertical = orientation == TLegendOrientation::loVertical;
    const TRect bar =
        isVertical ? TRect(0, 0, barSize, picture.GetHeight() - 1) : TRect(0, 0, picture.GetWidth() - 1, barSize);
    const auto scale = gradient ? gradient->GetGradient() : nullptr;
    if (scale && bar.GetWidth() > 0 && bar.GetHeight() > 0)
        isVertical ? FillVertical(picture, bar, *scale) : FillHorizontal(picture, bar, *scale);
    if (gradient)
        DrawMarks(picture, bar, isVertical, *gradient, marks);
    OutlineRect(picture, bar, borderColor);
    if (!gradient || ticks.IsEmpty())
        return;

    bitmap.GetFont().Ratio = bitmap.GetDeviceRatio();
    const std::int32_t textHeight = bitmap.TextHeight(LineHeightSample());
    SetLegendFont(bitmap, fontName, fontSize);
    const extended min = gradient->GetMinVal();
    const extended step = (static_cast<extended>(gradient->GetMaxVal()) - min) / 4;
    std::array<TLabel, 5> labels;
    for (int i = 0; i < 5; ++i)
        labels[static_cast<std::size_t>(i)] =
            LabelAt(i, bitmap, bar, isVertical, textHeight, Format(valueFormat, {min + i * step}));
    for (const TTick tick : {TTick::tkLow, TTick::tkHigh, TTick::tkMid, TTick::tkLowMid, TTick::tkMidHigh}) {
        const TLabel& label = labels[static_cast<std::size_t>(tick)];
        if (ticks.Contains(tick))
            picture.RenderText(label.X, label.Y, label.Text, textColor);
    }
}

} // namespace lmx
