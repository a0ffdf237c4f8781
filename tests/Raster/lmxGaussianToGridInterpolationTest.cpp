#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Raster/Private/lmxAxisSamples.h>
#include <lmx/Raster/lmxGaussianToGridInterpolation.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Raster/Axes.h>
#include <tests/Support/MemoryLimit.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>

namespace lmx {
namespace {

using tests::Axis;
using tests::MessageOf;

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

TGaussianToGridInterpolation Interpolation(TSingleArray x, TSingleArray y) {
    TGaussianToGridInterpolation interpolation;
    interpolation.FXVals = std::move(x);
    interpolation.FYVals = std::move(y);
    return interpolation;
}

TEST(GaussianToGridInterpolation, StartsWithoutAxesAndWithItsMissingValue) {
    const TGaussianToGridInterpolation interpolation;
    EXPECT_TRUE(interpolation.FXVals.empty());
    EXPECT_TRUE(interpolation.FYVals.empty());
    EXPECT_FALSE(interpolation.FXWrapsAround);
    EXPECT_FALSE(interpolation.FYWrapsAround);
    EXPECT_EQ(interpolation.FMissingValue, -9999);
    EXPECT_FALSE(interpolation.FBestGuessEdges);
}

TEST(GaussianToGridInterpolation, InterpolatesAlongXAndThenAlongY) {
    const auto interpolation = Interpolation({0, 2, 6}, {0, 4});
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    const TSingleGrid grid = interpolation.Interpolate(7, 5, 0, 0, 1, {{0, 20, 60}, {100, 120, 200}}, rows, columns);
    EXPECT_EQ(rows, 5);
    EXPECT_EQ(columns, 7);
    EXPECT_EQ(grid, (TSingleGrid{{0, 10, 20, 30, 40, 50, 60},
                                 {25, 35, 45, 57.5F, 70, 82.5F, 95},
                                 {50, 60, 70, 85, 100, 115, 130},
                                 {75, 85, 95, 112.5F, 130, 147.5F, 165},
                                 {100, 110, 120, 140, 160, 180, 200}}));
}

TEST(GaussianToGridInterpolation, RoundsItsCountsToTheNearestAndTiesToEven) {
    const auto interpolation = Interpolation({0, 10}, {0, 10});
    const TSingleGrid source{{1, 1}, {1, 1}};
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    interpolation.Interpolate(2.5F, 3.5F, 0, 0, 1, source, rows, columns);
    EXPECT_EQ(columns, 2);
    EXPECT_EQ(rows, 4);
    interpolation.Interpolate(0.35F, 1, 0, 0, 0.1F, source, rows, columns);
    EXPECT_EQ(columns, 3) << "3.49999989, which as a single is 3.5";
    interpolation.Interpolate(0.5F, 1.25F, 0, 0, 0.5F, source, rows, columns);
    EXPECT_EQ(columns, 1);
    EXPECT_EQ(rows, 2);
    EXPECT_EQ(interpolation.Interpolate(0.25F, 2, 0, 0, 0.5F, source, rows, columns), TSingleGrid(4));
    EXPECT_EQ(columns, 0);
    EXPECT_EQ(interpolation.Interpolate(2, 0, 0, 0, 0.5F, source, rows, columns), TSingleGrid());
    EXPECT_EQ(columns, 4);
    EXPECT_EQ(rows, 0);
}

TEST(GaussianToGridInterpolation, HasItsMissingValueWhereThereIsNoSource) {
    auto interpolation = Interpolation({1, 2}, {1, 2});
    interpolation.FMissingValue = -5;
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    // The margins on X are numbers like others to the second pass.
    EXPECT_EQ(interpolation.Interpolate(4, 4, 0, 0, 1, {{10, 20}, {30, 40}}, rows, columns),
              (TSingleGrid{{-5, -5, -5, -5}, {-5, 10, 20, -5}, {-5, 30, 40, -5}, {-5, -5, -5, -5}}));
    // As a flag they become -9990 there, and nothing else is left beside them for a guess.
    interpolation.FMissingValue = -9999;
    for (const bool bestGuess : {false, true}) {
        interpolation.FBestGuessEdges = bestGuess;
        EXPECT_EQ(interpolation.Interpolate(4, 4, 0, 0, 1, {{10, 20}, {30, 40}}, rows, columns),
                  (TSingleGrid{{-9999, -9999, -9999, -9999},
                               {-9990, 10, 20, -9990},
                               {-9990, 30, 40, -9990},
                               {-9999, -9999, -9999, -9999}}));
    }
}

TEST(GaussianToGridInterpolation, ClosedAxesMeanTheirEndsInTheWholeGap) {
    auto interpolation = Interpolation({0, 10}, {0, 10});
    interpolation.FXWrapsAround = true;
    interpolation.FYWrapsAround = true;
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    EXPECT_EQ(interpolation.Interpolate(20, 15, 0, 0, 5, {{0, 8}, {16, 40}}, rows, columns),
              (TSingleGrid{{0, 4, 8, 4}, {8, 16, 24, 16}, {16, 28, 40, 28}}));
    EXPECT_EQ(interpolation.Interpolate(10, 10, -10, 11, 5, {{0, 8}, {16, 40}}, rows, columns),
              (TSingleGrid{{16, 16}, {16, 16}}));
}

TEST(GaussianToGridInterpolation, AFlagSpoilsItsNeighboursUnlessTheOthersAreGuessed) {
    auto interpolation = Interpolation({0, 2, 4, 6}, {0, 2});
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    const TSingleGrid source{{1, -9990, NaN, 7}, {1, -9990, 1e30F, 7}};
    const auto interpolate = [&] { return interpolation.Interpolate(7, 1, 0, 0, 1, source, rows, columns); };
    EXPECT_EQ(interpolate(), (TSingleGrid{{1 * 0 - 9990, -9990, -9990, -9990, -9990, -9990, -9990}}));
    interpolation.FBestGuessEdges = true;
    EXPECT_EQ(interpolate(), (TSingleGrid{{1, 1, 1, -9990, -9990, 7, 7}}));
}

TEST(GaussianToGridInterpolation, ANumberThatBecomesAFlagByBlendingIsOneInTheSecondPass) {
    auto interpolation = Interpolation({0, 2}, {0, 2});
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    EXPECT_EQ(interpolation.Interpolate(2, 2, 1, 0, 1, {{-9989, -9991}, {-9000, -9000}}, rows, columns)[0][0], -9990);
    interpolation.FBestGuessEdges = true;
    EXPECT_EQ(interpolation.Interpolate(1, 2, 1, 0, 1, {{-9989, -9991}, {-9000, -9000}}, rows, columns),
              (TSingleGrid{{-9000}, {-9000}}));
    EXPECT_EQ(interpolation.Interpolate(1, 2, 1, 0, 1, {{-9998, -10000}, {-9000, -9000}}, rows, columns),
              (TSingleGrid{{-9000}, {-9000}}));
}

TEST(GaussianToGridInterpolation, AnAxisOfOneValueGivesNoSample) {
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    EXPECT_EQ(Interpolation({0}, {0, 1}).Interpolate(2, 1, 0, 0, 1, {{5}, {6}}, rows, columns),
              (TSingleGrid{{-9990, -9990}}));
    EXPECT_EQ(Interpolation({0, 1}, {0}).Interpolate(2, 1, 0, 0, 1, {{5, 6}}, rows, columns),
              (TSingleGrid{{-9999, -9999}}));
    EXPECT_EQ(Interpolation({}, {}).Interpolate(2, 1, 0, 0, 1, {}, rows, columns), (TSingleGrid{{-9999, -9999}}));
}

TEST(GaussianToGridInterpolation, RefusesWhatIsNoGridBeforeItTouchesTheCounts) {
    const auto interpolation = Interpolation({0, 1}, {0, 1});
    const TSingleGrid source{{1, 2}, {3, 4}};
    std::int32_t rows = 77;
    std::int32_t columns = 78;
    const auto interpolate = [&](float width, float height, float resolution, const TSingleGrid& grid) {
        return [&rows, &columns, &interpolation, width, height, resolution, &grid] {
            interpolation.Interpolate(width, height, 0, 0, resolution, grid, rows, columns);
        };
    };
    EXPECT_EQ(MessageOf<EZeroDivide>(interpolate(1, 1, 0, source)), "Floating point division by zero");
    EXPECT_EQ(MessageOf<EInvalidOp>(interpolate(0, 1, 0, source)), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>(interpolate(NaN, 1, 1, source)), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>(interpolate(1, 1, NaN, source)), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>(interpolate(1, Infinity, 1, source)), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>(interpolate(0x1p31F, 1, 1, source)), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOperation>(interpolate(-2, 1, 1, source)), "Grid size is negative");
    EXPECT_EQ(MessageOf<EInvalidOperation>(interpolate(1, 2, -1, source)), "Grid size is negative");
    EXPECT_EQ(MessageOf<EInvalidOperation>(interpolate(65536, 65536, 1, source)), "Grid is too large");
    const TSingleGrid short1{{1, 2}};
    const TSingleGrid ragged{{1, 2}, {3}};
    EXPECT_EQ(MessageOf<EArgumentException>(interpolate(2, 2, 1, short1)), "Grid");
    EXPECT_EQ(MessageOf<EArgumentException>(interpolate(2, 2, 1, ragged)), "Grid");
    EXPECT_EQ(rows, 77);
    EXPECT_EQ(columns, 78);
}

TEST(GaussianToGridInterpolation, NeedsItsMemoryBeforeItTouchesTheCounts) {
    const auto interpolation = Interpolation({0, 30000}, {0, 30000});
    std::int32_t rows = 77;
    std::int32_t columns = 78;
    const tests::TMemoryLimit limit(256 * 1024 * 1024);
    EXPECT_EQ(MessageOf<EOutOfMemory>([&] {
                  interpolation.Interpolate(30000, 30000, 0, 0, 1, {{1, 2}, {3, 4}}, rows, columns);
              }),
              "Out of memory");
    EXPECT_EQ(MessageOf<EOutOfMemory>([&] {
                  interpolation.Interpolate(2e9F, 0, 0, 0, 1, {{1, 2}, {3, 4}}, rows, columns);
              }),
              "Out of memory")
        << "the samples of an axis without cells";
    EXPECT_EQ(rows, 77);
    EXPECT_EQ(columns, 78);
}

// The two passes as they are defined, cell by cell, in words of their own.

bool IsFlag(float number) {
    return std::isnan(number) || std::fabs(number) >= 1e30F || number == -9990 || number == -9999;
}

float Blend(float a, float b, double f, bool bestGuess) {
    if (!IsFlag(a) && !IsFlag(b)) {
        const long double difference = static_cast<long double>(b) - static_cast<long double>(a);
        return static_cast<float>(difference * f + a);
    }
    if (bestGuess && !IsFlag(a))
        return a;
    if (bestGuess && !IsFlag(b))
        return b;
    return -9990;
}

TSingleGrid TwoPasses(const TGaussianToGridInterpolation& axes, int columns, int rows, float startX, float startY,
                      float resolution, const TSingleGrid& source) {
    const auto positionOf = [resolution](int i, float start) {
        return static_cast<double>(static_cast<long double>(i) * resolution + start);
    };
    TSingleGrid between(source.size(), TSingleArray(static_cast<std::size_t>(columns)));
    TSingleGrid result(static_cast<std::size_t>(rows), TSingleArray(static_cast<std::size_t>(columns)));
    for (std::size_t y = 0; y < source.size(); ++y)
        for (int x = 0; x < columns; ++x) {
            const TAxisSample at = SampleAxis(axes.FXVals, axes.FXWrapsAround, positionOf(x, startX));
            between[y][static_cast<std::size_t>(x)] =
                at.Valid ? Blend(source[y][static_cast<std::size_t>(at.LowIndex)],
                                 source[y][static_cast<std::size_t>(at.HighIndex)], at.Fraction, axes.FBestGuessEdges)
                         : axes.FMissingValue;
        }
    for (std::size_t x = 0; x < static_cast<std::size_t>(columns); ++x)
        for (int y = 0; y < rows; ++y) {
            const TAxisSample at = SampleAxis(axes.FYVals, axes.FYWrapsAround, positionOf(y, startY));
            result[static_cast<std::size_t>(y)][x] =
                at.Valid ? Blend(between[static_cast<std::size_t>(at.LowIndex)][x],
                                 between[static_cast<std::size_t>(at.HighIndex)][x], at.Fraction, axes.FBestGuessEdges)
                         : axes.FMissingValue;
        }
    return result;
}

TSingleArray RandomAxis(std::mt19937& random, std::size_t count) {
    TSingleArray axis;
    float position = -static_cast<float>(random() % 20);
    for (std::size_t i = 0; i < count; ++i) {
        axis.push_back(position);
        position += random() % 2 == 0 ? 1 : std::uniform_real_distribution<float>(0.1F, 3)(random);
    }
    return axis;
}

TEST(GaussianToGridInterpolation, EqualsTheTwoPassesCellByCellToTheLastBit) {
    constexpr float Flags[] = {-9990, -9999, NaN, Infinity, -Infinity, 1e30F};
    constexpr float MissingValues[] = {-9999, -9990, 0, NaN, Infinity};
    constexpr float Resolutions[] = {0.5F, 0.25F, 0.3F, 1.875F};
    std::mt19937 random(3);
    std::uniform_real_distribution<float> value(-50, 50);
    for (int round = 0; round < 60; ++round) {
        auto interpolation = Interpolation(RandomAxis(random, random() % 30), RandomAxis(random, random() % 20));
        interpolation.FXWrapsAround = random() % 2 == 0;
        interpolation.FYWrapsAround = random() % 4 == 0;
        interpolation.FBestGuessEdges = random() % 2 == 0;
        interpolation.FMissingValue = MissingValues[random() % std::size(MissingValues)];
        const bool isWhole = random() % 3 == 0;
        TSingleGrid source(interpolation.FYVals.size(), TSingleArray(interpolation.FXVals.size()));
        for (TSingleArray& row : source)
            for (float& number : row) {
                number = isWhole ? static_cast<float>(random() % 9) : value(random);
                if (random() % 8 == 0)
                    number = Flags[random() % std::size(Flags)];
            }
        const float resolution = Resolutions[random() % std::size(Resolutions)];
        std::int32_t rows = 0;
        std::int32_t columns = 0;
        const TSingleGrid fast = interpolation.Interpolate(60, 40, -20, -20, resolution, source, rows, columns);
        const TSingleGrid plain = TwoPasses(interpolation, columns, rows, -20, -20, resolution, source);
        ASSERT_TRUE(HasShape(fast, static_cast<std::size_t>(columns), static_cast<std::size_t>(rows)));
        for (std::size_t y = 0; y < fast.size(); ++y)
            for (std::size_t x = 0; x < fast[y].size(); ++x)
                ASSERT_EQ(std::bit_cast<std::uint32_t>(fast[y][x]), std::bit_cast<std::uint32_t>(plain[y][x]))
                    << round << ": " << x << ',' << y << ' ' << fast[y][x] << ' ' << plain[y][x];
    }
}

} // namespace
} // namespace lmx
