// What stands on TGaussianToGridInterpolation: the grid of a whole area, and images of grids.

#include <lmx/Raster/lmxGaussianToGridInterpolation.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Raster/Axes.h>
#include <tests/Support/MemoryLimit.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <utility>

namespace lmx {
namespace {

using tests::Axis;
using tests::MessageOf;

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

/// 0, 1, 2, ... for every pair of latitude and longitude.
TSingleArray Ramp(const TSingleArray& lats, const TSingleArray& lons) {
    return Axis(static_cast<int>(lats.size() * lons.size()), 0, 1);
}

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
    const TRefusalRow& row = GetParam();
    EXPECT_EQ(MessageOf<EArgumentException>([&] { InterpolateGrid(row.Lats, row.Lons, row.Data, -9999, false, info); }),
              row.Message);
    EXPECT_EQ(MessageOf<EArgumentException>(
                  [&] { InterpolateAndCreateImageFromGrid(row.Lats, row.Lons, row.Data, -9999, false); }),
              row.Message);
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
    const TRefusalRow& row = GetParam();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { InterpolateGrid(row.Lats, row.Lons, row.Data, -9999, false, info); }),
              row.Message);
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
    const float west = -146.8F;
    const float east = -37.2F;
    EXPECT_EQ(Gridded({-60, 60}, {west, east}, {1, 2, 3, 4}).Info.Res, (double{east} - west) / 2)
        << "54.800001, of a difference of doubles; singles give 54.800003";
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
    for (const auto& size : {std::pair{2, 2}, {3, 1}, {3, 3}, {4, 2}, {-3, 2}, {3, -2}})
        EXPECT_EQ(
            MessageOf<EArgumentException>([&] { CreateImageFromGrid(0, 0, 1, 1, 1, size.first, size.second, grid); }),
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

TEST(CreateFromLinearGrid, ComputesItsSpacingInExtended) {
    const TSingleArray axis{23.2F, 80, 136.2F};
    EXPECT_EQ(CreateFromLinearGrid(axis, axis, Axis(9, 1, 1))->getHeader()->GetResolutionX(), 37.6666641F)
        << "the difference of singles gives 37.6666679";
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
    const TRefusalRow& row = GetParam();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { CreateFromLinearGrid(row.Lats, row.Lons, row.Data); }), row.Message);
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

TEST(InterpolateAndCreateImageFromGrid, NeedsTheMemoryOfGridAndImageFirst) {
    const TSingleArray axis{0, 0.01F, 60};
    const tests::TMemoryLimit limit(900'000'000); // enough for the grid of 12,000 by 12,000, and not for both
    EXPECT_EQ(
        MessageOf<EOutOfMemory>([&] { InterpolateAndCreateImageFromGrid(axis, axis, Ramp(axis, axis), -9999, false); }),
        "Out of memory");
}

} // namespace
} // namespace lmx
