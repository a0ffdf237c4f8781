#include <lmx/Raster/Private/lmxNeighbourBlend.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <tuple>
#include <vector>

namespace lmx {
namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

struct TBlendRow {
    const char* Name;
    float Low;
    float High;
    double Fraction;
    float Blend;
    float BestGuess;
};

class NeighbourBlend : public testing::TestWithParam<TBlendRow> {};

TEST_P(NeighbourBlend, RespectsFlags) {
    const TBlendRow& row = GetParam();
    EXPECT_EQ(BlendNeighbours(row.Low, row.High, row.Fraction, false), row.Blend);
    EXPECT_EQ(BlendNeighbours(row.Low, row.High, row.Fraction, true), row.BestGuess);
}

INSTANTIATE_TEST_SUITE_P(Rows, NeighbourBlend,
                         testing::Values(TBlendRow{"Quarter", 10, 20, 0.25, 12.5F, 12.5F},
                                         TBlendRow{"AtLow", 10, 20, 0, 10, 10}, TBlendRow{"AtHigh", 10, 20, 1, 20, 20},
                                         TBlendRow{"Falling", 20, -20, 0.75, -10, -10},
                                         TBlendRow{"FlagAbove", 10, -9990, 0.25, -9990, 10},
                                         TBlendRow{"FlagBelow", -9990, 20, 0.25, -9990, 20},
                                         TBlendRow{"FlagAboveAtLow", 10, -9990, 0, -9990, 10},
                                         TBlendRow{"FlagBelowAtHigh", -9990, 20, 1, -9990, 20},
                                         TBlendRow{"TwoFlags", -9990, -9990, 0.5, -9990, -9990},
                                         TBlendRow{"MissingValueIsAFlag", 10, -9999, 0.5, -9990, 10},
                                         TBlendRow{"TwoMissingValues", -9999, -9999, 0.5, -9990, -9990},
                                         TBlendRow{"NaN", NaN, 3, 0.5, -9990, 3},
                                         TBlendRow{"Infinity", 3, Infinity, 0, -9990, 3},
                                         TBlendRow{"MinusInfinity", -Infinity, -Infinity, 0, -9990, -9990},
                                         TBlendRow{"HugeFlag", 3, 1e30F, 0.5, -9990, 3},
                                         TBlendRow{"DeepSea", -10376, -10376, 0.5, -10376, -10376}),
                         [](const auto& row) { return row.param.Name; });

TEST(NeighbourBlends, AreComputedInExtendedAndRoundedOnce) {
    EXPECT_EQ(BlendNeighbours(1, 1 + 0x1p-23F, 0.5, false), 1) << "a tie goes to the even one";
    // 1 + 2^-24 + 2^-60 is above the middle of two singles. Double takes it for the middle, extended does not.
    const float high = 1 + 0x1p-12F;
    const double fraction = 0x1p-12 + 0x1p-48;
    EXPECT_EQ(static_cast<float>((static_cast<double>(high) - 1) * fraction + 1), 1);
    EXPECT_EQ(BlendNeighbours(1, high, fraction, false), 1 + 0x1p-23F);
    // 1 + 2^-24 + 2^-76 is above it too, and is the middle to extended as well.
    EXPECT_EQ(BlendNeighbours(1, 1 + 0x1p-23F, 0.5 + 0x1p-53, false), 1);
}

TEST(NeighbourBlends, AWidenedRowHasNaNForEveryFlag) {
    std::vector<float> row{1, -9990, -9999, 1e30F, -Infinity, NaN, -10376, 0.1F, -9991};
    std::vector<double> wide(row.size());
    EXPECT_EQ(WidenRow(row, wide), 10376);
    for (const std::size_t flag : {1, 2, 3, 4, 5}) {
        EXPECT_TRUE(std::isnan(wide[flag])) << flag;
        EXPECT_TRUE(std::isnan(row[flag])) << flag;
    }
    for (const std::size_t value : {0, 6, 7, 8})
        EXPECT_EQ(wide[value], row[value]) << value;
    EXPECT_EQ(wide[7], 0.1F);
}

TEST(NeighbourBlends, TheLargestMagnitudeIsThatOfValues) {
    std::vector<float> flags{-9990, -9999, 1e30F, NaN};
    std::vector<double> wide(37);
    EXPECT_EQ(WidenRow(flags, std::span(wide).first(4)), 0);
    EXPECT_EQ(WidenRow({}, {}), 0);
    std::vector<float> row(wide.size(), 1);
    for (std::size_t i = 0; i < row.size(); ++i) {
        row[i] = -7.5F;
        EXPECT_EQ(WidenRow(row, wide), 7.5F) << i;
        row[i] = -1;
    }
}

// Ways to make neighbours and fractions that meet every road through the blend.

using TRandom = std::mt19937_64;

float Uniform(TRandom& random) {
    return std::uniform_real_distribution<float>(-50, 50)(random);
}
float WholeNumber(TRandom& random) {
    return static_cast<float>(static_cast<int>(random() % 7) - 3);
}
float AnyValue(TRandom& random) {
    for (;;) {
        const auto number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (TSpatialConst::IsValue(number))
            return number;
    }
}
float Subnormal(TRandom& random) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(random()) & 0x800000FFU);
}
float NearOne(TRandom& random) {
    return std::bit_cast<float>(0x3F800000U + static_cast<std::uint32_t>(random() % 16) - 8);
}
float OneOrTiny(TRandom& random) {
    return random() % 2 == 0 ? NearOne(random) : std::ldexp(Uniform(random), -static_cast<int>(random() % 90));
}

