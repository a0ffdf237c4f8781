#include <lmx/Layers/lmxRulerMapLayer.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <utility>

namespace lmx {

namespace {

constexpr TColor32 PlacedColor = 0xFF00FFFF; // cyan

// Reads up and down, so the line runs across.
void DrawVerticalRuler(const TWorldViewport& viewport, TBitmap32& bitmap, extended location, TColor32 color) {
    const auto y = static_cast<double>(viewport.MapPointToPoint({0, location}).Y);
    bitmap.SetPenColor(color);
    bitmap.MoveToF(0, y);
    bitmap.LineToFS(viewport.GetViewSize().cx, y);
}

void DrawHorizontalRuler(const TWorldViewport& viewport, TBitmap32& bitmap, extended location, TColor32 color) {
    const auto x = static_cast<double>(viewport.MapPointToPoint({location, 0}).X);
    bitmap.SetPenColor(color);
    bitmap.MoveToF(x, 0);
    bitmap.LineToFS(x, viewport.GetViewSize().cy);
}

} // namespace

TRulerMapLayer::TRulerMapLayer(const std::shared_ptr<ILayerManager>& layerManager)
    : TBaseLayerManagerLayer(layerManager) {
    const auto onChange = [this](TRulerItem* item, TListChange change) { Rulers_Notify(item, change); };
    FVRulers.SetOnChange(onChange);
    FHRulers.SetOnChange(onChange);
}

TRulerMapLayer::~TRulerMapLayer() {
    FVRulers.Clear();
    FHRulers.Clear();
}

QString TRulerMapLayer::GetLayerTypeName() const {
    return QStringLiteral("Rulers");
}

void TRulerMapLayer::Paint(TWorld* world, TWorldViewport* viewport, TBitmap32& bitmap) {
    TBaseLayerManagerLayer::Paint(world, viewport, bitmap);
    for (const TRulerItem* ruler : FHRulers)
        DrawHorizontalRuler(*viewport, bitmap, ruler->GetLocation(), ruler->GetColor());
    for (const TRulerItem* ruler : FVRulers)
        DrawVerticalRuler(*viewport, bitmap, ruler->GetLocation(), ruler->GetColor());
    if (!FIsPlacing)
        return;
    const auto draw = FPlacingMode == TPlacingMode::pmVertical ? DrawVerticalRuler : DrawHorizontalRuler;
    draw(*viewport, bitmap, FPlacingValue, PlacedColor);
}

void TRulerMapLayer::Add(std::unique_ptr<TRulerItem> item) {
    if (!item)
        throw EExArgumentNilException(QStringLiteral("TRulerMapLayer.Add"), QStringLiteral("Item"));
    TObjectList<TRulerItem>& rulers = item->GetOrientation() == TRulerOrientation::roVertical ? FVRulers : FHRulers;
    rulers.Add(std::move(item));
}

void TRulerMapLayer::Delete(const TRulerItem* item) {
    if (!FHRulers.Remove(item))
        FVRulers.Remove(item);
}

void TRulerMapLayer::StartPlacing(TPlacingMode mode, extended value) {
    FPlacingMode = mode;
    FPlacingValue = value;
    FIsPlacing = true;
    Invalidate();
}

void TRulerMapLayer::SetPlacingValue(extended value) {
    if (!FIsPlacing || value == FPlacingValue)
        return;
    FPlacingValue = value;
    Invalidate();
}

void TRulerMapLayer::ConfirmPlacing() {
    FIsPlacing = false;
    const bool isVertical = FPlacingMode == TPlacingMode::pmVertical;
    const TRulerOrientation orientation = isVertical ? TRulerOrientation::roVertical : TRulerOrientation::roHorizontal;
    Add(std::make_unique<TRulerItem>(orientation, FPlacingValue, PlacedColor));
}

void TRulerMapLayer::CancelPlacing() {
    FIsPlacing = false;
    Invalidate();
}

// A subscriber may let the layer go, and take out a ruler that has just come: then the others are not told of it.
void TRulerMapLayer::Rulers_Notify(TRulerItem* item, TListChange change) {
    const TBorrowed self(this);
    const auto isThere = [&] { return FVRulers.IsArriving(item) || FHRulers.IsArriving(item); };
    if (change == TListChange::lcAdded)
        FOnRulerAdded.SendWhile(isThere, this, item);
    else
        FOnRulerRemoved.Send(this, item);
    if (self)
        Invalidate();
}

} // namespace lmx
