#include <lmx/Climate/lmxSpatialConst.h>
#include <lmx/Raster/lmxAxisSamples.h>
#include <lmx/Raster/lmxGaussianToGridInterpolation.h>
#include <lmx/Runtime/lmxExceptions.h>
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

using tests::MessageOf;

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

TSingleArray Axis(int count, float start, float step) {
    TSingleArray axis;
    for (int i = 0; i < count; ++i)
        axis.push_back(static_cast<float>(i) * step + start);
    return axis;
}

/// 0, 1, 2, ... for every pair of latitude and longitude.
TSingleArray Ramp(const TSingleArray& lats, const TSingleArray& lons) {
    return Axis(static_cast<int>(lats.size() * lons.size()), 0, 1);
}

// Interpolate

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

// InterpolateGrid

struct TGridded {
    TSingleGrid Grid;
    TInterpolatedInfo Info;
};

TGridded Gridded(const TSingleArray& lats, const TSingleArray& lons, const TSingleArray& data, double missing = -9999,
                 bool bestGuess = false) {
    TGridded gridded;
    gridded.Grid = InterpolateGrid(lats, lons, data, missing, bestGuess, gridded.Info);
    return gridded;
}

struct TRefusalRow {
    const char* Name;
    TSingleArray Lats;
    TSingleArray Lons;
    TSingleArray Data;
    const char* Message;
};

constexpr const char* LengthMessage = "Data length should match length of latitude * longitude data";
constexpr const char* SpacingMessage = "Latitudes and longitudes should give a positive spacing";

class InterpolateGridArguments : public testing::TestWithParam<TRefusalRow> {};

TEST_P(InterpolateGridArguments, AreRefusedWhenEmpty) {
    TInterpolatedInfo info;
    info.NumCols = 5;
    const auto& [name, lats, lons, data, message] = GetParam();
    EXPECT_EQ(MessageOf<EArgumentException>([&] { InterpolateGrid(lats, lons, data, -9999, false, info); }), message);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { InterpolateAndCreateImageFromGrid(lats, lons, data, -9999, false); }),
              message);
    EXPECT_EQ(info.NumCols, 5);
}

INSTANTIATE_TEST_SUITE_P(Rows, InterpolateGridArguments,
                         testing::Values(TRefusalRow{"Lats", {}, {1, 2}, {1, 2}, "Lats"},
                                         TRefusalRow{"Lons", {1, 2}, {}, {1, 2}, "Lons"},
                                         TRefusalRow{"Data", {1, 2}, {1, 2}, {}, "Data"},
                                         TRefusalRow{"AllThree", {}, {}, {}, "Lats"},
                                         TRefusalRow{"LonsAndData", {1}, {}, {}, "Lons"}),
                         [](const auto& row) { return row.param.Name; });

class InterpolateGridAxes : public testing::TestWithParam<TRefusalRow> {};

TEST_P(InterpolateGridAxes, AreRefusedWhenTheyMakeNoGrid) {
    TInterpolatedInfo info;
    info.NumCols = 5;
    const auto& [name, lats, lons, data, message] = GetParam();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { InterpolateGrid(lats, lons, data, -9999, false, info); }), message);
    EXPECT_EQ(info.NumCols, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, InterpolateGridAxes,
    testing::Values(TRefusalRow{"TooShort", {1, 2}, {1, 2}, {1, 2, 3}, LengthMessage},
                    TRefusalRow{"TooLong", {1, 2}, {1, 2}, {1, 2, 3, 4, 5}, LengthMessage},
                    TRefusalRow{"OneLatitude", {1}, {1, 2}, {1, 2}, SpacingMessage},
                    TRefusalRow{"OneLongitude", {1, 2}, {1}, {1, 2}, SpacingMessage},
                    TRefusalRow{"OneOfEachOfAnotherLength", {1}, {1}, {1, 2}, LengthMessage},
                    TRefusalRow{"LongitudeTwice", {1, 2}, {1, 1}, {1, 2, 3, 4}, SpacingMessage},
                    TRefusalRow{"LatitudeTwice", {1, 1}, {1, 2}, {1, 2, 3, 4}, SpacingMessage},
                    TRefusalRow{"LongitudesDescend", {1, 2}, {2, 1}, {1, 2, 3, 4}, SpacingMessage},
                    TRefusalRow{"LatitudesTurn", {1, 3, 2}, {1, 2}, {1, 2, 3, 4, 5, 6}, SpacingMessage},
                    TRefusalRow{"NaNLatitude", {1, NaN, 2}, {1, 2}, {1, 2, 3, 4, 5, 6}, SpacingMessage},
                    TRefusalRow{"NaNBeforeAGap", {1, 2}, {NaN, 1, 2}, {1, 2, 3, 4, 5, 6}, SpacingMessage},
                    TRefusalRow{"NaNBehindAGap", {1, 2}, {1, 2, NaN}, {1, 2, 3, 4, 5, 6}, SpacingMessage},
                    TRefusalRow{"Dense", {0, 1e-6F}, {0, 90}, {1, 2, 3, 4}, "Grid is too large"}),
    [](const auto& row) { return row.param.Name; });

