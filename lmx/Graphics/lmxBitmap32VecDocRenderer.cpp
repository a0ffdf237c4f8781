#include <lmx/Graphics/lmxBitmap32VecDocRenderer.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxVectorDoc.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace lmx {

namespace {

constexpr double MaxFontPixels = 4096; // the side of the largest picture that is drawn
constexpr int LeastLetterPixels = 4;   // letters in smaller fonts are specks

bool IsPositive(double length) {
    return length > 0 && std::isfinite(length);
}

bool IsVisible(TColor32 color) {
    return AlphaComponent(color) != 0;
}

/// Draws the items of a document, each in its turn.
class TItemPainter {
public:
    TItemPainter(const TVectorDoc& document, TBitmap32& bitmap)
        : FDocument(document),
          FBitmap(bitmap),
          FScaleX(bitmap.GetWidth() / document.Width),
          FScaleY(bitmap.GetHeight() / document.Height),
          FScale(std::min(FScaleX, FScaleY)) {}

    void operator()(const TClearItem& item) const { FBitmap.Clear(item.Color); }

    void operator()(const TPolygonItem& item) const {
        TFloatPoints points;
        points.reserve(item.Points.size());
        for (const TFloatPoint& point : item.Points)
            points.push_back(ToPixels(point));
        if (IsVisible(item.FillColor))
            PolygonFS(FBitmap, points, item.FillColor);
        if (IsVisible(item.StrokeColor) && IsPositive(item.StrokeSize))
            PolylineFS(FBitmap, points, item.StrokeColor, true, std::max(item.StrokeSize * FScale, 1.0));
    }

    void operator()(const TTextItem& item) const {
        const TFloatPoint place = ToPixels(item.Position);
        const int pixels = FontPixelsOf(item);
        if (pixels < 1 || !IsVisible(item.FillColor) || !std::isfinite(place.X) || !std::isfinite(place.Y))
            return;
        FBitmap.SetFont(FontOf(item, pixels));
        const TSize size = FBitmap.TextExtent(item.Text);
        // Left, centre and right are 0, 1 and 2 halves of the text before its position; likewise from top to bottom.
        const double x = place.X - size.cx * static_cast<int>(item.HorizontalAlign) / 2.0;
        const double y = place.Y - size.cy * static_cast<int>(item.VerticalAlign) / 2.0;
        FBitmap.RenderText(RoundToPixel(x), RoundToPixel(y), item.Text, 1, item.FillColor);
    }

private:
    TFloatPoint ToPixels(const TFloatPoint& point) const { return {point.X * FScaleX, point.Y * FScaleY}; }

    static TFont32 FontOf(const TTextItem& item, int pixels) {
        TFont32 font;
        font.Name = item.FontName;
        font.Height = pixels;
        return font;
    }

    int FontPixelsOf(const TTextItem& item) const {
        if (item.FontSize < 0)
            return LargestLegible(item);
        return RoundToPixel(std::min(item.FontSize * FScale, MaxFontPixels));
    }

    // 0 if none is that fits. Texts grow with their fonts, so the sizes that fit are found by halving.
    int LargestLegible(const TTextItem& item) const {
        const double width = item.Width < 0 ? std::numeric_limits<double>::infinity() : item.Width * FScale;
        const double height = (item.Height < 0 ? FDocument.Height : item.Height) * FScale;
        int fits = 0;
        int tooLarge = RoundToPixel(std::min(2 * height, MaxFontPixels)) + 1;
        while (tooLarge - fits > 1) {
            const int pixels = fits + (tooLarge - fits) / 2;
            FBitmap.SetFont(FontOf(item, pixels));
            const TSize size = FBitmap.TextExtent(item.Text);
            (size.cx <= width && size.cy <= height ? fits : tooLarge) = pixels;
        }
        return fits >= LeastLetterPixels ? fits : 0;
    }

    const TVectorDoc& FDocument;
    TBitmap32& FBitmap;
    double FScaleX;
    double FScaleY;
    double FScale;
};

} // namespace

void TBitmap32VecDocRenderer::Render(TBitmap32& bitmap) const {
    if (!FDocument || !IsPositive(FDocument->Width) || !IsPositive(FDocument->Height) || bitmap.IsEmpty())
        return;
    const TFont32 font = bitmap.GetFont();
    const TItemPainter painter(*FDocument, bitmap);
    for (const TVectorDocItem& item : FDocument->Items)
        std::visit(painter, item);
    bitmap.SetFont(font);
}

} // namespace lmx
