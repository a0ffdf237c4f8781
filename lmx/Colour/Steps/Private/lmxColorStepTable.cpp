#include <lmx/Colour/Steps/Private/lmxColorStepTable.h>

#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Runtime/Private/lmxAvx2.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace lmx {

namespace {

constexpr std::size_t FewPages = 16384;                 ///< that fit into the caches
constexpr std::size_t MostPages = std::size_t{1} << 21; ///< where more steps than these need more
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

/// Colours the values that fill whole strides, and gives their number. Pages are found a stride ahead of looking up:
/// while a page comes from a slower cache, the machine finds others. Likewise the memory of a stride to come is fetched
/// with each; fetched all at once, it would be waited for at once.
template<class Widths, class Page>
LMX_AVX2 std::size_t ColorStrides(Widths widths, const Page* pages, std::span<const float> values,
                                  std::uint32_t* places, TColor32* colors, std::span<const float> next) {
    constexpr std::size_t Stride = 32; // a loop of 16 values would be unrolled instead of being turned into lanes
    constexpr std::size_t LineSize = 64 / sizeof(float);
    const std::size_t count = values.size() / Stride * Stride;
    for (std::size_t i = 0; i < std::min(Stride, count); ++i)
        places[i] = widths(values[i]);
    for (std::size_t begin = 0; begin < count; begin += Stride) {
        const std::size_t end = begin + Stride;
        if (end < count)
            for (std::size_t i = end; i < end + Stride; ++i)
                places[i] = widths(values[i]);
        for (std::size_t i = begin; i < end; i += 4) {
            if (i % LineSize == 0 && i < next.size())
                _mm_prefetch(&next[i], _MM_HINT_T0);
            colors[i] = LookUpAtOnce(pages[places[i]], values[i]);
            colors[i + 1] = LookUpAtOnce(pages[places[i + 1]], values[i + 1]);
            colors[i + 2] = LookUpAtOnce(pages[places[i + 2]], values[i + 2]);
            colors[i + 3] = LookUpAtOnce(pages[places[i + 3]], values[i + 3]);
        }
    }
    return count;
}
#endif

} // namespace

TColorStepTable::TColorStepTable(const TColorSteps& steps, const TLayerOpacity& opacity) {
    TSteps faded;
    // What is no number reaches no start. So where it has another colour than the first step, all steps come after it.
    const bool isNaNApart = steps.GetNaNColor() != steps.GetColors().front();
    faded.Starts.assign(steps.GetStarts().begin() + (isNaNApart ? 0 : 1), steps.GetStarts().end());
    faded.Colors.reserve(faded.Starts.size() + 1);
    if (isNaNApart)
        faded.Colors.push_back(opacity.Fade(steps.GetNaNColor()));
    for (TColor32 color : steps.GetColors())
        faded.Colors.push_back(opacity.Fade(color));
    FCut = TValuePages(faded.Starts, TPage::MaxStarts, std::clamp(faded.Starts.size(), FewPages, MostPages));
    faded.FirstStarts = FCut.FirstInEachPage(faded.Starts);
    FillPages(faded);
    bool isAnyCrowded = false;
    for (std::size_t page = 0; page < FPages.size() && !isAnyCrowded; ++page)
        isAnyCrowded = faded.IsCrowded(page);
    if (isAnyCrowded)
        FSteps = std::move(faded);
}

void TColorStepTable::FillPages(const TSteps& steps) {
    FPages.resize(FCut.GetCount());
    for (std::size_t page = 0; page < FPages.size(); ++page) {
        const std::size_t first = steps.FirstStarts[page];
        const std::size_t count = steps.IsCrowded(page) ? 0 : steps.FirstStarts[page + 1] - first;
        FPages[page].Starts.fill(NaN);
        std::copy_n(steps.Starts.begin() + static_cast<std::ptrdiff_t>(first), count, FPages[page].Starts.begin());
        std::copy_n(steps.Colors.begin() + static_cast<std::ptrdiff_t>(first), count + 1, FPages[page].Colors.begin());
    }
}

void TColorStepTable::GetColors(std::span<const float> values, TColor32* colors,
                                [[maybe_unused]] std::span<const float> next) const {
    std::uint32_t places[BlockSize];
    std::size_t done = 0;
#ifdef LMX_HAS_AVX2_KERNELS
    if (HasAvx2())
        done = FCut.Visit(
            [&](const auto& widths) { return ColorStrides(widths, FPages.data(), values, places, colors, next); });
#endif
    FCut.Find(values.subspan(done), places + done);
    for (std::size_t i = done; i < values.size(); ++i)
        colors[i] = LookUp(FPages[places[i]], values[i]);
    if (FSteps)
        SearchCrowded(values, places, colors);
}

void TColorStepTable::SearchCrowded(std::span<const float> values, const std::uint32_t* places,
                                    TColor32* colors) const {
    const auto isBefore = [](float value, float start) { return !(value >= start); };
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!FSteps->IsCrowded(places[i]))
            continue;
        const auto begin = FSteps->Starts.begin();
        const auto next = std::upper_bound(begin + FSteps->FirstStarts[places[i]],
                                           begin + FSteps->FirstStarts[places[i] + 1], values[i], isBefore);
        colors[i] = FSteps->Colors[static_cast<std::size_t>(next - begin)];
    }
}

} // namespace lmx
