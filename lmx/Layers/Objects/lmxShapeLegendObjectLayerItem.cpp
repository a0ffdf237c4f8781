#include <lmx/Layers/Objects/lmxShapeLegendObjectLayerItem.h>

#include <lmx/Layers/Objects/Private/lmxItemPicture.h>
#include <lmx/Layers/lmxBaseShapeLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>
#include <iterator>

namespace lmx {

namespace {

constexpr TRect DefaultRect = {0, 0, 100, 100};
constexpr TColor32 PlateColor = Color32(255, 255, 255, 200);
constexpr int ContentInset = 10;
constexpr int FontSize = 10;
constexpr int RowGap = 4;
constexpr int LineLength = 50;
constexpr int NameLeft = 60;

TFont32 KeyFont(double deviceRatio) {
    TFont32 font;
    font.Size = FontSize;
    font.Ratio = deviceRatio;
    return font;
}

} // namespace

TShapeLegendObjectLayerItem::TShapeLegendObjectLayerItem(TObjectMapLayer* layer) : TBaseObjectLayerItem(layer) {
    SetGrabberOptions({TGrabberOption::goResizable});
    TBaseObjectLayerItem::SetRect(ToDevicePixels(DefaultRect));
    const auto manager = layer ? layer->GetLayerManager() : nullptr;
    if (!manager)
        return;
    FLayerManager = manager;
    manager->GetOnLayerAdded().Add(this, &TShapeLegendObjectLayerItem::LayerManager_LayersChanged);
    manager->GetOnLayerRemoved().Add(this, &TShapeLegendObjectLayerItem::LayerManager_LayersChanged);
}

TShapeLegendObjectLayerItem::~TShapeLegendObjectLayerItem() {
    const auto manager = FLayerManager.lock();
    if (!manager)
        return;
    manager->GetOnLayerAdded().Remove(this, &TShapeLegendObjectLayerItem::LayerManager_LayersChanged);
    manager->GetOnLayerRemoved().Remove(this, &TShapeLegendObjectLayerItem::LayerManager_LayersChanged);
}

QString TShapeLegendObjectLayerItem::GetObjectType() const {
    return QStringLiteral("Shape key");
}

QString TShapeLegendObjectLayerItem::GetObjectClassType() const {
    return QStringLiteral("SHAPELEGEND");
}

void TShapeLegendObjectLayerItem::SetShowAll(bool showAll) {
    if (showAll == FShowAll)
        return;
    FShowAll = showAll;
    InvalidateLayer();
}

std::vector<TBaseShapeLayer*> TShapeLegendObjectLayerItem::GetLayers() const {
    std::vector<TBaseShapeLayer*> layers;
    for (const TBorrowed<TBaseShapeLayer>& layer : FLayers)
        if (layer)
            layers.push_back(layer.Get());
    return layers;
}

void TShapeLegendObjectLayerItem::SetLayers(std::span<TBaseShapeLayer* const> layers) {
    FLayers.assign(layers.begin(), layers.end());
    InvalidateLayer();
}

std::vector<TBaseShapeLayer*> TShapeLegendObjectLayerItem::GetLayersToRender() const {
    if (!FShowAll)
        return GetLayers();
    std::vector<TBaseShapeLayer*> layers;
    const TObjectMapLayer* layer = GetLayer();
    const auto manager = layer ? layer->GetLayerManager() : nullptr;
    if (!manager)
        return layers;
    for (TBaseMapLayer* each : manager->GetLayers())
        if (auto* shapes = dynamic_cast<TBaseShapeLayer*>(each))
            layers.push_back(shapes);
    return layers;
}

void TShapeLegendObjectLayerItem::LayerManager_LayersChanged(ILayerManager*, TBaseMapLayer*) {
    InvalidateLayer();
}

void TShapeLegendObjectLayerItem::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseObjectLayerItem::Paint(world, viewport, bitmap);
    const TRect place = InsetRect(GetRect(), ToDevicePixels(ContentInset));
    if (!place.IsEmpty()) {
        FillCorners(bitmap, GetRect(), PlateColor);
        if (const auto layers = GetLayersToRender(); !layers.empty())
            PaintKey(place, layers, bitmap);
    }
    PaintGrabbers(bitmap);
}

// Below the last row there is nothing to draw.
void TShapeLegendObjectLayerItem::PaintKey(const TRect& place, std::span<TBaseShapeLayer* const> layers,
                                           TBitmap32& bitmap) const {
    TBitmap32 sample;
    sample.SetFont(KeyFont(GetDeviceRatio()));
    const std::int32_t textHeight = sample.TextHeight(QStringLiteral("Wg"));
    const std::int64_t rows = std::int64_t{textHeight + ToDevicePixels(RowGap)} * (std::ssize(layers) + 1);
    TRect visible = bitmap.GetBounds();
    visible.Bottom = std::min(visible.Bottom, SaturateToInt32(place.Top + rows));
    TItemPicture content(place, visible, GetDeviceRatio(), TDrawMode::dmBlend);
    if (!content.IsSeen())
        return;
    PaintRows(content.GetPicture(), layers, textHeight);
    content.DrawTo(bitmap);
}

void TShapeLegendObjectLayerItem::PaintRows(const TPictureWindow& picture, std::span<TBaseShapeLayer* const> layers,
                                            std::int32_t textHeight) const {
    TFont32& font = picture.GetBitmap().GetFont();
    font = KeyFont(GetDeviceRatio());
    const std::int32_t rowHeight = textHeight + ToDevicePixels(RowGap);
    const auto textTop = static_cast<std::int32_t>(Round(rowHeight / 2.0L - textHeight / 2.0L));
    const std::int32_t thickness = std::max(1, ToDevicePixels(1));
    font.Styles = {TFontStyle::fsBold};
    picture.RenderText(0, textTop, QStringLiteral("Key:"), clBlack32);
    font.Styles = {};
    std::int32_t top = 0;
    for (const TBaseShapeLayer* layer : layers) {
        top += rowHeight;
        if (top >= picture.GetVisible().Bottom)
            break; // and so are the rows below
        picture.RenderText(ToDevicePixels(NameLeft), top + textTop, layer->GetLayerName(), clBlack32);
        const std::int32_t lineTop = top + rowHeight / 2 - thickness / 2;
        picture.FillRectS({0, lineTop, ToDevicePixels(LineLength), lineTop + thickness}, layer->GetColor());
    }
}

} // namespace lmx
