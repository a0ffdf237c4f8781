#include <lmx/Colour/Steps/Private/lmxFloatSearch.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float Denormal = std::numeric_limits<float>::denorm_min();
const std::vector<float> Interesting = {-Inf, -Largest, -1.5F, -1, -Denormal, 0, Denormal, 1, 1.5F, Largest, Inf};

TEST(FloatSearch, PlacesAreInTheOrderOfTheNumbers) {
    for (float value : Interesting) {
        EXPECT_EQ(PlaceToFloat(FloatToPlace(value)), value);
        if (value < Inf) {
            EXPECT_EQ(PlaceToFloat(FloatToPlace(value) + 1), std::nextafter(value, Inf));
        }
    }
    EXPECT_EQ(FloatToPlace(-0.0F), FloatToPlace(0.0F));
    EXPECT_FALSE(std::signbit(PlaceToFloat(0)));
}

TEST(FloatSearch, FindsTheFirstNumberFromAnyGuess) {
    for (float first : Interesting)
        for (float guess : Interesting)
            EXPECT_EQ(FirstFloat([first](float value) { return value >= first; }, guess), first) << guess;
}

TEST(FloatSearch, FindsANumberBetweenFloats) {
    EXPECT_EQ(FirstFloat([](float value) { return value > 1.0; }, 1), std::nextafter(1.0F, 2.0F));
    EXPECT_EQ(FirstFloat([](float value) { return value >= 0.1; }, 0.1F), 0.1F); // the single lies above
    EXPECT_EQ(FirstFloat([](float value) { return value >= 1e-40; }, -Largest),
              std::nextafter(1e-40F, 1.0F)); // the single lies below
}

TEST(FloatSearch, GivesNoNumberIfTheConditionNeverHolds) {
    for (float guess : Interesting)
        EXPECT_TRUE(std::isnan(FirstFloat([](float) { return false; }, guess)));
}

TEST(FloatSearch, GivesMinusInfinityIfTheConditionAlwaysHolds) {
    for (float guess : Interesting)
        EXPECT_EQ(FirstFloat([](float) { return true; }, guess), -Inf);
}

TEST(FloatSearch, IsTheSameNearANumberThatIsKnown) {
    for (float first : Interesting)
        for (const double doubt : {0.0, 1e-50, 0.5, 1e300, HUGE_VAL})
            for (const double aside : {-1.0, -0.25, 0.0, 0.25, 1.0}) {
                const double number = std::isinf(doubt) || std::isinf(first) ? first : first + aside * doubt;
                EXPECT_EQ(FirstFloatNear([first](float value) { return value >= first; }, number, doubt), first)
                    << number << " -+ " << doubt;
            }
}

TEST(FloatSearch, AsksNearTheNumberOnly) {
    const auto holds = [](float value) {
        EXPECT_LE(std::abs(value - 5.0), 1e-6);
        return value >= 5;
    };
    EXPECT_EQ(FirstFloatNear(holds, 5 + 1e-7, 1e-6), 5);
    EXPECT_EQ(FirstFloatNear(holds, 5.1, 1e-9), std::nextafter(5.1F, 6.0F)); // the single lies below
}

TEST(FloatSearch, ANearGuessTakesFewEvaluationsAndTheFarthestAtMost66) {
    int count = 0;
    const auto countingFrom = [&count](float first) {
        return [&count, first](float value) {
            ++count;
            return value >= first;
        };
    };
    FirstFloat(countingFrom(1), std::nextafter(1.0F, 2.0F));
    EXPECT_LE(count, 4);
    count = 0;
    FirstFloat(countingFrom(-Largest), Inf);
    EXPECT_LE(count, 66);
}

} // namespace
} // namespace lmx