TEST(InterpolateGrid, WidensItsAreaToWholeDegreesAndHalvesTheDensestSpacing) {
    const TSingleArray lats = Axis(5, -3.5F, 2);
    const TSingleArray lons = Axis(4, 10.25F, 1.5F);
    const TInterpolatedInfo expected{10, -4, 15, 5, 0.75, 12, 7};
    const TGridded gridded = Gridded(lats, lons, Ramp(lats, lons));
    EXPECT_EQ(gridded.Info, expected); // 9 / 0.75 rows; 5 / 0.75 = 6.67 columns
    EXPECT_TRUE(HasShape(gridded.Grid, 7, 12));
    EXPECT_EQ(Gridded({0, 1, 3}, {0, 10}, {1, 2, 3, 4, 5, 6}).Info.Res, 0.5);
    EXPECT_EQ(Gridded({0, 10}, {0, 4, 7}, {1, 2, 3, 4, 5, 6}).Info.Res, 1.5);
}

TEST(InterpolateGrid, ThePolesOfLatitudesFrom88NeedNoData) {
    const TSingleArray lats = Axis(45, -88, 4);
    const TSingleArray lons = Axis(90, 0, 4);
    const TInterpolatedInfo info = Gridded(lats, lons, Ramp(lats, lons)).Info;
    EXPECT_EQ(info.Top, -88);
    EXPECT_EQ(info.Bottom, 88);
}

TEST(InterpolateGrid, TheLastCellsLieOneStepShortOfTheFarEdges) {
    const TSingleArray lats = Axis(5, -2, 1);
    const TSingleArray lons = Axis(4, 0, 1);
    const auto [grid, info] = Gridded(lats, lons, Ramp(lats, lons));
    EXPECT_EQ((info.NumCols - 1) * info.Res + info.Left, info.Right - info.Res);
    EXPECT_EQ((info.NumRows - 1) * info.Res + info.Top, info.Bottom - info.Res);
    EXPECT_EQ(grid.front().back(), 2.5F);
    EXPECT_EQ(grid.back().front(), 14);
}

TEST(InterpolateGrid, APositionOnASourceValueHasThatValue) {
    const TSingleArray lats = Axis(5, -2, 1);
    const TSingleArray lons = Axis(4, 0, 1);
    const TSingleGrid grid = Gridded(lats, lons, Ramp(lats, lons)).Grid;
    for (std::size_t row = 0; row + 1 < lats.size(); ++row)
        for (std::size_t column = 0; column + 1 < lons.size(); ++column)
            EXPECT_EQ(grid[2 * row][2 * column], static_cast<float>(row * lons.size() + column));
    EXPECT_EQ(grid[1][1], 2.5F);
}

TEST(InterpolateGrid, LongitudesThatStopBeforeTheLastDegreeDoNotClose) {
    const TSingleArray lats{0, 2};
    const TSingleArray lons = Axis(192, 0, 1.875F); // to 358.125
    const auto [grid, info] = Gridded(lats, lons, Ramp(lats, lons));
    EXPECT_EQ(info.Left, 0);
    EXPECT_EQ(info.Right, 359);
    EXPECT_EQ(info.Res, 0.9375);
    EXPECT_EQ(info.NumCols, 383);
    EXPECT_EQ(grid[0][382], 191); // 358.125
    const auto margin = Gridded(lats, {0, 1.5F, 3, 4.25F}, Axis(8, 0, 1), -77);
    EXPECT_EQ(margin.Info.Res, 0.625);
    EXPECT_EQ(margin.Grid[0][7], -77); // 4.375
}

