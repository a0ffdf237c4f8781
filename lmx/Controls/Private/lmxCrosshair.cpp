#include <lmx/Controls/Private/lmxCrosshair.h>

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Runtime/lmxExtended.h>

#include <array>
#include <utility>

namespace lmx {

namespace {

// Lengths in pixels at ratio 1.
constexpr TColor32 HighlightColor = Color32(255, 255, 255, 175);
constexpr int Size = 20;
constexpr int Middle = 10;
constexpr int GapStart = 8;
constexpr int GapEnd = 12;

template<class Value>
bool Replace(Value& present, const Value& value) {
    return std::exchange(present, value) != value;
}

int Scaled(int length, double ratio) {
    return static_cast<int>(Round(length * static_cast<extended>(ratio)));
}

// Four strokes that leave the centre open.
void DrawArms(TBitmap32& sprite, double offset, int thickness, TColor32 color, double ratio) {
    const double across = offset + Middle - thickness / 2.0;
    const auto stroke = [&](TFloatPoint from, TFloatPoint to) {
        const std::array<TFloatPoint, 2> line = {TFloatPoint{from.X * ratio, from.Y * ratio},
                                                 TFloatPoint{to.X * ratio, to.Y * ratio}};
        PolylineFS(sprite, line, color, false, thickness * ratio, TJoinStyle::jsMiter, TEndStyle::esButt, 4.0);
    };
    stroke({across, offset}, {across, offset + GapStart});
    stroke({across, offset + GapEnd}, {across, offset + Size});
    stroke({offset, across}, {offset + GapStart, across});
    stroke({offset + GapEnd, across}, {offset + Size, across});
}

} // namespace

TCrosshair::TCrosshair() = default;
TCrosshair::~TCrosshair() = default;

bool TCrosshair::SetIsShown(bool isShown) {
    return Replace(FIsShown, isShown);
}

bool TCrosshair::SetPlace(const TMapPoint& place) {
    if (place.Equals(FPlace))
        return false;
    FPlace = place;
    return true;
}

bool TCrosshair::SetColor(TColor32 color) {
    return Restyle(FColor, color);
}

bool TCrosshair::SetThickness(int thickness) {
    return Restyle(FThickness, thickness);
}

bool TCrosshair::SetHighlights(bool highlights) {
    return Restyle(FHighlights, highlights);
}

template<class Value>
bool TCrosshair::Restyle(Value& style, const Value& value) {
    if (!Replace(style, value))
        return false;
    FSprite.reset();
    FIsPrepared = true;
    return true;
}

void TCrosshair::Paint(TBitmap32& bitmap, const TWorldViewport& viewport, double ratio) {
    if (!FIsShown || !std::exchange(FIsPrepared, true))
        return;
    if (!FSprite || FSpriteRatio != ratio)
        DrawSprite(ratio);
    const TMapPoint pixel = viewport.MapPointToPoint(FPlace);
    const int middle = Scaled(Middle, ratio);
    FSprite->DrawTo(bitmap, RoundToPixel(pixel.X - middle), RoundToPixel(pixel.Y - middle));
}

void TCrosshair::DrawSprite(double ratio) {
    const int side = Scaled(FHighlights ? Size + 1 : Size, ratio);
    auto sprite = std::make_unique<TBitmap32>(side, side);
    sprite->SetDrawMode(TDrawMode::dmBlend);
    sprite->SetCombineMode(TCombineMode::cmMerge);
    sprite->Clear(0);
    if (FHighlights)
        DrawArms(*sprite, 1, FThickness, HighlightColor, ratio);
    DrawArms(*sprite, 0, FThickness, FColor, ratio);
    FSprite = std::move(sprite);
    FSpriteRatio = ratio;
}

} // namespace lmx
