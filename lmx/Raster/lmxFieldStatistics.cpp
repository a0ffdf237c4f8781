#include <lmx/Raster/lmxFieldStatistics.h>

#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Raster/Private/lmxNewValues.h>
#include <lmx/Raster/lmxField.h>
#include <lmx/Raster/lmxFieldRegion.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace lmx {

namespace {

constexpr std::size_t RunLength = 64;
constexpr std::size_t Lanes = 4; // sums that do not wait for one another

/// A sum that keeps what each addition loses.
class TExactSum {
public:
    void Add(double term) {
        const double sum = FSum + term;
        FLost += std::abs(FSum) >= std::abs(term) ? FSum - sum + term : term - sum + FSum;
        FSum = sum;
    }
    double Get() const { return FSum + FLost; }

private:
    double FSum = 0;
    double FLost = 0;
};

/// A few cells of one row, summed by the shares that count.
struct TRun {
    std::array<double, Lanes> Sums{};
    std::array<double, Lanes> ValueShares{};
    std::array<double, Lanes> Shares{};
    std::array<double, Lanes> Minima{};
    std::array<double, Lanes> Maxima{};
    std::array<std::uint32_t, Lanes> Values{};
    std::array<std::uint32_t, Lanes> Cells{};

    TRun() {
        Minima.fill(std::numeric_limits<double>::infinity());
        Maxima.fill(-std::numeric_limits<double>::infinity());
    }

    void Take(std::size_t lane, double number, double share) {
        const auto single = static_cast<float>(number);
        const bool counts = share > 0;
        const bool isValue = counts & TSpatialConst::IsValue(single);
        Sums[lane] += isValue ? number * share : 0;
        ValueShares[lane] += isValue ? share : 0;
        Shares[lane] += share;
        Minima[lane] = isValue && number < Minima[lane] ? number : Minima[lane];
        Maxima[lane] = isValue && number > Maxima[lane] ? number : Maxima[lane];
        Values[lane] += isValue ? 1 : 0;
        Cells[lane] += counts ? 1 : 0;
    }
};

TRun RunOf(std::span<const double> numbers, std::span<const double> shares) {
    TRun run;
    std::size_t i = 0;
    for (; i + Lanes <= numbers.size(); i += Lanes)
        for (std::size_t lane = 0; lane < Lanes; ++lane)
            run.Take(lane, numbers[i + lane], shares[i + lane]);
    for (; i < numbers.size(); ++i)
        run.Take(0, numbers[i], shares[i]);
    return run;
}

class TTotals {
public:
    void AddRow(std::span<const double> numbers, std::span<const double> shares, double weight) {
        for (std::size_t from = 0; from < numbers.size(); from += RunLength) {
            const std::size_t length = std::min(RunLength, numbers.size() - from);
            Add(RunOf(numbers.subspan(from, length), shares.subspan(from, length)), weight);
        }
    }

    TFieldStatistics Get() const {
        TFieldStatistics statistics;
        statistics.CellCount = FCells;
        statistics.ValueCount = FValues;
        const double area = FArea.Get();
        statistics.MissingShare = area > 0 ? std::clamp(1 - FValueArea.Get() / area, 0.0, 1.0) : 0;
        if (FValues == 0)
            return statistics;
        if (FValues == FCells)
            statistics.MissingShare = 0; // whatever the roundings
        statistics.Mean = std::clamp(FSum.Get() / FValueArea.Get(), FMinimum, FMaximum);
        statistics.Minimum = FMinimum;
        statistics.Maximum = FMaximum;
        return statistics;
    }

private:
    template<class Value>
    static auto Total(const std::array<Value, Lanes>& lanes) {
        return (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
    }
    void Add(const TRun& run, double weight) {
        FSum.Add(Total(run.Sums) * weight);
        FValueArea.Add(Total(run.ValueShares) * weight);
        FArea.Add(Total(run.Shares) * weight);
        FMinimum = std::min(FMinimum, *std::min_element(run.Minima.begin(), run.Minima.end()));
        FMaximum = std::max(FMaximum, *std::max_element(run.Maxima.begin(), run.Maxima.end()));
        FValues += Total(run.Values);
        FCells += Total(run.Cells);
    }

    TExactSum FSum;
    TExactSum FValueArea;
    TExactSum FArea;
    double FMinimum = std::numeric_limits<double>::infinity();
    double FMaximum = -std::numeric_limits<double>::infinity();
    std::uint64_t FValues = 0;
    std::uint64_t FCells = 0;
};

} // namespace

TFieldStatistics StatisticsOf(const TField& field, TFieldRegion& region) {
    TTotals totals;
    auto numbers = NewValues<double>(static_cast<std::uint64_t>(std::max(0, field.Width)));
    for (std::int32_t row = 0; row < field.Height; ++row) {
        const double weight = region.GetRowWeight(row);
        if (!(weight > 0))
            continue;
        field.ReadRow(row, numbers);
        totals.AddRow(numbers, region.GetShares(row), weight);
    }
    return totals.Get();
}

TFieldStatistics StatisticsOf(const TField& field) {
    TFieldRegion all(field);
    return StatisticsOf(field, all);
}

} // namespace lmx
