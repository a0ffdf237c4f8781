#include <lmx/Raster/Private/lmxNeighbourBlend.h>

#include <lmx/Runtime/Private/lmxAvx2.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace lmx {

namespace {

using TRow = std::span<const double>;

/// One fraction for all cells of a row.
struct TSameFraction {
    double Fraction;
    double operator[](std::size_t) const { return Fraction; }
};

/// Each loop is one that compilers turn into lanes, as many as the caller's instructions have.
[[gnu::always_inline]] inline float WidenInLanes(std::span<float> row, double* result) {
    for (float& number : row)
        number = TSpatialConst::IsFlag(number) ? std::numeric_limits<float>::quiet_NaN() : number;
    // Magnitudes are ordered as their bits are, and a maximum of integers may be taken in any order.
    constexpr auto infinity = std::bit_cast<std::int32_t>(std::numeric_limits<float>::infinity());
    std::int32_t largest = 0;
    for (const float number : row) {
        const std::int32_t magnitude = std::bit_cast<std::int32_t>(number) & 0x7FFFFFFF;
        largest = std::max(largest, magnitude > infinity ? 0 : magnitude);
    }
    for (std::size_t i = 0; i < row.size(); ++i)
        result[i] = row[i];
    return std::bit_cast<float>(largest);
}

float BlendCell(double low, double high, double fraction, bool bestGuess) {
    return BlendNeighbours(static_cast<float>(low), static_cast<float>(high), fraction, bestGuess);
}

#ifdef LMX_HAS_AVX2_KERNELS

// The extended result X is rounded to single. Here r is computed instead, in double and for eight cells at once, with L
// the largest magnitude of the row: X and r differ by less than 2^-51 * L, as the difference (at most 2 * L) and the
// fused sum (at most L) are each rounded by at most 2^-53 of their size, and the roundings of extended are far smaller.
// So where both ends of r -+ 2^-50 * L round to the same single, X rounds to it as well, and that is nearly everywhere
// where there is no flag, of which r is NaN. Elsewhere r lies at the middle of two singles. Then two cases remain: each
// of the three operations is exact, as with fractions like 1/2, and X = r; or the cell is computed in extended.
//
// Values are smaller than 1e30 and fractions are not tiny, so nothing overflows and nothing underflows on the way. What
// is added to the bound keeps both ends from rounding to zeros of different signs.

constexpr double RelativeBound = 0x1p-50;
constexpr double LeastBound = 0x1p-140;

LMX_AVX2 inline __m256d LoadFractions(TSameFraction fractions, std::size_t) {
    return _mm256_set1_pd(fractions.Fraction);
}

LMX_AVX2 inline __m256d LoadFractions(std::span<const double> fractions, std::size_t i) {
    return _mm256_loadu_pd(fractions.data() + i);
}

/// Four cells in double.
struct TFour {
    __m256d Low, High, Fraction, Difference, Sum;
};

template<class Fractions>
LMX_AVX2 inline TFour BlendFour(TRow low, TRow high, Fractions fractions, std::size_t i) {
    TFour four{};
    four.Low = _mm256_loadu_pd(low.data() + i);
    four.High = _mm256_loadu_pd(high.data() + i);
    four.Fraction = LoadFractions(fractions, i);
    four.Difference = _mm256_sub_pd(four.High, four.Low);
    four.Sum = _mm256_fmadd_pd(four.Difference, four.Fraction, four.Low);
    return four;
}

LMX_AVX2 inline __m256 ToSingles(__m256d first, __m256d second) {
    return _mm256_set_m128(_mm256_cvtpd_ps(second), _mm256_cvtpd_ps(first));
}

/// The numbers, or others in the place of NaN.
LMX_AVX2 inline __m256 OrElse(__m256 numbers, __m256 others) {
    return _mm256_blendv_ps(numbers, others, _mm256_cmp_ps(numbers, numbers, _CMP_UNORD_Q));
}

LMX_AVX2 inline __m256d AreEqual(__m256d a, __m256d b) {
    return _mm256_cmp_pd(a, b, _CMP_EQ_OQ);
}

LMX_AVX2 inline __m256d IsNaN(__m256d numbers) {
    return _mm256_cmp_pd(numbers, numbers, _CMP_UNORD_Q);
}

/// Whether the three operations of every cell without a flag are exact. A rounded sum or difference is, if taking
/// either operand out of it leaves the other: to take out the larger one is always exact.
LMX_AVX2 inline bool IsExact(const TFour& four) {
    const __m256d product = _mm256_mul_pd(four.Difference, four.Fraction);
    const __m256d productError = _mm256_fmsub_pd(four.Difference, four.Fraction, product);
    __m256d exact = AreEqual(productError, _mm256_setzero_pd());
    exact = _mm256_and_pd(exact, AreEqual(_mm256_sub_pd(four.High, four.Difference), four.Low));
    exact = _mm256_and_pd(exact, AreEqual(_mm256_add_pd(four.Low, four.Difference), four.High));
    exact = _mm256_and_pd(exact, AreEqual(_mm256_sub_pd(four.Sum, product), four.Low));
    exact = _mm256_and_pd(exact, AreEqual(_mm256_sub_pd(four.Sum, four.Low), product));
    return _mm256_movemask_pd(_mm256_or_pd(exact, IsNaN(four.Sum))) == 0xF;
}

/// The results of exact cells: a flag, or the best guess, where a neighbour is NaN.
LMX_AVX2 inline __m128 ResultsOf(const TFour& four, bool bestGuess) {
    __m256d results = _mm256_set1_pd(TSpatialConst::NoData);
    if (bestGuess) {
        results = _mm256_blendv_pd(four.High, results, IsNaN(four.High));
        results = _mm256_blendv_pd(four.Low, results, IsNaN(four.Low));
    }
    return _mm256_cvtpd_ps(_mm256_blendv_pd(four.Sum, results, IsNaN(four.Sum)));
}

/// Blends four cells with whatever is in them.
template<class Fractions>
LMX_AVX2 inline void BlendAnyFour(TRow low, TRow high, Fractions fractions, bool bestGuess, std::span<float> result,
                                  std::size_t i) {
    const TFour four = BlendFour(low, high, fractions, i);
    if (IsExact(four)) {
        _mm_storeu_ps(result.data() + i, ResultsOf(four, bestGuess));
        return;
    }
    for (std::size_t cell = i; cell < i + 4; ++cell)
        result[cell] = BlendCell(low[cell], high[cell], fractions[cell], bestGuess);
}

/// What eight cells give whose blend is NaN: a flag, or the best guess.
template<bool BestGuess>
LMX_AVX2 inline __m256 ResultsBesideFlags(const TFour& first, const TFour& second) {
    const __m256 flags = _mm256_set1_ps(TSpatialConst::NoData);
    if (!BestGuess)
        return flags;
    const __m256 low = ToSingles(first.Low, second.Low);
    const __m256 high = ToSingles(first.High, second.High);
    return OrElse(low, OrElse(high, flags));
}

/// Blends as many cells as eights hold, and gives their number.
template<bool BestGuess, class Fractions>
LMX_AVX2 inline std::size_t BlendEights(TRow low, TRow high, Fractions fractions, float largest,
                                        std::span<float> result) {
    const __m256d bound = _mm256_set1_pd(largest * RelativeBound + LeastBound);
    std::size_t i = 0;
    for (; i + 8 <= result.size(); i += 8) {
        const TFour first = BlendFour(low, high, fractions, i);
        const TFour second = BlendFour(low, high, fractions, i + 4);
        const __m256 lower = ToSingles(_mm256_sub_pd(first.Sum, bound), _mm256_sub_pd(second.Sum, bound));
        const __m256 upper = ToSingles(_mm256_add_pd(first.Sum, bound), _mm256_add_pd(second.Sum, bound));
        if (_mm256_movemask_ps(_mm256_cmp_ps(lower, upper, _CMP_EQ_UQ)) == 0xFF) { // or NaN
            _mm256_storeu_ps(result.data() + i, OrElse(lower, ResultsBesideFlags<BestGuess>(first, second)));
            continue;
        }
        BlendAnyFour(low, high, fractions, BestGuess, result, i);
        BlendAnyFour(low, high, fractions, BestGuess, result, i + 4);
    }
    return i;
}

LMX_AVX2 inline float WidenByEights(std::span<float> row, double* result) {
    return WidenInLanes(row, result);
}

#endif

template<class Fractions>
void BlendCells(TRow low, TRow high, Fractions fractions, [[maybe_unused]] float largest, bool bestGuess,
                std::span<float> result) {
    std::size_t i = 0;
#ifdef LMX_HAS_AVX2_KERNELS
    if (HasAvx2())
        i = bestGuess ? BlendEights<true>(low, high, fractions, largest, result)
                      : BlendEights<false>(low, high, fractions, largest, result);
#endif
    for (; i < result.size(); ++i)
        result[i] = BlendCell(low[i], high[i], fractions[i], bestGuess);
}

} // namespace

float WidenRow(std::span<float> row, std::span<double> result) {
#ifdef LMX_HAS_AVX2_KERNELS
    if (HasAvx2())
        return WidenByEights(row, result.data());
#endif
    return WidenInLanes(row, result.data());
}

void BlendRows(std::span<const double> low, std::span<const double> high, double fraction, float largest,
               bool bestGuess, std::span<float> result) {
    BlendCells(low, high, TSameFraction{fraction}, largest, bestGuess, result);
}

void BlendRows(std::span<const double> low, std::span<const double> high, std::span<const double> fractions,
               float largest, bool bestGuess, std::span<float> result) {
    BlendCells(low, high, fractions, largest, bestGuess, result);
}

} // namespace lmx
