#include <lmx/Colour/lmxColorStepTable.h>
#include <lmx/Colour/lmxLayerOpacity.h>
#include <lmx/Runtime/lmxAvx2.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <limits>

namespace lmx {

namespace {

constexpr std::size_t MostPages = 16384;
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

/// Colour of a value that belongs to the page. The starts that it reaches are counted by halving.
template<class Page>
TColor32 LookUp(const Page& page, float value) {
    unsigned count = value >= page.Starts[3] ? 4 : 0;
    count += value >= page.Starts[count + 1] ? 2 : 0;
    count += value >= page.Starts[count] ? 1 : 0;
    return page.Colors[count];
}

#ifdef LMX_HAS_AVX2_KERNELS
/// The same with all starts compared at once.
template<class Page>
LMX_AVX2 inline TColor32 LookUpAtOnce(const Page& page, float value) {
    const __m256 reached = _mm256_cmp_ps(_mm256_set1_ps(value), _mm256_load_ps(page.Starts.data()), _CMP_GE_OQ);
    const int count = _mm_popcnt_u32(static_cast<unsigned>(_mm256_movemask_ps(reached)));
    return page.Colors[static_cast<unsigned>(count)];
}

/// Looks up as many values as fours hold, and gives their number.
template<class Page>
LMX_AVX2 std::size_t LookUpFours(const Page* pages, std::span<const float> values, const std::uint32_t* places,
                                 TColor32* colors) {
    std::size_t i = 0;
    for (; i + 4 <= values.size(); i += 4) {
        colors[i] = LookUpAtOnce(pages[places[i]], values[i]);
        colors[i + 1] = LookUpAtOnce(pages[places[i + 1]], values[i + 1]);
        colors[i + 2] = LookUpAtOnce(pages[places[i + 2]], values[i + 2]);
        colors[i + 3] = LookUpAtOnce(pages[places[i + 3]], values[i + 3]);
    }
    return i;
}
#endif

} // namespace

TColorStepTable::TColorStepTable(const TColorSteps& steps, const TLayerOpacity& opacity) {
    if (steps.GetCount() > MaxStepCount)
        throw EArgumentException(QStringLiteral("steps"));
    // What is no number reaches no start. So where it has another colour than the first step, all steps come after it.
    const bool isNaNApart = steps.GetNaNColor() != steps.GetColors().front();
    FStarts.assign(steps.GetStarts().begin() + (isNaNApart ? 0 : 1), steps.GetStarts().end());
    FColors.reserve(FStarts.size() + 1);
    if (isNaNApart)
        FColors.push_back(opacity.Fade(steps.GetNaNColor()));
    for (TColor32 color : steps.GetColors())
        FColors.push_back(opacity.Fade(color));
    FCut = TValuePages(FStarts, TPage::MaxStarts, MostPages);
    FillPages();
}

void TColorStepTable::FillPages() {
    std::vector<std::uint32_t> pageOfStart(FStarts.size());
    FCut.Find(FStarts, pageOfStart.data());
    FPages.resize(FCut.GetCount());
    FFirstStarts.assign(FPages.size() + 1, 0);
    std::size_t start = 0;
    for (std::size_t page = 0; page < FPages.size(); ++page) {
        const std::size_t first = start;
        while (start < FStarts.size() && pageOfStart[start] == page)
            ++start;
        FillPage(FPages[page], first, start);
        FFirstStarts[page + 1] = static_cast<std::uint16_t>(start);
        FIsAnyCrowded = FIsAnyCrowded || start - first > TPage::MaxStarts;
    }
}

void TColorStepTable::FillPage(TPage& page, std::size_t first, std::size_t end) const {
    page.Starts.fill(NaN);
    page.Colors[0] = FColors[first];
    if (end - first > TPage::MaxStarts)
        return;
    for (std::size_t i = first; i < end; ++i) {
        page.Starts[i - first] = FStarts[i];
        page.Colors[i - first + 1] = FColors[i + 1];
    }
}

void TColorStepTable::GetColors(std::span<const float> values, TColor32* colors) const {
    std::uint32_t places[BlockSize];
    FCut.Find(values, places);
    std::size_t done = 0;
#ifdef LMX_HAS_AVX2_KERNELS
    if (HasAvx2())
        done = LookUpFours(FPages.data(), values, places, colors);
#endif
    for (; done < values.size(); ++done)
        colors[done] = LookUp(FPages[places[done]], values[done]);
    if (FIsAnyCrowded)
        SearchCrowded(values, places, colors);
}

void TColorStepTable::SearchCrowded(std::span<const float> values, const std::uint32_t* places,
                                    TColor32* colors) const {
    const auto isBefore = [](float value, float start) { return !(value >= start); };
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto first = FStarts.begin() + FFirstStarts[places[i]];
        const auto end = FStarts.begin() + FFirstStarts[places[i] + 1];
        if (static_cast<std::size_t>(end - first) > TPage::MaxStarts)
            colors[i] =
                FColors[static_cast<std::size_t>(std::upper_bound(first, end, values[i], isBefore) - FStarts.begin())];
    }
}

} // namespace lmx
