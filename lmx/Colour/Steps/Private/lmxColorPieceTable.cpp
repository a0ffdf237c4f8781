#include <lmx/Colour/Steps/Private/lmxColorPieceTable.h>

#include <lmx/Colour/Steps/Private/lmxGradientPosition.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/Private/lmxAvx2.h>
#include <lmx/Runtime/Private/lmxBisection.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace lmx {

namespace {

constexpr std::size_t PagesPerStart = 4;
constexpr std::size_t MostPages = std::size_t{1} << 22;
constexpr std::size_t NearPieces = 8192; ///< whose pages fit into the caches of a core
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr std::uint64_t Channels = 0x00FF00FF00FF00FFU;
constexpr std::uint64_t Halves = 0x0080008000800080U; ///< what rounds the sum of each channel

// Doubts about the rounding of a quotient to a 32-bit float.
constexpr std::uint64_t Middle = std::uint64_t{1} << 28; ///< of the 29 bits that a float has not
constexpr std::uint64_t Doubt = 16;                      ///< quotients are exact to a few units of their last place

constexpr double Rounder = 0x1.8p52; ///< added to a small number, leaves it rounded to the nearest, ties to even

/// What is no number reaches no start. So where it has another look than the first piece, all pieces come after it.
bool IsNaNApart(const TColorPieces& pieces) {
    return !(pieces.GetNaNLook() == pieces.GetLooks().front());
}

/// Each channel with 16 bits of its own: blue, red, green, alpha from the lowest on.
std::uint64_t Spread(TColor32 color) {
    return (color | std::uint64_t{color} << 24) & Channels;
}

TColor32 Gather(std::uint64_t channels) {
    return static_cast<TColor32>(channels | channels >> 24);
}

/// Whether a quotient in double arithmetic lies so near to the middle between two 32-bit floats, or among floats of
/// fewer bits, that a more exact one could be rounded to another float.
bool IsRoundingOpen(double quotient) {
    const std::uint64_t rest = std::bit_cast<std::uint64_t>(quotient) & (2 * Middle - 1);
    const bool isTiny = std::abs(quotient) < std::numeric_limits<float>::min() && quotient != 0;
    return rest - (Middle - Doubt) <= 2 * Doubt || isTiny;
}

/// GradientStep without its division, which has been made: the same roundings of the same numbers.
std::uint32_t StepAt(float position, double location, double stepsPerPosition) {
    const double step = (position - location) * stepsPerPosition;
    const double inside = std::min<double>(step > 0 ? step : 0, GradientSteps);
    return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(inside + Rounder));
}

/// Has memory come nearer that will be read soon.
void BringNear([[maybe_unused]] const void* memory) {
#ifdef LMX_HAS_AVX2_KERNELS
    _mm_prefetch(static_cast<const char*>(memory), _MM_HINT_T0);
#endif
}

#ifdef LMX_HAS_AVX2_KERNELS
/// Four numbers, each from the like place of four rows of four.
struct TColumns {
    __m256d Columns[4];
};

LMX_AVX2 inline TColumns Transposed(const double* a, const double* b, const double* c, const double* d) {
    const __m256d lowAB = _mm256_unpacklo_pd(_mm256_load_pd(a), _mm256_load_pd(b));
    const __m256d highAB = _mm256_unpackhi_pd(_mm256_load_pd(a), _mm256_load_pd(b));
    const __m256d lowCD = _mm256_unpacklo_pd(_mm256_load_pd(c), _mm256_load_pd(d));
    const __m256d highCD = _mm256_unpackhi_pd(_mm256_load_pd(c), _mm256_load_pd(d));
    return {{_mm256_permute2f128_pd(lowAB, lowCD, 0x20), _mm256_permute2f128_pd(highAB, highCD, 0x20),
             _mm256_permute2f128_pd(lowAB, lowCD, 0x31), _mm256_permute2f128_pd(highAB, highCD, 0x31)}};
}

LMX_AVX2 inline __m256i InAll(std::uint64_t bits) {
    return _mm256_set1_epi64x(static_cast<long long>(bits));
}

