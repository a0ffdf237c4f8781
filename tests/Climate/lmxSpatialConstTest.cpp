#include <lmx/Climate/lmxSpatialConst.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace lmx::tests {

namespace {

struct TRow {
    const char* Name;
    float Number;
    bool IsFlag;
};

void PrintTo(const TRow& row, std::ostream* stream) {
    *stream << row.Name;
}

const TRow Rows[] = {
    {"Zero", 0, false},
    {"MinusZero", -0.0F, false},
    {"Rain", 12.5F, false},
    {"DeepSea", -10'376, false},
    {"Missing", -9990, true},
    {"MissingElsewhere", -9999, true},
    {"JustAboveMissing", -9989.999F, false},
    {"JustBelowMissing", -9990.001F, false},
    {"JustAboveMissingElsewhere", -9998.999F, false},
    {"ShortMissing", -999, false},
    {"Nan", std::numeric_limits<float>::quiet_NaN(), true},
    {"Infinity", INFINITY, true},
    {"MinusInfinity", -INFINITY, true},
    {"LargestValue", std::nextafter(1e30F, 0.0F), false},
    {"SmallestHugeFlag", 1e30F, true},
    {"NegativeHugeFlag", -1e30F, true},
    {"FlagOfGrids", 1.70141e38F, true},
    {"SmallestFloat", std::numeric_limits<float>::lowest(), true},
    {"Denormal", std::numeric_limits<float>::denorm_min(), false},
};

} // namespace

class SpatialConstNumber : public testing::TestWithParam<TRow> {};

TEST_P(SpatialConstNumber, IsEitherValueOrFlag) {
    EXPECT_EQ(TSpatialConst::IsFlag(GetParam().Number), GetParam().IsFlag);
    EXPECT_EQ(TSpatialConst::IsValue(GetParam().Number), !GetParam().IsFlag);
}

INSTANTIATE_TEST_SUITE_P(Numbers, SpatialConstNumber, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(SpatialConst, CallsItsOwnMarkAFlag) {
    EXPECT_EQ(TSpatialConst::NoData, -9990.0F);
    EXPECT_TRUE(TSpatialConst::IsFlag(TSpatialConst::NoData));
}

} // namespace lmx::tests
