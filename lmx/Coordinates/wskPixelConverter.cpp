#include <lmx/Coordinates/wskPixelConverter.h>

#include <limits>

namespace lmx {

namespace {

bool IsOrdinary(extended length) {
    return length > 1e-100L && length < 1e100L;
}

} // namespace

TPixelConverter::TPixelConverter(const TWorldViewportLocal& viewport) : FViewport(viewport) {
    FViewport.MapPointToPoint({}); // raises for worlds that have no pixels
    const TMapArea& world = FViewport.GetWorldSystem().Area();
    FLeft = world.Left;
    FTop = world.Top;
    FLeftDouble = static_cast<double>(FLeft);
    FTopDouble = static_cast<double>(FTop);
    FTranslateX = FViewport.Translation.X;
    FTranslateY = FViewport.Translation.Y;
    const bool isOrdinary = IsOrdinary(world.GetWidth()) && IsOrdinary(world.GetHeight()) &&
                            IsOrdinary(FViewport.Scale) && FLeftDouble == FLeft && FTopDouble == FTop;
    FScale = isOrdinary ? static_cast<double>(FViewport.Scale) : 1;
    FCertainRest = isOrdinary ? 0.5 - Hair : -1;
}

TPoint TPixelConverter::ToPixelByDefinition(const TMapPoint& point) const {
    return FViewport.MapPointToPoint(point).ToPoint();
}

TMapArea TPixelConverter::GetReach(TSize size) const {
    constexpr extended infinity = std::numeric_limits<extended>::infinity();
    if (FCertainRest < 0)
        return {-infinity, infinity, infinity, -infinity};
    // Two pixels on each side leave room for every rounding.
    const extended scale = FViewport.Scale;
    return {FLeft + (-2 - FViewport.Translation.X) / scale, FTop - (-2 - FViewport.Translation.Y) / scale,
            FLeft + (static_cast<extended>(size.cx) + 2 - FViewport.Translation.X) / scale,
            FTop - (static_cast<extended>(size.cy) + 2 - FViewport.Translation.Y) / scale};
}

} // namespace lmx