/// Whether IsRoundingOpen holds for any of four quotients.
LMX_AVX2 inline bool IsAnyRoundingOpen(__m256d quotients) {
    const __m256i rest = _mm256_and_si256(_mm256_castpd_si256(quotients), InAll(2 * Middle - 1));
    const __m256i isNear = _mm256_and_si256(_mm256_cmpgt_epi64(rest, InAll(Middle - Doubt - 1)),
                                            _mm256_cmpgt_epi64(InAll(Middle + Doubt + 1), rest));
    const __m256d magnitude = _mm256_andnot_pd(_mm256_set1_pd(-0.0), quotients);
    const __m256d isTiny =
        _mm256_and_pd(_mm256_cmp_pd(magnitude, _mm256_set1_pd(std::numeric_limits<float>::min()), _CMP_LT_OQ),
                      _mm256_cmp_pd(magnitude, _mm256_setzero_pd(), _CMP_GT_OQ));
    return _mm256_movemask_pd(_mm256_or_pd(_mm256_castsi256_pd(isNear), isTiny)) != 0;
}

/// ColorOf for four values, each with a piece of its own; false, and nothing is written, where one of the positions has
/// to be reckoned more exactly.
template<class Piece>
LMX_AVX2 inline bool ColorFour(const Piece* const (&pieces)[4], const float* values, __m256i layerAlpha,
                               TColor32* colors) {
    const auto [mins, positionsPerValue, locations, stepsPerPosition] =
        Transposed(&pieces[0]->Min, &pieces[1]->Min, &pieces[2]->Min, &pieces[3]->Min).Columns;
    const __m256d quotients =
        _mm256_mul_pd(_mm256_sub_pd(_mm256_cvtps_pd(_mm_loadu_ps(values)), mins), positionsPerValue);
    if (IsAnyRoundingOpen(quotients)) [[unlikely]]
        return false;
    const __m256d positions = _mm256_cvtps_pd(_mm256_cvtpd_ps(quotients));
    __m256d steps = _mm256_mul_pd(_mm256_sub_pd(positions, locations), stepsPerPosition);
    steps = _mm256_max_pd(steps, _mm256_setzero_pd()); // the second of the two where the first is no number
    steps = _mm256_min_pd(steps, _mm256_set1_pd(GradientSteps));
    const __m256i rounded = _mm256_castpd_si256(_mm256_add_pd(steps, _mm256_set1_pd(Rounder)));
    const __m256i toEachChannel = _mm256_setr_epi8(0, 1, 0, 1, 0, 1, 0, 1, 8, 9, 8, 9, 8, 9, 8, 9, 0, 1, 0, 1, 0, 1, 0,
                                                   1, 8, 9, 8, 9, 8, 9, 8, 9);
    const __m256i upper = _mm256_shuffle_epi8(rounded, toEachChannel);
    const __m256i lower = _mm256_sub_epi16(_mm256_set1_epi16(GradientSteps), upper);
    const auto ends = [&](int i) { return _mm_load_si128(reinterpret_cast<const __m128i*>(&pieces[i]->From)); };
    const __m256i even = _mm256_set_m128i(ends(2), ends(0));
    const __m256i odd = _mm256_set_m128i(ends(3), ends(1));
    __m256i sum = _mm256_add_epi16(_mm256_mullo_epi16(_mm256_unpacklo_epi64(even, odd), lower),
                                   _mm256_mullo_epi16(_mm256_unpackhi_epi64(even, odd), upper));
    sum = _mm256_srli_epi16(_mm256_add_epi16(sum, InAll(Halves)), 8);
    // Alphas times the layer alpha / 255, to the nearest, and the colours times 255 / 255: n / 255 is, for n below
    // 65,536 and without a division, (m + m / 256) / 256 of m = n + 128.
    sum = _mm256_add_epi16(_mm256_mullo_epi16(sum, layerAlpha), InAll(Halves));
    sum = _mm256_srli_epi16(_mm256_add_epi16(sum, _mm256_srli_epi16(sum, 8)), 8);
    sum = _mm256_or_si256(sum, _mm256_srli_epi64(sum, 24));
    const __m256i gathered = _mm256_permutevar8x32_epi32(sum, _mm256_setr_epi32(0, 2, 4, 6, 0, 2, 4, 6));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(colors), _mm256_castsi256_si128(gathered));
    return true;
}

/// Colours the values that fill whole fours; gives the first that is left to the rule.
template<class Piece, class Rule>
LMX_AVX2 std::size_t ColorFours(const Piece* pieces, const std::uint32_t* places, std::span<const float> values,
                                std::uint64_t layerAlpha, TColor32* colors, Rule rule) {
    const __m256i alphas = InAll(layerAlpha << 48 | 0x000000FF00FF00FFU);
    const std::size_t count = values.size() / 4 * 4;
    for (std::size_t i = 0; i < count; i += 4) {
        const Piece* const four[] = {pieces + places[i], pieces + places[i + 1], pieces + places[i + 2],
                                     pieces + places[i + 3]};
        if (!ColorFour(four, &values[i], alphas, colors + i)) [[unlikely]]
            for (std::size_t j = i; j < i + 4; ++j)
                colors[j] = rule(pieces[places[j]], values[j]);
    }
    return count;
}
#endif

} // namespace

