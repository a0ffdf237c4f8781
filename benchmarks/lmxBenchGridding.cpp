// What bringing a model grid onto an even one costs, pass for pass, as a part of the speed at which the target grid is
// copied. A pass should reach 0.25 of it; the plain loop that blends cell by cell in extended stands beside it.

#include <benchmarks/Measuring.h>
#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Raster/Private/lmxAxisSamples.h>
#include <lmx/Raster/Private/lmxNeighbourBlend.h>
#include <lmx/Raster/lmxGaussianToGridInterpolation.h>

#include <cmath>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <numbers>
#include <random>
#include <string>
#include <utility>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

using namespace lmx;
using namespace lmx::bench;

/// Model output, and the even grid it is brought onto.
struct TCase {
    std::string Name;
    TGaussianToGridInterpolation Interpolation;
    TSingleGrid Source;
    float Width, Height, StartX, StartY, Resolution;
};

TSingleArray EvenAxis(int count, float start, float step) {
    TSingleArray axis;
    for (int i = 0; i < count; ++i)
        axis.push_back(static_cast<float>(i) * step + start);
    return axis;
}

/// Close to the Gaussian latitudes: the first term of their expansion.
TSingleArray GaussianAxis(int count) {
    TSingleArray axis;
    for (int i = 0; i < count; ++i)
        axis.push_back(static_cast<float>(90 - 180 * (count - i - 0.25) / (count + 0.5)));
    return axis;
}

/// A smooth field with a connected part without data, as a sea has.
TSingleGrid SmoothField(std::size_t columns, std::size_t rows) {
    TSingleGrid grid(rows, TSingleArray(columns));
    for (std::size_t y = 0; y < rows; ++y)
        for (std::size_t x = 0; x < columns; ++x) {
            const double longitude = 2 * std::numbers::pi * static_cast<double>(x) / static_cast<double>(columns);
            const double latitude = std::numbers::pi * static_cast<double>(y) / static_cast<double>(rows);
            const double value = 45 * std::sin(latitude) * std::cos(3 * longitude) + std::sin(40 * longitude);
            grid[y][x] = value < -40 ? TSpatialConst::NoData : static_cast<float>(value);
        }
    return grid;
}

/// Noise, every fiftieth cell without data.
TSingleGrid RandomField(std::size_t columns, std::size_t rows) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(-50, 50);
    TSingleGrid grid(rows, TSingleArray(columns));
    for (TSingleArray& row : grid)
        for (float& number : row)
            number = random() % 50 == 0 ? TSpatialConst::NoData : value(random);
    return grid;
}

/// The two passes as they are defined, cell by cell.
TSingleGrid InterpolatePlainly(const TCase& problem) {
    const TGaussianToGridInterpolation& axes = problem.Interpolation;
    const auto columns =
        SampleTable(axes.FXVals, axes.FXWrapsAround, static_cast<std::int32_t>(problem.Width / problem.Resolution),
                    problem.StartX, problem.Resolution);
    const auto rows =
        SampleTable(axes.FYVals, axes.FYWrapsAround, static_cast<std::int32_t>(problem.Height / problem.Resolution),
                    problem.StartY, problem.Resolution);
    const auto blend = [&axes](const TAxisSample& sample, const auto& at) {
        if (!sample.Valid)
            return axes.FMissingValue;
        return BlendNeighbours(at(static_cast<std::size_t>(sample.LowIndex)),
                               at(static_cast<std::size_t>(sample.HighIndex)), sample.Fraction, axes.FBestGuessEdges);
    };
    TSingleGrid intermediate(problem.Source.size(), TSingleArray(columns.size()));
    for (std::size_t y = 0; y < intermediate.size(); ++y)
        for (std::size_t x = 0; x < columns.size(); ++x)
            intermediate[y][x] = blend(columns[x], [&](std::size_t i) { return problem.Source[y][i]; });
    TSingleGrid result(rows.size(), TSingleArray(columns.size()));
    for (std::size_t y = 0; y < rows.size(); ++y)
        for (std::size_t x = 0; x < columns.size(); ++x)
            result[y][x] = blend(rows[y], [&](std::size_t i) { return intermediate[i][x]; });
    return result;
}

/// Copies and interpolates in turns, so that all see the same machine, and prints the ratios of the best times. The
/// interpolation takes memory for its rows, as a copy of the grid does, whose ratio therefore stands beside it.
void Report(const TCase& problem, int rounds) {
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    TSingleGrid result;
    const auto interpolate = [&] {
        result = problem.Interpolation.Interpolate(problem.Width, problem.Height, problem.StartX, problem.StartY,
                                                   problem.Resolution, problem.Source, rows, columns);
    };
    interpolate();
    const auto cells = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    const TSingleArray from(cells, 1);
    TSingleArray to(cells);
    TSingleGrid copy;
    TBestTime bestCopy;
    TBestTime bestFast;
    TBestTime bestGridCopy;
    TBestTime bestPlain;
    for (int i = 0; i < rounds; ++i) {
        bestCopy.Measure([&] { std::memcpy(to.data(), from.data(), cells * sizeof(float)); });
        bestFast.Measure(interpolate);
        bestGridCopy.Measure([&] { TSingleGrid(result).swap(copy); });
        if (i % 5 == 0)
            bestPlain.Measure([&] { InterpolatePlainly(problem); });
    }
    const auto ratio = [bestCopy](const TBestTime& time) { return 2 * (bestCopy / time); };
    std::cout << std::left << std::setw(38) << problem.Name << std::right << std::fixed << std::setprecision(3)
              << ratio(bestFast) << " of the speed of memcpy a pass, " << 2 * (bestGridCopy / bestFast)
              << " of that of copying the grid; cell by cell " << ratio(bestPlain) << '\n';
}

TCase Gaussian(std::string name, TSingleGrid source) {
    TCase problem{std::move(name), {}, std::move(source), 360, 180, 0, -90, 0.5F};
    problem.Interpolation.FXVals = EvenAxis(192, 0, 1.875F);
    problem.Interpolation.FYVals = GaussianAxis(94);
    problem.Interpolation.FXWrapsAround = true;
    return problem;
}

TCase Regular(std::string name, TSingleGrid source) {
    TCase problem{std::move(name), {}, std::move(source), 500, 250, 0, -125, 0.125F};
    problem.Interpolation.FXVals = EvenAxis(2000, 0, 0.25F);
    problem.Interpolation.FYVals = EvenAxis(1000, -125, 0.25F);
    return problem;
}

} // namespace

int main() {
#ifdef __GLIBC__
    // Memory that was given back is kept, or the clearing of fresh pages would be measured most of all.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
#endif
    Report(Gaussian("94 x 192 to 0.5 degrees, smooth", SmoothField(192, 94)), Sized(200));
    Report(Gaussian("94 x 192 to 0.5 degrees, random", RandomField(192, 94)), Sized(200));
    Report(Regular("1000 x 2000 to half spacing, smooth", SmoothField(2000, 1000)), Sized(20));
    Report(Regular("1000 x 2000 to half spacing, random", RandomField(2000, 1000)), Sized(20));
}
