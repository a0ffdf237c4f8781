#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>

#include <lmx/Colour/Legend/Private/lmxLegendPictures.h>
#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Layers/Objects/Private/lmxItemPicture.h>
#include <lmx/Layers/Objects/lmxGeneralOptions.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace lmx {

namespace {

constexpr TRect DefaultRect = {0, 0, 150, 150};
constexpr TRect HorizontalRect = {0, 0, 500, 150};
constexpr TRect VerticalRect = {0, 0, 150, 500};
constexpr int ContentInset = 5;
constexpr int TextGap = 8;
constexpr int RowMargin = 2;

bool IsSameMark(const TGradientLegendMark& a, const TGradientLegendMark& b) {
    return a.MarkType == b.MarkType && a.Value == b.Value && a.FillColor == b.FillColor &&
           a.StrokeColor == b.StrokeColor && a.Spacing == b.Spacing;
}

} // namespace

/// A copy of what a legend is drawn from. Calculators, gradients and filters are a host's perhaps, and may free the
/// annotation while it is painted. Sizes are pixels of the buffer.
struct TLegendObjectLayerItem::TLook {
    TLegendOrientation Orientation;
    std::int32_t GradientBarSize;
    std::int32_t PaletteBoxSize;
    std::int32_t TextGap;
    std::int32_t RowMargin;
    QString FontName;
    int FontSize;
    TGradientLegendMarkArray Marks;
    TPalettePainterFilterCallback Filter;

    /// False for a calculator that has no legend here, or none.
    bool Paint(const TPictureWindow& picture, const std::shared_ptr<IBaseColorCalculator>& calculator) const {
        if (const auto gradient = std::dynamic_pointer_cast<IGradientColorCalculator>(calculator))
            PaintGradient(picture, *gradient);
        else if (const auto classes = std::dynamic_pointer_cast<IColorClassCalculator>(calculator))
            PaintRows(picture, PaletteLegendPainter_GetItems(classes.get()));
        else if (const auto palette = std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(calculator))
            PaintRows(picture, PaletteLegendPainter_GetItems(palette.get()));
        else
            return false;
        return true;
    }

    void PaintNothingToShow(const TPictureWindow& picture) const {
        TBitmap32& bitmap = picture.GetBitmap();
        bitmap.GetFont().Name = FontName;
        bitmap.GetFont().Size = FontSize;
        const QString text = QStringLiteral("No view for legend");
        const TSize size = bitmap.TextExtent(text);
        picture.RenderText(picture.GetWidth() / 2 - size.cx / 2, picture.GetHeight() / 2 - size.cy / 2, text,
                           clBlack32);
    }

private:
    void PaintGradient(const TPictureWindow& picture, const IGradientColorCalculator& gradient) const {
        PaintGradientLegend(picture, Orientation, GradientBarSize, &gradient,
                            {TTick::tkLow, TTick::tkMid, TTick::tkHigh}, 0, clBlack32, clBlack32, FontName, FontSize,
                            Marks, QStringLiteral("%.3f"));
    }

    void PaintRows(const TPictureWindow& picture, const std::vector<TPaletteValueColorItem>& rows) const {
        PaintPaletteLegend(picture, Orientation, rows, PaletteBoxSize, TextGap, 0, RowMargin, clBlack32, FontName,
                           FontSize, clBlack32, Filter);
    }
};

TLegendObjectLayerItem::TLegendObjectLayerItem(TObjectMapLayer* layer) : TBaseObjectLayerItem(layer) {
    SetGrabberOptions({TGrabberOption::goResizable});
    TBaseObjectLayerItem::SetRect(ToDevicePixels(DefaultRect));
}

TLegendObjectLayerItem::TLegendObjectLayerItem(TObjectMapLayer* objectLayer, TBaseMapLayer* legendLayer,
                                               TLegendOrientation orientation)
    : TBaseObjectLayerItem(objectLayer),
      FLegendLayer(legendLayer),
      FOrientation(orientation) {
    SetGrabberOptions({TGrabberOption::goResizable});
    const bool isVertical = orientation == TLegendOrientation::loVertical;
    TBaseObjectLayerItem::SetRect(ToDevicePixels(isVertical ? VerticalRect : HorizontalRect));
    ListenToLegendLayer(true);
}

TLegendObjectLayerItem::~TLegendObjectLayerItem() {
    ListenToLegendLayer(false);
}

QString TLegendObjectLayerItem::GetObjectType() const {
    const TBaseMapLayer* layer = GetLegendLayer();
    return QStringLiteral("Legend: ") + (layer ? layer->GetLayerName() : QString());
}

QString TLegendObjectLayerItem::GetObjectClassType() const {
    return QStringLiteral("LEGEND");
}

void TLegendObjectLayerItem::SetLegendLayer(TBaseMapLayer* layer) {
    if (layer == GetLegendLayer())
        return;
    ListenToLegendLayer(false);
    FLegendLayer = layer;
    ListenToLegendLayer(true);
    NotifyChanged();
}

void TLegendObjectLayerItem::ListenToLegendLayer(bool listen) {
    TBaseMapLayer* layer = GetLegendLayer();
    if (!layer)
        return;
    TLegendCompChangedEventList& event = layer->GetOnLegendComponentChanged();
    if (listen)
        event.Add(this, &TLegendObjectLayerItem::LegendLayer_LegendComponentChanged);
    else
        event.Remove(this, &TLegendObjectLayerItem::LegendLayer_LegendComponentChanged);
}

void TLegendObjectLayerItem::LegendLayer_LegendComponentChanged(TBaseMapLayer*, TBaseLegendControl*) {
    InvalidateLayer();
}

void TLegendObjectLayerItem::SetGradientLegendMarks(const TGradientLegendMarkArray& marks) {
    if (std::equal(marks.begin(), marks.end(), FGradientLegendMarks.begin(), FGradientLegendMarks.end(), IsSameMark))
        return;
    FGradientLegendMarks = marks;
    NotifyChanged();
}

void TLegendObjectLayerItem::SetPalettePainterFilterCallback(TPalettePainterFilterCallback callback) {
    FPalettePainterFilterCallback = std::move(callback);
}

void TLegendObjectLayerItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    const TBorrowed self(this);
    const TBorrowed view(viewport);
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    TItemPicture content(InsetRect(GetRect(), ToDevicePixels(ContentInset)), bitmap.GetBounds(), GetDeviceRatio(),
                         TDrawMode::dmTransparent);
    if (content.IsSeen()) {
        PaintContent(content.GetPicture());
        if (!self || !view)
            return;
        content.DrawTo(bitmap);
    }
    PaintGrabbers(bitmap);
}

void TLegendObjectLayerItem::PaintContent(const TPictureWindow& picture) const {
    const auto* raster = dynamic_cast<const TRasterMapLayer*>(GetLegendLayer());
    const auto calculator = raster ? raster->GetColorCalc() : nullptr;
    const auto inPixels = [this](int size) { return RoundToPixel(ToDevicePixels(size)); };
    const TLook look{FOrientation,      inPixels(FGradientBarSize), inPixels(FPaletteBoxSize),
                     inPixels(TextGap), inPixels(RowMargin),        FFontName,
                     FFontSize,         FGradientLegendMarks,       FPalettePainterFilterCallback};
    if (!look.Paint(picture, calculator))
        look.PaintNothingToShow(picture);
}

void TLegendObjectLayerItem::SetDefaultGeneralOptions(TGeneralOptions& options) {
    options.SetShowBg(true);
    options.SetBgColor(Color32(255, 255, 255, 200));
}

} // namespace lmx