TEST(InterpolateGrid, LongitudesThatReachIntoTheLastDegreeClose) {
    const TSingleArray lats{0, 2};
    const TSingleArray lons = Axis(720, 0, 0.5F); // to 359.5
    const auto [grid, info] = Gridded(lats, lons, Ramp(lats, lons));
    EXPECT_EQ(info.Right, 360);
    EXPECT_EQ(info.NumCols, 1440);
    EXPECT_EQ(grid[0][1438], 719);
    EXPECT_EQ(grid[0][1439], 719 / 2.0F) << "the mean of both sides of the seam";
}

TEST(InterpolateGrid, TheWholeSeamIsOneMeanHoweverWide) {
    const TSingleArray lats{0, 8};
    const TSingleArray lons{0.5F, 100, 200, 300, 351.5F, 359.5F};
    const auto [grid, info] = Gridded(lats, lons, {10, 1, 2, 3, 4, 30, 10, 1, 2, 3, 4, 30});
    EXPECT_EQ(info.Left, 0);
    EXPECT_EQ(info.Right, 360);
    EXPECT_EQ(info.Res, 4);
    EXPECT_EQ(grid[0][0], 20) << "before the first longitude";
    const auto west = Gridded(lats, {0, 100, 200, 300, 352, 359.5F}, {10, 1, 2, 3, 4, 30, 10, 1, 2, 3, 4, 30});
    EXPECT_EQ(west.Info.Res, 3.75);
    EXPECT_EQ(west.Grid[0][0], 10);
}

TEST(InterpolateGrid, DescendingLatitudesGiveTheSameAsAscendingOnes) {
    std::mt19937 random(5);
    const TSingleArray south = {-60.5F, -20, -1, 7.25F, 44};
    const TSingleArray lons = Axis(9, 100, 2.5F);
    TSingleArray data(south.size() * lons.size());
    for (float& number : data)
        number = static_cast<float>(random() % 1000) / 8;
    TSingleArray fromNorth;
    for (std::size_t row = south.size(); row-- > 0;)
        fromNorth.insert(fromNorth.end(), data.begin() + static_cast<std::ptrdiff_t>(row * lons.size()),
                         data.begin() + static_cast<std::ptrdiff_t>((row + 1) * lons.size()));
    const TGridded ascending = Gridded(south, lons, data);
    const TGridded descending = Gridded(SingleArrayReverse(south), lons, fromNorth);
    EXPECT_EQ(ascending.Info, descending.Info);
    EXPECT_EQ(ascending.Grid, descending.Grid);
    EXPECT_EQ(ascending.Info.Top, -61);
}

TEST(InterpolateGrid, PolarRowsBeyondTheLatitudesHaveTheMissingValue) {
    const auto [grid, info] = Gridded({-1.5F, 0, 1.5F}, {0, 3}, {1, 2, 3, 4, 5, 6}, -123.456);
    EXPECT_EQ(info.Res, 0.75);
    EXPECT_EQ(info.Top, -2);
    EXPECT_EQ(info.NumRows, 5);
    EXPECT_EQ(grid[0], TSingleArray(4, -123.456F)) << "narrowed to single";
    EXPECT_EQ(grid[1][0], 1 + 2 * static_cast<float>(0.25 / 1.5));
}

TEST(InterpolateGrid, BetweenAValueAndAFlagTheEdgeIsAFlagOrTheBestGuess) {
    const TSingleArray lats{0, 2};
    const TSingleArray lons{0, 2, 4, 6};
    const TSingleArray data{1, -9990, -9990, 7, 1, -9990, -9990, 7};
    EXPECT_EQ(Gridded(lats, lons, data).Grid[0], (TSingleArray{-9990, -9990, -9990, -9990, -9990, -9990}));
    EXPECT_EQ(Gridded(lats, lons, data, -9999, true).Grid[0], (TSingleArray{1, 1, 1, -9990, -9990, 7}));
}

// Images

