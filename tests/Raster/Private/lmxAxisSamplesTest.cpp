#include <lmx/Raster/Private/lmxAxisSamples.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <random>

namespace lmx {

void PrintTo(const TAxisSample& sample, std::ostream* stream) {
    if (sample.Valid)
        *stream << sample.LowIndex << " to " << sample.HighIndex << " at " << sample.Fraction;
    else
        *stream << "none";
}

namespace {

constexpr TAxisSample NoSample;
constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

struct TSampleRow {
    const char* Name;
    std::vector<float> Axis;
    bool Wraps;
    double Position;
    TAxisSample Sample;
};

class AxisSample : public testing::TestWithParam<TSampleRow> {};

TEST_P(AxisSample, TellsTheNeighboursOfAPosition) {
    EXPECT_EQ(SampleAxis(GetParam().Axis, GetParam().Wraps, GetParam().Position), GetParam().Sample);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AxisSample,
    testing::Values(TSampleRow{"Between", {10, 20, 40}, false, 25, {1, 2, 0.25, true}},
                    TSampleRow{"OnAnInnerValueEndsTheBracketToItsLeft", {10, 20, 40}, false, 20, {0, 1, 1, true}},
                    TSampleRow{"OnTheFirstValue", {10, 20, 40}, false, 10, {0, 1, 0, true}},
                    TSampleRow{"OnTheLastValue", {10, 20, 40}, false, 40, {1, 2, 1, true}},
                    TSampleRow{"BelowTheFirst", {10, 20, 40}, false, 9.999, NoSample},
                    TSampleRow{"AboveTheLast", {10, 20, 40}, false, 40.001, NoSample},
                    TSampleRow{"AboveTheLastOfAClosedAxis", {10, 20, 40}, true, 40.001, {2, 0, 0.5, true}},
                    TSampleRow{"FarAboveTheLastOfAClosedAxis", {10, 20, 40}, true, 1000, {2, 0, 0.5, true}},
                    TSampleRow{"BelowTheFirstOfAClosedAxis", {10, 20, 40}, true, -3, {2, 0, 0.5, true}},
                    TSampleRow{"InsideAClosedAxis", {10, 20, 40}, true, 15, {0, 1, 0.5, true}},
                    TSampleRow{"NoNumber", {10, 20, 40}, false, NaN, NoSample},
                    TSampleRow{"NoValue", {}, true, 0, NoSample}, TSampleRow{"OneValue", {10}, false, 10, NoSample},
                    TSampleRow{"OneValueOfAClosedAxis", {10}, true, 11, NoSample},
                    TSampleRow{"ValueTwiceFurtherOn", {10, 20, 20, 40}, false, 20, {0, 1, 1, true}},
                    TSampleRow{"AfterAValueTwice", {10, 20, 20, 40}, false, 30, {2, 3, 0.5, true}},
                    TSampleRow{"OutOfOrder", {0, 30, 10, 40}, false, 20, {0, 1, 20.0 / 30, true}},
                    TSampleRow{"OutOfOrderInALaterBracket", {0, 5, 2, 40}, false, 21, {2, 3, 0.5, true}},
                    TSampleRow{"NoNumberOnTheAxis", {0, NaN, 40}, false, 20, NoSample},
                    TSampleRow{"EndlessAxis", {0, Infinity}, false, 20, {0, 1, 0, true}}),
    [](const auto& row) { return row.param.Name; });

TEST(AxisSamples, ABracketWithoutAWidthIsNoSample) {
    EXPECT_EQ(tests::MessageOf<EInvalidOp>([] {
                  SampleAxis(std::vector<float>{10, 10, 20}, false, 10);
              }),
              "Invalid floating point operation");
    EXPECT_EQ(tests::MessageOf<EInvalidOp>([] {
                  SampleAxis(std::vector<float>{-Infinity, 20}, false, 10);
              }),
              "Invalid floating point operation");
}

TEST(AxisSamples, TheFractionIsComputedInExtendedAndRoundedToDouble) {
    const std::vector<float> axis{0.1F, 0.4F};
    const extended low = axis[0];
    const extended width = axis[1] - low;
    const double fraction = SampleAxis(axis, false, 0.2).Fraction;
    EXPECT_EQ(fraction, static_cast<double>((0.2 - low) / width));
    EXPECT_NEAR(fraction, 1.0 / 3, 1e-7);
    EXPECT_NE(fraction, static_cast<double>(static_cast<float>(fraction)));
    const std::vector<float> wide{-1000.1F, 1000.3F};
    int differing = 0;
    for (int i = 1; i <= 100; ++i) {
        const double position = i / 97e4;
        const double wideFraction = SampleAxis(wide, false, position).Fraction;
        ASSERT_EQ(wideFraction,
                  static_cast<double>((static_cast<extended>(position) - wide[0]) / (extended{wide[1]} - wide[0])));
        differing += wideFraction != (position - wide[0]) / (double{wide[1]} - wide[0]);
    }
    EXPECT_GT(differing, 0) << "doubles would do as well, so this tests nothing";
}

TEST(AxisSamples, ATableHoldsThePositionsOfAnEvenGrid) {
    const std::vector<float> axis{10, 20, 40};
    EXPECT_EQ(
        SampleTable(axis, false, 5, 5, 10),
        (std::vector<TAxisSample>{NoSample, {0, 1, 0.5, true}, {1, 2, 0.25, true}, {1, 2, 0.75, true}, NoSample}));
    EXPECT_EQ(SampleTable(axis, false, 0, 5, 10), std::vector<TAxisSample>());
    EXPECT_EQ(SampleTable({}, true, 2, 5, 10), (std::vector<TAxisSample>{NoSample, NoSample}));
}

TEST(AxisSamples, PositionsAreNotRoundedToSingle) {
    // 12345 * 0.1F is 1234.5000183955133; the nearest single is 1234.5.
    const std::vector<float> axis{1234, 1235};
    const TAxisSample sample = SampleTable(axis, false, 12346, 0, 0.1F)[12345];
    EXPECT_EQ(sample.Fraction, 12345 * static_cast<double>(0.1F) - 1234);
    EXPECT_GT(sample.Fraction, 0.5);
}

TEST(AxisSamples, PositionsAreComputedInExtended) {
    // 1 + 2^-53 + 2^-76 is above the middle of two doubles; without its last bit it is that middle, which goes to 1.
    const std::vector<float> axis{0, 1, 2};
    EXPECT_EQ(SampleTable(axis, false, 2, 1, 0x1.000002p-53F)[1], (TAxisSample{0, 1, 1, true}));
}

class AxisTables : public testing::TestWithParam<bool> {};

TEST_P(AxisTables, EqualTheSamplesOfTheirPositions) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> value(-90, 90);
    int valid = 0;
    for (int round = 0; round < 200; ++round) {
        std::vector<float> axis(random() % 40);
        for (float& position : axis)
            position = random() % 3 == 0 ? static_cast<float>(static_cast<int>(value(random))) : value(random);
        if (random() % 4 != 0)
            std::sort(axis.begin(), axis.end());
        if (random() % 8 == 0 && !axis.empty())
            axis[random() % axis.size()] = NaN;
        if (axis.size() > 1 && axis[0] == axis[1])
            continue; // no width
        const float step = round % 8 == 0 ? -0.5F : 0.5F;
        const auto table = SampleTable(axis, GetParam(), 400, -200 * step, step);
        ASSERT_EQ(table.size(), 400U);
        for (int i = 0; i < 400; ++i) {
            ASSERT_EQ(table[static_cast<std::size_t>(i)], SampleAxis(axis, GetParam(), (i - 200) * double{step})) << i;
            valid += table[static_cast<std::size_t>(i)].Valid ? 1 : 0;
        }
    }
    EXPECT_GT(valid, 10000);
}

INSTANTIATE_TEST_SUITE_P(Wraps, AxisTables, testing::Bool());

} // namespace
} // namespace lmx
