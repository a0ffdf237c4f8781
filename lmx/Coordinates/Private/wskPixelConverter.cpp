
#include <lmx/Coordinates/Private/wskPixelConverter.h>

#include <emmintrin.h>
#include <limits>

namespace lmx {

namespace {

bool IsOrdinary(extended length) {
    return length > 1e-100L && length < 1e100L;
}

} // namespace

TPixelConverter::TPixelConverter(const TWorldViewportLocal& viewport, extended shift)
    : FViewport(viewport),
      FShift(shift) {
    FViewport.MapPointToPoint({}); // raises for worlds that have no pixels
    const TMapArea& world = FViewport.GetWorldSystem().Area();
    FLeft = world.Left - shift;
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

// Both coordinates of a point at once: x86-64 always has these instructions. Latitudes run against pixels, so their
// scale is negative, which changes no rounding. One uncertain pixel has all of them done one by one.
void TPixelConverter::ToPixels(std::span<const TShpPoint> points, TPoint* pixels) const {
    static_assert(sizeof(TShpPoint) == sizeof(__m128d) && sizeof(TPoint) == 8);
    const __m128d origin = _mm_set_pd(FTopDouble, FLeftDouble);
    const __m128d scale = _mm_set_pd(-FScale, FScale);
    const __m128d translate = _mm_set_pd(FTranslateY, FTranslateX);
    const __m128d saturated = _mm_set1_pd(Saturated);
    const __m128d limit = _mm_set1_pd(PixelLimit);
    const __m128d shift = _mm_set1_pd(RoundingShift);
    const __m128d sign = _mm_set1_pd(-0.0);
    const __m128d certainRest = _mm_set1_pd(FCertainRest);
    const auto clamp = [sign](__m128d value, __m128d bound) {
        return _mm_min_pd(_mm_max_pd(value, _mm_xor_pd(bound, sign)), bound);
    };
    int certain = 3;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const __m128d place = _mm_loadu_pd(&points[i].X);
        const __m128d position = _mm_add_pd(_mm_mul_pd(_mm_sub_pd(place, origin), scale), translate);
        const __m128d near = clamp(position, saturated);
        const __m128d nearest = _mm_sub_pd(_mm_add_pd(near, shift), shift);
        const __m128d rest = _mm_andnot_pd(sign, _mm_sub_pd(near, nearest));
        certain &= _mm_movemask_pd(_mm_cmplt_pd(rest, certainRest));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(pixels + i), _mm_cvttpd_epi32(clamp(nearest, limit)));
    }
    for (std::size_t i = 0; i < points.size() && certain != 3; ++i)
        pixels[i] = ToPixel(points[i].X, points[i].Y);
}

TPoint TPixelConverter::ToPixelByDefinition(const TMapPoint& point) const {
    return FViewport.MapPointToPoint({point.X + FShift, point.Y}).ToPoint();
}

TMapArea TPixelConverter::GetReach(TSize size) const {
    constexpr extended infinity = std::numeric_limits<extended>::infinity();
    if (FCertainRest < 0)
        return {-infinity, infinity, infinity, -infinity};
    // Two pixels on each side leave room for every rounding.
    constexpr extended room = 2;
    const extended scale = FViewport.Scale;
    return {FLeft + (-room - FViewport.Translation.X) / scale, FTop - (-room - FViewport.Translation.Y) / scale,
            FLeft + (size.cx + room - FViewport.Translation.X) / scale,
            FTop - (size.cy + room - FViewport.Translation.Y) / scale};
}

} // namespace lmx