TColorPieceTable::TPiece::TPiece(const TColorPiece& piece)
    : Min(piece.Min),
      PositionsPerValue(1 / (static_cast<double>(piece.Max) - piece.Min)),
      Location(piece.Location),
      StepsPerPosition(piece.StepsPerPosition),
      From(Spread(piece.From)),
      To(Spread(piece.To)),
      SingleMin(piece.Min),
      SingleMax(piece.Max) {}

TColorPieceTable::TColorPieceTable(const TColorPieces& pieces, const TLayerOpacity& opacity)
    : FOpacity(opacity),
      FStarts(pieces.GetStarts().begin() + (IsNaNApart(pieces) ? 0 : 1), pieces.GetStarts().end()),
      FCut(FStarts, TPage::MostStarts, std::min<std::size_t>(PagesPerStart * FStarts.size(), MostPages)) {
    FPieces.reserve(pieces.GetCount() + 1);
    if (IsNaNApart(pieces))
        FPieces.emplace_back(pieces.GetNaNLook());
    for (const TColorPiece& piece : pieces.GetLooks())
        FPieces.emplace_back(piece);
    const std::vector<std::uint32_t> firstInPages = FCut.FirstInEachPage(FStarts);
    FPages.reserve(firstInPages.size());
    for (std::size_t page = 0; page < FCut.GetCount(); ++page) {
        const std::uint32_t first = firstInPages[page];
        FPages.emplace_back(first, std::span(FStarts).subspan(first, firstInPages[page + 1] - first));
    }
    FPages.emplace_back(firstInPages.back(), std::span<const float>());
}

TColorPieceTable::TPage::TPage(std::uint32_t first, std::span<const float> starts)
    : First(first | (starts.size() > MostStarts ? Crowded : 0)) {
    Starts.fill(NaN);
    std::copy_n(starts.begin(), std::min(starts.size(), MostStarts), Starts.begin());
}

/// Index of the piece of a value that belongs to the page.
[[gnu::always_inline]] inline std::uint32_t TColorPieceTable::FindPiece(std::uint32_t page, float value) const {
    const TPage& place = FPages[page];
    if (place.First & TPage::Crowded) [[unlikely]] {
        const std::uint32_t first = place.First & ~TPage::Crowded;
        const std::uint32_t end = FPages[page + 1].First & ~TPage::Crowded;
        return first + static_cast<std::uint32_t>(CountReached<float>({&FStarts[first], end - first}, value));
    }
    std::uint32_t piece = place.First;
    for (const float start : place.Starts)
        piece += value >= start ? 1 : 0;
    return piece;
}

TColor32 TColorPieceTable::ColorOf(const TPiece& piece, float value) {
    const double quotient = (value - piece.Min) * piece.PositionsPerValue;
    auto position = static_cast<float>(quotient);
    if (IsRoundingOpen(quotient)) [[unlikely]]
        position = GradientPosition(value, piece.SingleMin, piece.SingleMax);
    const std::uint64_t step = StepAt(position, piece.Location, piece.StepsPerPosition);
    static_assert(GradientSteps == 256);
    return Gather((piece.From * (256 - step) + piece.To * step + Halves) >> 8 & Channels);
}

void TColorPieceTable::GetColors(std::span<const float> values, TColor32* colors, std::span<const float>) const {
    std::uint32_t places[BlockSize];
    FCut.Find(values, places);
    const bool isFar = FPieces.size() > NearPieces;
    if (isFar)
        for (std::size_t i = 0; i < values.size(); ++i)
            BringNear(&FPages[places[i]]);
    for (std::size_t i = 0; i < values.size(); ++i)
        places[i] = FindPiece(places[i], values[i]);
    if (isFar)
        for (std::size_t i = 0; i < values.size(); ++i)
            BringNear(&FPieces[places[i]]);
    const auto colorOf = [&](const TPiece& piece, float value) { return FOpacity.Fade(ColorOf(piece, value)); };
    std::size_t done = 0;
#ifdef LMX_HAS_AVX2_KERNELS
    if (HasAvx2())
        done = ColorFours(FPieces.data(), places, values, FOpacity.GetLayerAlpha(), colors, colorOf);
#endif
    for (std::size_t i = done; i < values.size(); ++i)
        colors[i] = colorOf(FPieces[places[i]], values[i]);
}

} // namespace lmx
