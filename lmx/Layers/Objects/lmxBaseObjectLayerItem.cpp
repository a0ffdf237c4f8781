#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/Objects/Private/lmxItemPicture.h>
#include <lmx/Layers/lmxObjectMapLayer.h>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

// A dash and a gap, each as long as the line is thick. The line runs along the rectangle's own corners and inwards
// from them.
void DrawDashedFrame(TBitmap32& bitmap, const TRect& rect, std::int32_t thickness) {
    std::vector<TColor32> dashes(static_cast<std::size_t>(thickness), clBlack32);
    dashes.resize(2 * dashes.size(), clWhite32);
    for (std::int32_t inset = 0; inset < thickness; ++inset) {
        const TRect line = InsetRect(rect, inset);
        bitmap.SetStipple(dashes);
        bitmap.MoveToF(line.Left, line.Top);
        bitmap.LineToFSP(line.Right, line.Top);
        bitmap.LineToFSP(line.Right, line.Bottom);
        bitmap.LineToFSP(line.Left, line.Bottom);
        bitmap.LineToFSP(line.Left, line.Top);
    }
}

void DrawGrabber(TBitmap32& bitmap, const TRect& rect, std::int32_t thickness) {
    bitmap.FillRectS(rect, clWhite32);
    for (std::int32_t inset = 0; inset < thickness; ++inset)
        bitmap.FrameRectS(InsetRect(rect, inset), clBlack32);
}

} // namespace

TBaseObjectLayerItem::TBaseObjectLayerItem(TObjectMapLayer* layer) : FLayer(layer) {}

TBaseObjectLayerItem::~TBaseObjectLayerItem() = default;

TRect TBaseObjectLayerItem::GetViewRect() const {
    return GrabberArea(FRect, GetDeviceRatio());
}

void TBaseObjectLayerItem::SetIsVisible(bool isVisible) {
    Store(FIsVisible, isVisible);
}

void TBaseObjectLayerItem::SetName(const QString& name) {
    FName = name;
}

void TBaseObjectLayerItem::SetRect(const TRect& rect) {
    if (rect == FRect)
        return;
    FRect = rect;
    UpdateGrabberRects();
    UpdateAnchorData();
}

void TBaseObjectLayerItem::SetBackgroundColor(TColor32 color) {
    Store(FBackgroundColor, color);
}

void TBaseObjectLayerItem::SetShowBackground(bool show) {
    Store(FShowBackground, show);
}

void TBaseObjectLayerItem::SetIsSelected(bool isSelected) {
    Store(FIsSelected, isSelected);
}

void TBaseObjectLayerItem::SetShowBorder(bool show) {
    Store(FShowBorder, show);
}

void TBaseObjectLayerItem::SetBorderColor(TColor32 color) {
    Store(FBorderColor, color);
}

void TBaseObjectLayerItem::EndUpdate() {
    FUpdating = false;
    NotifyChanged();
}

// A subscriber may free the annotation, and the layer.
void TBaseObjectLayerItem::NotifyChanged() {
    const TBorrowed<TObjectMapLayer> layer = FLayer;
    if (!layer)
        return;
    if (!FUpdating)
        layer->GetOnObjectChanged().SendWhile([&, self = TBorrowed(this)] { return self && layer; }, layer.Get(), this);
    if (layer)
        layer->Invalidate();
}

void TBaseObjectLayerItem::InvalidateLayer() const {
    if (TObjectMapLayer* layer = GetLayer())
        layer->Invalidate();
}

void TBaseObjectLayerItem::Paint(TWorld*, TWorldViewport*, TBitmap32& bitmap) {
    if (!FIsVisible)
        return;
    if (FShowBackground)
        FillCorners(bitmap, FRect, FBackgroundColor);
    if (FShowBorder)
        PolylineFS(bitmap, CornersOf(FRect), FBorderColor, true, GetDeviceRatio(), TJoinStyle::jsMiter,
                   TEndStyle::esButt, 4);
}

void TBaseObjectLayerItem::PaintGrabbers(TBitmap32& bitmap) const {
    if (!FIsVisible || !FIsSelected)
        return;
    const std::int32_t thickness = std::max(1, ToDevicePixels(1));
    DrawDashedFrame(bitmap, FRect, thickness);
    if (!FGrabberOptions.Contains(TGrabberOption::goResizable))
        return;
    const TGrabberRects& grabbers = FGrabberRects;
    for (const TRect& rect : {grabbers.TopLeft, grabbers.TopRight, grabbers.BottomLeft, grabbers.BottomRight})
        DrawGrabber(bitmap, rect, thickness);
    if (FGrabberOptions.Contains(TGrabberOption::goFixedAspect))
        return;
    for (const TRect& rect : {grabbers.MiddleLeft, grabbers.MiddleRight, grabbers.TopCenter, grabbers.BottomCenter})
        DrawGrabber(bitmap, rect, thickness);
}

