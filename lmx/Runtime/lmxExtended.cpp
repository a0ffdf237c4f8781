#include <lmx/Runtime/lmxExtended.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr extended ExtendedResolution = 1e-16L;
constexpr double DoubleResolution = 1e-12;
constexpr float SingleResolution = 1e-4F;

// Every integer of 64 bits lies in [-2^63, 2^63), both ends exact in extended.
std::int64_t ToInt64(extended wholeNumber) {
    if (!(wholeNumber >= -0x1p63L && wholeNumber < 0x1p63L))
        throw EInvalidOp(QStringLiteral("Invalid floating point operation"));
    return static_cast<std::int64_t>(wholeNumber);
}

template<class Float>
bool SameWithin(Float a, Float b, Float epsilon, Float resolution) noexcept {
    if (epsilon == 0)
        epsilon = std::max(std::min(std::abs(a), std::abs(b)) * resolution, resolution);
    return a > b ? a - b <= epsilon : b - a <= epsilon;
}

} // namespace

std::int64_t Round(extended value) {
    return ToInt64(std::nearbyint(value));
}

std::int64_t Floor(extended value) {
    return ToInt64(std::floor(value));
}

std::int64_t Ceil(extended value) {
    return ToInt64(std::ceil(value));
}

std::int32_t RoundToPixel(extended value) noexcept {
    if (std::isnan(value))
        return 0;
    return static_cast<std::int32_t>(
        std::nearbyint(std::clamp(value, -static_cast<extended>(PixelLimit), static_cast<extended>(PixelLimit))));
}

bool SameValue(extended a, extended b, extended epsilon) noexcept {
    return SameWithin(a, b, epsilon, ExtendedResolution);
}

bool SameValue(double a, double b, double epsilon) noexcept {
    return SameWithin(a, b, epsilon, DoubleResolution);
}

bool SameValue(float a, float b, float epsilon) noexcept {
    return SameWithin(a, b, epsilon, SingleResolution);
}

bool IsZero(extended a) noexcept {
    return std::abs(a) <= ExtendedResolution;
}

} // namespace lmx