double HalfOrOne(TRandom& random) {
    return random() % 2 == 0 ? 0.5 : 1;
}
double FewBits(TRandom& random) {
    return static_cast<double>(random() % 17) / 16;
}
double AnyFraction(TRandom& random) {
    return std::uniform_real_distribution<double>(0, 1)(random);
}
double NearAHalf(TRandom& random) {
    return 0.5 + static_cast<double>(static_cast<int>(random() % 9) - 4) * 0x1p-53;
}
double NearAPowerOfTwo(TRandom& random) {
    return std::ldexp(1 + static_cast<double>(random() % 64) * 0x1p-40, -static_cast<int>(random() % 30) - 1);
}
double TinyFraction(TRandom& random) {
    return std::ldexp(AnyFraction(random) + 1, -static_cast<int>(random() % 298) - 1);
}

struct TFieldRow {
    const char* Name;
    float (*Number)(TRandom&);
};
struct TFractionRow {
    const char* Name;
    double (*Fraction)(TRandom&);
};

class BlendedRows : public testing::TestWithParam<std::tuple<TFieldRow, TFractionRow, bool>> {
protected:
    static constexpr std::size_t Length = 1003;

    float Number(bool withFlags) { return withFlags && FRandom() % 9 == 0 ? NaN : FField.Number(FRandom); }

    std::vector<float> Numbers(bool withFlags) {
        std::vector<float> numbers(Length);
        for (float& number : numbers)
            number = Number(withFlags);
        return numbers;
    }

    const TFieldRow FField = std::get<0>(GetParam());
    const TFractionRow FFraction = std::get<1>(GetParam());
    const bool FBestGuess = std::get<2>(GetParam());
    TRandom FRandom{42};
};

TEST_P(BlendedRows, EqualTheBlendOfEachCellToTheLastBit) {
    for (int round = 0; round < 40; ++round) {
        auto low = Numbers(round % 2 == 1);
        auto high = Numbers(round % 2 == 1);
        std::vector<double> fractions(Length);
        for (double& fraction : fractions)
            fraction = FFraction.Fraction(FRandom);
        std::vector<double> wideLow(Length);
        std::vector<double> wideHigh(Length);
        const float largest = std::max(WidenRow(low, wideLow), WidenRow(high, wideHigh));
        std::vector<float> mixed(Length);
        std::vector<float> even(Length);
        BlendRows(wideLow, wideHigh, fractions, largest, FBestGuess, mixed);
        BlendRows(wideLow, wideHigh, fractions[0], largest, FBestGuess, even);
        for (std::size_t i = 0; i < Length; ++i) {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(mixed[i]),
                      std::bit_cast<std::uint32_t>(BlendNeighbours(low[i], high[i], fractions[i], FBestGuess)))
                << low[i] << ' ' << high[i] << ' ' << fractions[i];
            ASSERT_EQ(std::bit_cast<std::uint32_t>(even[i]),
                      std::bit_cast<std::uint32_t>(BlendNeighbours(low[i], high[i], fractions[0], FBestGuess)))
                << low[i] << ' ' << high[i] << ' ' << fractions[0];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BlendedRows,
    testing::Combine(testing::Values(TFieldRow{"Uniform", Uniform}, TFieldRow{"WholeNumbers", WholeNumber},
                                     TFieldRow{"AnyValues", AnyValue}, TFieldRow{"Subnormals", Subnormal},
                                     TFieldRow{"NearOne", NearOne}, TFieldRow{"OneOrTiny", OneOrTiny}),
                     testing::Values(TFractionRow{"HalfOrOne", HalfOrOne}, TFractionRow{"FewBits", FewBits},
                                     TFractionRow{"AnyFraction", AnyFraction}, TFractionRow{"NearAHalf", NearAHalf},
                                     TFractionRow{"NearAPowerOfTwo", NearAPowerOfTwo},
                                     TFractionRow{"TinyFraction", TinyFraction}),
                     testing::Bool()),
    [](const auto& row) {
        return std::string(std::get<0>(row.param).Name) + std::get<1>(row.param).Name +
               (std::get<2>(row.param) ? "BestGuess" : "Flags");
    });

TEST(NeighbourBlends, RowsMayBeEmpty) {
    BlendRows({}, {}, 0.5, 0, false, {});
    BlendRows({}, {}, std::span<const double>(), 0, true, {});
}

} // namespace
} // namespace lmx
