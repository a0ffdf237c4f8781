#include <lmx/Formats/Idrisi/Private/lmxCellFlag.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx::tests {

namespace {

constexpr float Nan = std::numeric_limits<float>::quiet_NaN();

TImageHeader Declaring(float flag) {
    TImageHeader header;
    header.SetFlag(true);
    header.SetFlagValue(flag);
    return header;
}

template<class Cell>
bool Matches(float flag, Cell cell) {
    return TCellFlag<Cell>(Declaring(flag)).Matches(cell);
}

struct TRealRow {
    const char* Name;
    float Flag;
    float Cell;
    bool IsMatch;
};

void PrintTo(const TRealRow& row, std::ostream* stream) {
    *stream << row.Name;
}

const TRealRow RealRows[] = {
    {"Same", -9999, -9999, true},
    {"AnIntegerMatchesExactly", -9999, -9998.999F, false},
    {"SevenDigitsOfAFraction", 0.1234567F, 0.12345673F, true},
    {"TheSeventhDigitDiffers", 0.1234567F, 0.1234568F, false},
    {"SevenDigitsOfTheLargest", 3.402823e38F, std::numeric_limits<float>::max(), true},
    {"SevenDigitsOfTheLowest", -3.402823e38F, std::numeric_limits<float>::lowest(), true},
    {"SevenDigitsOfALargeInteger", 1.234568e8F, 123456789.0F, true},
    {"OtherSign", 5, -5, false},
    {"Zero", 0, -0.0F, true},
    {"Denormal", 0, std::numeric_limits<float>::denorm_min(), false},
    {"NanMatchesNan", Nan, Nan, true},
    {"NanMatchesNoNumber", Nan, 0, false},
    {"ANumberDoesNotMatchNan", 0, Nan, false},
    {"Infinity", INFINITY, INFINITY, true},
    {"InfinityMatchesNoNumber", INFINITY, std::numeric_limits<float>::max(), false},
};

} // namespace

class RealCellFlag : public testing::TestWithParam<TRealRow> {};

TEST_P(RealCellFlag, MatchesToSevenDigits) {
    EXPECT_EQ(Matches(GetParam().Flag, GetParam().Cell), GetParam().IsMatch);
}

INSTANTIATE_TEST_SUITE_P(Cells, RealCellFlag, testing::ValuesIn(RealRows),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(CellFlag, OfIntegersMatchesExactly) {
    EXPECT_TRUE(Matches<std::int16_t>(-9999, -9999));
    EXPECT_FALSE(Matches<std::int16_t>(-9999, -9998));
    EXPECT_TRUE(Matches<std::int16_t>(-32768, -32768));
    EXPECT_TRUE(Matches<std::uint8_t>(255, 255));
    EXPECT_TRUE(Matches<std::uint8_t>(0, 0));
}

TEST(CellFlag, ThatCellsCannotHoldMatchesNone) {
    for (const float flag : {-9999.0F, 256.0F, -1.0F, 7.5F, 255.4F, Nan, INFINITY, 1e35F}) {
        const TCellFlag<std::uint8_t> cellFlag(Declaring(flag));
        EXPECT_FALSE(cellFlag.IsDeclared()) << flag;
        for (int cell = 0; cell < 256; ++cell)
            EXPECT_FALSE(cellFlag.Matches(static_cast<std::uint8_t>(cell))) << flag;
    }
}

TEST(CellFlag, ThatIsNotDeclaredMatchesNone) {
    TImageHeader header = Declaring(5);
    header.SetFlag(false);
    EXPECT_FALSE(TCellFlag<float>(header).Matches(5));
    EXPECT_FALSE(TCellFlag<float>(header).Matches(std::numeric_limits<float>::max()));
    EXPECT_FALSE(TCellFlag<float>(header).Matches(Nan));
    EXPECT_FALSE(TCellFlag<std::int16_t>(header).Matches(5));
    EXPECT_EQ(TCellFlag<std::int16_t>(header).ToNumber(5), 5);
}

TEST(CellFlag, BecomesTheLibrarysMark) {
    const TCellFlag<std::uint8_t> flag(Declaring(255));
    EXPECT_EQ(flag.ToNumber(255), TSpatialConst::NoData);
    EXPECT_EQ(flag.ToNumber(254), 254);
    EXPECT_EQ(flag.GetFlag(), 255);
}

} // namespace lmx::tests