TEST(CreateImageFromGrid, HasACompleteHeader) {
    const auto image = CreateImageFromGrid(-10, -5, 20, 15, 10, 3, 2, {{1, -9990, 2.5F}, {-4, 5, 6}});
    const TImageHeader& header = *image->getHeader();
    EXPECT_EQ(header.GetRefUnits(), "deg");
    EXPECT_EQ(header.GetRefSystem(), "latlon");
    EXPECT_TRUE(header.IsGeographic());
    EXPECT_EQ(header.GetValueUnits(), "Unspecified");
    EXPECT_EQ(header.GetFlagDef(), "NODATA");
    EXPECT_EQ(static_cast<int>(header.GetDataType()), 0);
    EXPECT_EQ(static_cast<int>(header.GetFileType()), 1);
    EXPECT_EQ(header.GetWidth(), 3);
    EXPECT_EQ(header.GetHeight(), 2);
    EXPECT_EQ(header.GetUnitDistance(), 1);
    EXPECT_EQ(header.GetResolutionX(), 10);
    EXPECT_EQ(header.GetResolutionY(), 10);
    EXPECT_EQ(header.GetMinValue(), -4);
    EXPECT_EQ(header.GetMaxValue(), 6);
    EXPECT_EQ(header.GetDisplayMin(), -4);
    EXPECT_EQ(header.GetDisplayMax(), 6);
    EXPECT_EQ(header.GetMinX(), -10);
    EXPECT_EQ(header.GetMaxX(), 20);
    EXPECT_EQ(header.GetMinY(), -5);
    EXPECT_EQ(header.GetMaxY(), 15);
    EXPECT_EQ(header.GetFlagValue(), -9990);
    EXPECT_TRUE(header.GetFlag());
    EXPECT_EQ(image->GetFilePath(), "");
    EXPECT_EQ(image->GetClassName(), "TRealImage");
}

TEST(CreateImageFromGrid, TheLastRowOfTheGridIsTheNorthernOneOfTheImage) {
    const auto image = CreateImageFromGrid(0, 0, 3, 2, 1, 3, 2, {{1, -9990, 3}, {4, 5, 6}});
    EXPECT_EQ(image->GetCell(1, 1), 4);
    EXPECT_EQ(image->GetCell(3, 1), 6);
    EXPECT_EQ(image->GetCell(1, 2), 1);
    EXPECT_EQ(image->GetCell(2, 2), -9990);
    EXPECT_EQ(image->GetCell(3, 2), 3);
    EXPECT_EQ(image->GetValue(0.5F, 1.5F), 4);
}

TEST(CreateImageFromGrid, OnlyTheFlagIsLeftOutOfTheRange) {
    const auto image = CreateImageFromGrid(0, 0, 4, 1, 1, 4, 1, {{-9990, -9999, 7, NaN}});
    EXPECT_EQ(image->getHeader()->GetMinValue(), -9999);
    EXPECT_EQ(image->getHeader()->GetMaxValue(), 7);
}

TEST(CreateImageFromGrid, NeedsAValue) {
    constexpr const char* message = "The specified data set does not contain any valid values";
    EXPECT_EQ(MessageOf<Exception>([] { CreateImageFromGrid(0, 0, 2, 1, 1, 2, 1, {{-9990, -9990}}); }), message);
    EXPECT_EQ(MessageOf<Exception>([] { CreateImageFromGrid(0, 0, 2, 1, 1, 2, 1, {{-9990, NaN}}); }), message);
    EXPECT_EQ(MessageOf<Exception>([] { CreateImageFromGrid(0, 0, 0, 0, 1, 0, 0, {}); }), message);
    EXPECT_EQ(MessageOf<Exception>([] {
                  InterpolateAndCreateImageFromGrid(TSingleArray{0, 1}, TSingleArray{0, 1}, TSingleArray(4, -9990),
                                                    -9990, true);
              }),
              message);
    EXPECT_EQ(MessageOf<Exception>([] {
                  CreateFromLinearGrid(TSingleArray{0, 1}, TSingleArray{0, 1}, TSingleArray(4, -9990));
              }),
              message);
}

TEST(CreateImageFromGrid, NeedsAGridOfTheSizeItIsToldOf) {
    const TSingleGrid grid{{1, 2, 3}, {4, 5, 6}};
    for (const auto& [columns, rows] : {std::pair{2, 2}, {3, 1}, {3, 3}, {4, 2}, {-3, 2}, {3, -2}})
        EXPECT_EQ(MessageOf<EArgumentException>([&] { CreateImageFromGrid(0, 0, 1, 1, 1, columns, rows, grid); }),
                  "Grid");
}

TEST(InterpolateAndCreateImageFromGrid, PacksTheInterpolatedGrid) {
    const TSingleArray lats{1.5F, 0, -1.5F};
    const TSingleArray lons{0, 3, 5.5F};
    const TSingleArray data{1, 2, 3, 4, 5, 6, 7, 8, 9};
    const auto [grid, info] = Gridded(lats, lons, data);
    const auto image = InterpolateAndCreateImageFromGrid(lats, lons, data, -9999, false);
    const TImageHeader& header = *image->getHeader();
    EXPECT_EQ(header.GetMinX(), 0);
    EXPECT_EQ(header.GetMaxX(), 6);
    EXPECT_EQ(header.GetMinY(), -2);
    EXPECT_EQ(header.GetMaxY(), 2);
    EXPECT_EQ(header.GetResolutionX(), 0.75F);
    EXPECT_EQ(header.GetMinValue(), -9999) << "the margin counts";
    ASSERT_EQ(header.GetWidth(), info.NumCols);
    ASSERT_EQ(header.GetHeight(), info.NumRows);
    for (std::int32_t row = 0; row < info.NumRows; ++row)
        for (std::int32_t column = 0; column < info.NumCols; ++column)
            EXPECT_EQ(image->GetCell(column + 1, info.NumRows - row),
                      grid[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]);
}

