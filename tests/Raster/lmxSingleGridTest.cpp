#include <lmx/Raster/lmxSingleGrid.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

TEST(SingleGrid, AFlatArrayBecomesRows) {
    EXPECT_EQ(SingleArray1DTo2D(TSingleArray{1, 2, 3, 4, 5, 6}, 3, 2), (TSingleGrid{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(SingleArray1DTo2D(TSingleArray{1, 2, 3, 4, 5, 6}, 2, 3), (TSingleGrid{{1, 2}, {3, 4}, {5, 6}}));
    EXPECT_EQ(SingleArray1DTo2D({}, 0, 2), (TSingleGrid{{}, {}}));
}

TEST(SingleGrid, AFlatArrayOfAnotherLengthIsRefused) {
    EXPECT_EQ(tests::MessageOf<EArgumentException>([] { SingleArray1DTo2D(TSingleArray{1, 2, 3}, 2, 2); }), "Data");
}

TEST(SingleGrid, ReversesNumbersAndRows) {
    EXPECT_EQ(SingleArrayReverse({1, 2, 3}), (TSingleArray{3, 2, 1}));
    EXPECT_EQ(SingleArrayArrayReverse({{1, 2}, {3, 4}, {5, 6}}), (TSingleGrid{{5, 6}, {3, 4}, {1, 2}}));
}

TEST(SingleGrid, HasTheShapeThatAllItsRowsHave) {
    EXPECT_TRUE(HasShape({{1, 2}, {3, 4}, {5, 6}}, 2, 3));
    EXPECT_FALSE(HasShape({{1, 2}, {3, 4}, {5, 6}}, 3, 2));
    EXPECT_FALSE(HasShape({{1, 2}, {3}, {5, 6}}, 2, 3));
    EXPECT_TRUE(HasShape({}, 5, 0));
}

struct TRangeRow {
    const char* Name;
    TSingleGrid Grid;
    bool HasValues;
    float Min;
    float Max;
};

class SingleGridRange : public testing::TestWithParam<TRangeRow> {};

TEST_P(SingleGridRange, LeavesTheFlagOut) {
    float min = 111;
    float max = 222;
    EXPECT_EQ(SingleArrayArrayGetMinMax(GetParam().Grid, -9990, min, max), GetParam().HasValues);
    EXPECT_EQ(min, GetParam().HasValues ? GetParam().Min : 111);
    EXPECT_EQ(max, GetParam().HasValues ? GetParam().Max : 222);
}

/// Three rows of 37 numbers -1, so that whole lanes and a rest are met, with one of them replaced.
TSingleGrid WideGrid(std::size_t column, float number) {
    TSingleGrid grid(3, TSingleArray(37, -1));
    grid[1][column] = number;
    return grid;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SingleGridRange,
    testing::Values(
        TRangeRow{"Values", {{3, -2}, {7, 1}}, true, -2, 7},
        TRangeRow{"FlagBetween", {{3, -9990}, {-9990, 1}}, true, 1, 3}, TRangeRow{"OneValue", {{-9990, 4}}, true, 4, 4},
        TRangeRow{"OnlyFlags", {{-9990, -9990}}, false, 0, 0}, TRangeRow{"Empty", {}, false, 0, 0},
        TRangeRow{"EmptyRows", {{}, {}}, false, 0, 0}, TRangeRow{"MissingValueCounts", {{-9999, 5}}, true, -9999, 5},
        TRangeRow{"NaNDoesNotCount", {{NaN, 5, 6}}, true, 5, 6}, TRangeRow{"OnlyNaN", {{NaN, -9990}}, false, 0, 0},
        TRangeRow{"InfinitiesCount", {{-Infinity, 5, Infinity}}, true, -Infinity, Infinity},
        TRangeRow{"OneInfinity", {{Infinity}}, true, Infinity, Infinity},
        TRangeRow{"HighInTheFirstLane", WideGrid(16, 8), true, -1, 8},
        TRangeRow{"LowInTheLastLane", WideGrid(31, -8), true, -8, -1},
        TRangeRow{"HighInTheRest", WideGrid(36, 8), true, -1, 8},
        TRangeRow{"FlagInALane", WideGrid(20, -9990), true, -1, -1},
        TRangeRow{"NaNInALane", WideGrid(20, NaN), true, -1, -1}),
    [](const auto& row) { return row.param.Name; });

} // namespace
} // namespace lmx
