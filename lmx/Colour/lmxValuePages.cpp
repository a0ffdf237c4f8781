#include <lmx/Colour/lmxValuePages.h>
#include <lmx/Runtime/lmxAvx2.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace lmx {

namespace {

constexpr double HandyPages = 256; ///< so few are not worth the longer way to pages of equal ratio
constexpr float LargestFloat = std::numeric_limits<float>::max();
constexpr std::int32_t LargestInt = std::numeric_limits<std::int32_t>::max();

/// How many pages of equal width keep any of some ascending positions and the `perPage`-th one behind it apart. A
/// little more than that, for the rounding of positions to pages.
double PagesNeeded(std::span<const float> positions, std::size_t perPage) {
    const double extent = static_cast<double>(positions.back()) - positions.front();
    double least = extent;
    for (std::size_t i = perPage; i < positions.size(); ++i)
        least = std::min(least, static_cast<double>(positions[i]) - positions[i - perPage]);
    return extent > 0 ? 1.01 * extent / least + 2 : 1;
}

/// A loop that compilers turn into lanes, as many as the caller's instructions have.
template<class Cut>
[[gnu::always_inline]] inline void FindInLanes(const Cut& cut, std::span<const float> values, std::uint32_t* pages) {
    for (std::size_t i = 0; i < values.size(); ++i)
        pages[i] = cut(values[i]);
}

#ifdef LMX_HAS_AVX2_KERNELS
template<class Cut>
LMX_AVX2 void FindByEights(const Cut& cut, std::span<const float> values, std::uint32_t* pages) {
    FindInLanes(cut, values, pages);
}
#endif

} // namespace

[[gnu::always_inline]] inline std::uint32_t TValuePages::TWidths::operator()(float value) const {
    float page = (value - Low) * PagesPerUnit;
    page = page > 0 ? page : 0;
    page = page < Last ? page : Last;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(page)); // lanes have the signed conversion only
}

/// Place of a value in the row of all floats without those below the smallest magnitude: it rises by the same number
/// from each power of two to the next.
[[gnu::always_inline]] inline float TValuePages::TRatios::PlaceOf(float value) const {
    const auto bits = std::bit_cast<std::int32_t>(value);
    std::int32_t place = (bits & LargestInt) - Smallest;
    place = place > 0 ? place : 0;
    place = bits < 0 ? -place : place;
    return static_cast<float>(place);
}

[[gnu::always_inline]] inline std::uint32_t TValuePages::TRatios::operator()(float value) const {
    return Places(PlaceOf(value)) & (value == value ? ~std::uint32_t{0} : 0);
}

TValuePages::TWidths TValuePages::TWidths::Over(std::span<const float> positions, std::size_t count) {
    const auto last = static_cast<float>(count - 1);
    const double extent = static_cast<double>(positions.back()) - positions.front();
    return {positions.front(), extent > 0 ? static_cast<float>(std::min<double>(last / extent, LargestFloat)) : 0,
            last};
}

TValuePages::TRatios TValuePages::TRatios::WithNearZero(std::span<const float> values, std::size_t count) {
    auto above = std::lower_bound(values.begin(), values.end(), 0.0F);
    auto below = above;
    float smallest = 0;
    for (std::size_t i = 0; i < std::min(count, values.size()); ++i) {
        const bool isAboveNearer = below == values.begin() || (above != values.end() && *above < -*(below - 1));
        smallest = isAboveNearer ? *above++ : -*--below;
    }
    return {std::bit_cast<std::int32_t>(std::abs(smallest)), {}};
}

TValuePages::TValuePages(std::span<const float> values, std::size_t perPage, std::size_t mostPages) {
    if (values.empty())
        return;
    TRatios ratios = TRatios::WithNearZero(values, (perPage + 1) / 2);
    std::vector<float> widthPositions(values.size());
    std::vector<float> ratioPositions(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        widthPositions[i] = std::clamp(values[i], -LargestFloat, LargestFloat);
        ratioPositions[i] = ratios.PlaceOf(values[i]);
    }
    const double widthPages = PagesNeeded(widthPositions, perPage);
    const double ratioPages = PagesNeeded(ratioPositions, perPage);
    const bool isByWidth = widthPages <= std::max(ratioPages, HandyPages);
    FCount = static_cast<std::size_t>(std::min(isByWidth ? widthPages : ratioPages, static_cast<double>(mostPages)));
    ratios.Places = TWidths::Over(ratioPositions, FCount);
    if (isByWidth)
        FCut = TWidths::Over(widthPositions, FCount);
    else
        FCut = ratios;
}

void TValuePages::Find(std::span<const float> values, std::uint32_t* pages) const {
    std::visit(
        [&](const auto& cut) {
#ifdef LMX_HAS_AVX2_KERNELS
            if (HasAvx2())
                return FindByEights(cut, values, pages);
#endif
            FindInLanes(cut, values, pages);
        },
        FCut);
}

} // namespace lmx