TEST(CreateFromLinearGrid, TakesTheAxesAsEdgesAndTheCountsAsDivisor) {
    const TSingleArray lats{10, 12, 14};
    const TSingleArray lons{0, 2, 4};
    const auto image = CreateFromLinearGrid(lats, lons, Axis(9, 1, 1));
    const TImageHeader& header = *image->getHeader();
    EXPECT_EQ(header.GetMinX(), 0);
    EXPECT_EQ(header.GetMaxX(), 4);
    EXPECT_EQ(header.GetMinY(), 10);
    EXPECT_EQ(header.GetMaxY(), 14);
    EXPECT_EQ(header.GetResolutionX(), static_cast<float>(4.0 / 3));
    EXPECT_EQ(header.GetResolutionY(), static_cast<float>(4.0 / 3));
    EXPECT_EQ(image->GetCell(1, 1), 7);
    EXPECT_EQ(image->GetCell(3, 3), 3);
}

TEST(CreateFromLinearGrid, DescendingLatitudesStayAsTheyAre) {
    const auto image = CreateFromLinearGrid(TSingleArray{14, 12}, TSingleArray{0, 2}, TSingleArray{1, 2, 3, 4});
    EXPECT_EQ(image->getHeader()->GetMinY(), 14);
    EXPECT_EQ(image->getHeader()->GetMaxY(), 12);
    EXPECT_EQ(image->getHeader()->GetResolutionX(), 1);
    EXPECT_EQ(image->GetCell(1, 1), 3);
}

TEST(CreateFromLinearGrid, SpacingsMayDifferByAThousandth) {
    const TSingleArray lons{0, 2};
    const TSingleArray data{1, 2, 3, 4};
    EXPECT_EQ(CreateFromLinearGrid(TSingleArray{0, 2.0019F}, lons, data)->getHeader()->GetResolutionY(), 1);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] {
                  CreateFromLinearGrid(TSingleArray{0, 2.0021F}, lons, data);
              }),
              "X and Y resoloutions do not match");
}

class LinearGridAxes : public testing::TestWithParam<TRefusalRow> {};

TEST_P(LinearGridAxes, AreRefusedWhenTheyMakeNoGrid) {
    const auto& [name, lats, lons, data, message] = GetParam();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { CreateFromLinearGrid(lats, lons, data); }), message);
}

constexpr const char* MatchMessage = "X and Y resoloutions do not match";

INSTANTIATE_TEST_SUITE_P(Rows, LinearGridAxes,
                         testing::Values(TRefusalRow{"SpacingsOneAndTwo", Axis(10, 0, 1), Axis(10, 0, 2),
                                                     TSingleArray(100, 1), MatchMessage},
                                         TRefusalRow{
                                             "SpacingsBeforeLength", Axis(10, 0, 1), Axis(10, 0, 2), {}, MatchMessage},
                                         TRefusalRow{"NaN", {0, NaN}, {0, 1}, {1, 2, 3, 4}, MatchMessage},
                                         TRefusalRow{"OneLatitude", {1}, {1, 2}, {1, 2}, MatchMessage},
                                         TRefusalRow{"OneOfEach", {1}, {1}, {1}, SpacingMessage},
                                         TRefusalRow{"NoExtent", {1, 1}, {2, 2}, {1, 2, 3, 4}, SpacingMessage},
                                         TRefusalRow{"NoLatitudes", {}, {1, 2}, {}, SpacingMessage},
                                         TRefusalRow{"NoLongitudes", {1, 2}, {}, {}, SpacingMessage},
                                         TRefusalRow{"TooShort", {1, 2}, {1, 2}, {1, 2, 3}, LengthMessage},
                                         TRefusalRow{"TooLong", {1, 2}, {1, 2}, {1, 2, 3, 4, 5}, LengthMessage}),
                         [](const auto& row) { return row.param.Name; });

} // namespace
} // namespace lmx
