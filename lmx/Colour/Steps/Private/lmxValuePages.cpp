
#include <lmx/Colour/Steps/Private/lmxValuePages.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace lmx {

namespace {

constexpr double HandyPages = 256;       ///< so few are not worth the longer way to others
constexpr double HandyFilling = 1.0 / 3; ///< nor is it worth it for pages that hold so much of what they could
constexpr float LargestFloat = std::numeric_limits<float>::max();

/// How many pages of equal width keep any of some ascending positions and the `perPage`-th one behind it apart. A
/// little more than that, for the rounding of positions to pages.
double PagesNeeded(std::span<const float> positions, std::size_t perPage) {
    const double extent = static_cast<double>(positions.back()) - positions.front();
    double least = extent;
    for (std::size_t i = perPage; i < positions.size(); ++i)
        least = std::min(least, static_cast<double>(positions[i]) - positions[i - perPage]);
    return extent > 0 ? 1.01 * extent / least + 2 : 1;
}

/// What positions of one order of magnitude need.
struct TMagnitude {
    double Power;    ///< of two, above these magnitudes
    double Distance; ///< least distance from such a position to the `perPage`-th one behind it
};

/// Ascending; only the orders that positions have.
std::vector<TMagnitude> MagnitudesOf(std::span<const float> positions, std::size_t perPage) {
    constexpr int LowestExponent = -149; // of the smallest float
    std::array<double, 277> distances;
    distances.fill(std::numeric_limits<double>::infinity());
    for (std::size_t i = perPage; i < positions.size(); ++i) {
        const double below = positions[i - perPage];
        const double above = positions[i];
        const auto bits = std::bit_cast<std::uint64_t>(std::max(std::abs(below), std::abs(above)));
        double& least = distances[(bits >> 52) - (1023 + LowestExponent)];
        least = std::min(least, above - below);
    }
    std::vector<TMagnitude> magnitudes;
    for (std::size_t i = 0; i < distances.size(); ++i)
        if (std::isfinite(distances[i]))
            magnitudes.push_back({std::ldexp(1, static_cast<int>(i) + LowestExponent + 1), distances[i]});
    return magnitudes;
}

/// The power of two that, as a knee, needs the fewest pages, as far as the magnitudes tell. They see a page as wide as
/// it would be if its width grew steadily, not with each power of two.
double NearBestKnee(std::span<const float> positions, std::size_t perPage) {
    const std::vector<TMagnitude> magnitudes = MagnitudesOf(positions, perPage);
    double best = 1;
    double fewest = std::numeric_limits<double>::infinity();
    for (double knee = magnitudes.front().Power / 2; knee <= magnitudes.back().Power / 2; knee *= 2) {
        double pagesForEachFold = 0; // that is, for each e-fold of magnitude
        for (const TMagnitude& magnitude : magnitudes)
            pagesForEachFold = std::max(pagesForEachFold, (magnitude.Power + knee) / magnitude.Distance);
        const auto folds = [knee](double value) { return std::copysign(std::log1p(std::abs(value) / knee), value); };
        const double pages = pagesForEachFold * (folds(positions.back()) - folds(positions.front()));
        if (pages < fewest) {
            fewest = pages;
            best = knee;
        }
    }
    return best;
}

/// So many pages from the first of some ascending positions to the last.
TValuePages::TEvenWidths EvenWidthsOver(std::span<const float> positions, std::size_t count) {
    const auto last = static_cast<float>(count - 1);
    const double extent = static_cast<double>(positions.back()) - positions.front();
    return {positions.front(), extent > 0 ? static_cast<float>(std::min<double>(last / extent, LargestFloat)) : 0,
            last};
}

} // namespace

TValuePages::TValuePages(std::span<const float> values, std::size_t perPage, std::size_t mostPages) {
    if (values.empty())
        return;
    std::vector<float> positions(values.size());
    std::transform(values.begin(), values.end(), positions.begin(),
                   [](float value) { return std::clamp(value, -LargestFloat, LargestFloat); });
    const double widthPages = PagesNeeded(positions, perPage);
    const auto count = [mostPages](double pages) {
        return static_cast<std::size_t>(std::min(pages, static_cast<double>(mostPages)));
    };
    FCount = count(widthPages);
    FWidths = EvenWidthsOver(positions, FCount);
    const double fewestPages = static_cast<double>(values.size()) / static_cast<double>(perPage);
    if (widthPages <= std::max(HandyPages, fewestPages / HandyFilling))
        return;
    double fewest = widthPages;
    std::vector<float> places(values.size());
    const double nearBest = NearBestKnee(positions, perPage);
    for (double knee = nearBest / 16; knee <= nearBest; knee *= 2) {
        TGrowingWidths widths = {static_cast<float>(knee), {}};
        std::transform(positions.begin(), positions.end(), places.begin(),
                       [&](float position) { return widths.PlaceOf(position); });
        const double pages = PagesNeeded(places, perPage);
        if (pages >= fewest)
            continue;
        fewest = pages;
        FCount = count(pages);
        widths.Places = EvenWidthsOver(places, FCount);
        FWidths = widths;
    }
}

void TValuePages::Find(std::span<const float> values, std::uint32_t* pages) const {
    Visit([&](const auto& widths) { std::transform(values.begin(), values.end(), pages, widths); });
}

std::vector<std::uint32_t> TValuePages::FirstInEachPage(std::span<const float> values) const {
    std::vector<std::uint32_t> pageOfValue(values.size());
    Find(values, pageOfValue.data());
    std::vector<std::uint32_t> first(FCount + 1);
    std::size_t value = 0;
    for (std::size_t page = 0; page < first.size(); ++page) {
        while (value < values.size() && pageOfValue[value] < page)
            ++value;
        first[page] = static_cast<std::uint32_t>(value);
    }
    return first;
}

} // namespace lmx
