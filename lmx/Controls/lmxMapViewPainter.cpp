// What the view paints, and the pictures that it keeps for it.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxCheckerboard.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>

#include <array>

namespace lmx {

namespace {

constexpr TColor32 CheckerboardGray = Color32(220, 220, 220, 255);
constexpr int CheckerboardSquare = 8;

constexpr TColor32 CrosshairHighlight = Color32(255, 255, 255, 175);
constexpr int CrosshairSize = 20;
constexpr int CrosshairMiddle = 10;
constexpr int CrosshairGapStart = 8;
constexpr int CrosshairGapEnd = 12;

// Four strokes that leave the centre open. Lengths are pixels at ratio 1.
void DrawCrosshairArms(TBitmap32& sprite, double offset, int thickness, TColor32 color, double ratio) {
    const double across = offset + CrosshairMiddle - thickness / 2.0;
    const auto stroke = [&](TFloatPoint from, TFloatPoint to) {
        const std::array<TFloatPoint, 2> line = {TFloatPoint{from.X * ratio, from.Y * ratio},
                                                 TFloatPoint{to.X * ratio, to.Y * ratio}};
        PolylineFS(sprite, line, color, false, thickness * ratio, TJoinStyle::jsMiter, TEndStyle::esButt, 4.0);
    };
    stroke({across, offset}, {across, offset + CrosshairGapStart});
    stroke({across, offset + CrosshairGapEnd}, {across, offset + CrosshairSize});
    stroke({offset, across}, {offset + CrosshairGapStart, across});
    stroke({offset + CrosshairGapEnd, across}, {offset + CrosshairSize, across});
}

} // namespace

void TMapViewControl::DoPaintBuffer() {
    TBitmap32& buffer = GetBuffer();
    PaintBackground(buffer);
    if (CanPaintLayers()) {
        PaintLayers(buffer);
        PaintSpecialLayers(buffer);
        if (FShowCrosshair)
            PaintCrosshair(buffer);
    }
    PaintFocusBorder(buffer);
    TPaintBox32::DoPaintBuffer();
}

bool TMapViewControl::CanPaintLayers() const {
    return !FIsDestroying && FLayerManager && FWorld && FViewport;
}

void TMapViewControl::PaintBackground(TBitmap32& buffer) {
    if (FShowCheckerboard && FCheckerboard)
        FCheckerboard->DrawTo(buffer, 0, 0);
    else
        buffer.Clear(FBackgroundColor);
}

// By index: a layer's paint may change the list, and even give the view another manager.
void TMapViewControl::PaintLayers(TBitmap32& buffer) {
    const auto manager = FLayerManager;
    TObjectList<TBaseMapLayer>& layers = manager->GetLayers();
    for (int i = 0; i < layers.Count() && FLayerManager == manager; ++i) {
        TBaseMapLayer* layer = layers[i];
        if (layer->GetIsVisible() && layer->GetHasContent() && layer->GetIsReadyToDraw())
            layer->Paint(FWorld.get(), FViewport.get(), buffer);
    }
}

void TMapViewControl::PaintSpecialLayers(TBitmap32& buffer) {
    const auto paint = [&](TBaseMapLayer* layer) {
        if (layer)
            layer->Paint(FWorld.get(), FViewport.get(), buffer);
    };
    const bool isSelecting = FMode == TMapMode::mdSelection || FMode == TMapMode::mdZoomToSelection;
    TSelectionMapLayer* selection = FSpSelectionLayer.Get();
    if (isSelecting && selection && selection->GetEnabled())
        paint(selection);
    paint(FSpInfoQueryPointsLayer.Get());
    paint(FSpRulersLayer.Get());
    paint(FSpObjectLayer.Get());
}

// The paint in which the sprite comes into being shows no crosshair: UpdateCrosshairSprite always answers false.
void TMapViewControl::PaintCrosshair(TBitmap32& buffer) {
    if (!FCrosshairSprite && !UpdateCrosshairSprite())
        return;
    const TMapPoint pixel = FViewport->MapPointToPoint(FCrosshairMapPoint);
    FCrosshairSprite->DrawTo(buffer, RoundToPixel(pixel.X - FCrosshairCenterPoint.X),
                             RoundToPixel(pixel.Y - FCrosshairCenterPoint.Y));
}

void TMapViewControl::PaintFocusBorder(TBitmap32& buffer) {
    if (!FShowFocusedBorder || !hasFocus())
        return;
    const TColor32 color = Color32(clHighlight);
    for (int inset = 0; inset < ScaledToDevice(1); ++inset)
        buffer.FrameRectS(inset, inset, buffer.GetWidth() - inset, buffer.GetHeight() - inset, color);
}

void TMapViewControl::UpdateCheckerboard() {
    const TSize size = GetDeviceSize();
    const int square = ScaledToDevice(CheckerboardSquare);
    if (!FCheckerboard)
        FCheckerboard = std::make_unique<TBitmap32>();
    if (FCheckerboard->GetWidth() >= size.cx && FCheckerboard->GetHeight() >= size.cy && square == FCheckerboardSquare)
        return;
    FCheckerboard->SetSize(2 * size.cx, 2 * size.cy);
    FCheckerboardSquare = square;
    DrawCheckerboard(*FCheckerboard, clWhite32, CheckerboardGray, square);
}

// Decorations keep their size to the eye on dense screens.
int TMapViewControl::ScaledToDevice(int logicalPixels) const {
    return static_cast<int>(Round(logicalPixels * static_cast<extended>(GetDeviceRatio())));
}

bool TMapViewControl::UpdateCrosshairSprite() {
    FCrosshairRatio = GetDeviceRatio();
    const int side = ScaledToDevice(FCrosshairHighlights ? CrosshairSize + 1 : CrosshairSize);
    auto sprite = std::make_unique<TBitmap32>(side, side);
    sprite->SetDrawMode(TDrawMode::dmBlend);
    sprite->SetCombineMode(TCombineMode::cmMerge);
    sprite->Clear(0);
    if (FCrosshairHighlights)
        DrawCrosshairArms(*sprite, 1, FCrosshairThickness, CrosshairHighlight, FCrosshairRatio);
    DrawCrosshairArms(*sprite, 0, FCrosshairThickness, FCrosshairColor, FCrosshairRatio);
    FCrosshairSprite = std::move(sprite);
    FCrosshairCenterPoint = {ScaledToDevice(CrosshairMiddle), ScaledToDevice(CrosshairMiddle)};
    return false;
}

} // namespace lmx