void TBaseObjectLayerItem::UpdateAnchorData() {
    if (FUpdatingLayout)
        return;
    const TObjectMapLayer* layer = GetLayer();
    FAnchorData = MeasureAnchors(FRect, layer ? layer->GetPrevViewSize() : TSize());
}

void TBaseObjectLayerItem::UpdateGrabberRects() {
    FGrabberRects = PlaceGrabbers(GetViewRect(), GetDeviceRatio());
}

void TBaseObjectLayerItem::UpdateLayout(TSize viewSize) {
    SetRectOfLayout(AnchoredRect(FRect, FAnchors, FAnchorData, viewSize));
}

// Distances are measured by what moves the annotation, not by the view that takes it along.
void TBaseObjectLayerItem::SetRectOfLayout(const TRect& rect) {
    const TBorrowed self(this); // an override may do anything
    FUpdatingLayout = true;
    SetRect(rect);
    if (self)
        FUpdatingLayout = false;
}

// The press of a drag that is under way goes along.
void TBaseObjectLayerItem::ScaleBy(double factor) {
    const auto scaled = [factor](const TRect& rect) {
        return TRect(ScaledPixels(rect.Left, factor), ScaledPixels(rect.Top, factor), ScaledPixels(rect.Right, factor),
                     ScaledPixels(rect.Bottom, factor));
    };
    FAnchorData = {ScaledPixels(FAnchorData.Left, factor), ScaledPixels(FAnchorData.Top, factor),
                   ScaledPixels(FAnchorData.Right, factor), ScaledPixels(FAnchorData.Bottom, factor)};
    FMouseDownRect = scaled(FMouseDownRect);
    FMouseDownRectOffset = {ScaledPixels(FMouseDownRectOffset.X, factor), ScaledPixels(FMouseDownRectOffset.Y, factor)};
    const bool hasGrabbers = FGrabberRects != TGrabberRects();
    const TBorrowed self(this);
    SetRectOfLayout(scaled(FRect));
    if (self && hasGrabbers)
        UpdateGrabberRects(); // a rectangle may stay, its grabbers grow
}

void TBaseObjectLayerItem::MouseDown(TWorldViewport*, TPoint point) {
    if (!FIsVisible)
        return;
    const TBorrowed self(this); // whoever hears of the selection may free it
    SetIsSelected(!FLocked && FRect.Contains(point));
    if (!self)
        return;
    if (!FIsSelected) {
        FSelectedElement = TSelectedElement::soNone;
        return;
    }
    FMouseDownRect = FRect;
    FMouseDownRectOffset = {SaturateToInt32(std::int64_t{point.X} - FRect.Left),
                            SaturateToInt32(std::int64_t{point.Y} - FRect.Top)};
    const TSelectedElement element = ElementAt(FRect, FGrabberRects, FGrabberOptions, point, GetDeviceRatio());
    FSelectedElement = element == TSelectedElement::soNone ? TSelectedElement::soObject : element;
}

void TBaseObjectLayerItem::MouseMove(TWorldViewport*, TPoint point, bool isDown) {
    if (!FIsVisible || !isDown || !FIsSelected || FSelectedElement == TSelectedElement::soNone)
        return;
    const bool isFixed = FGrabberOptions.Contains(TGrabberOption::goFixedAspect);
    SetRect(DraggedRect(FMouseDownRect, FMouseDownRectOffset, FSelectedElement, point, isFixed));
}

double TBaseObjectLayerItem::GetDeviceRatio() const {
    const TObjectMapLayer* layer = GetLayer();
    return layer ? layer->GetDeviceRatio() : 1;
}

std::int32_t TBaseObjectLayerItem::ToDevicePixels(int pixels) const {
    return ScaledPixels(pixels, GetDeviceRatio());
}

TRect TBaseObjectLayerItem::ToDevicePixels(const TRect& rect) const {
    return {ToDevicePixels(rect.Left), ToDevicePixels(rect.Top), ToDevicePixels(rect.Right),
            ToDevicePixels(rect.Bottom)};
}

void TBaseObjectLayerItem::StoreColors(bool showBackground, TColor32 backgroundColor, bool showBorder,
                                       TColor32 borderColor) {
    FShowBackground = showBackground;
    FBackgroundColor = backgroundColor;
    FShowBorder = showBorder;
    FBorderColor = borderColor;
}

} // namespace lmx
