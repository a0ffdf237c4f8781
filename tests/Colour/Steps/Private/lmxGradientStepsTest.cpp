#include <lmx/Colour/Steps/Private/lmxGradientSteps.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/Colour/StepwiseChecks.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float Denormal = std::numeric_limits<float>::denorm_min();
constexpr TColor32 Default = 0x80ABCDEFU;
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

using TStops = std::vector<TColorStop>;

const TStops Plain = {{0, 0xFF000000U}, {0.3, 0xFFFF2010U}, {0.7, 0x8020FF30U}, {1, 0xFFFFFFFFU}};

std::shared_ptr<IGradientColorCalculator> Calculator(float min, float max, const TStops& stops) {
    return TGradientColorCalculatorFactory::GetObject(min, max, Default, TGradientFactory::GetObject(stops));
}

struct TRangeRow {
    const char* Name;
    float Min;
    float Max;
};

class StepsOverARange : public testing::TestWithParam<TRangeRow> {};

TEST_P(StepsOverARange, AreTheColorsOfTheCalculator) {
    tests::ExpectStepsWithTheCalculatorsColors(*Calculator(GetParam().Min, GetParam().Max, Plain), 50000, 1);
    tests::ExpectStepsWithTheCalculatorsColors(*Calculator(GetParam().Max, GetParam().Min, Plain), 50000, 2);
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, StepsOverARange,
    testing::Values(TRangeRow{"Unit", 0, 1}, TRangeRow{"PlusMinusOne", -1, 1}, TRangeRow{"Celsius", -50, 50},
                    TRangeRow{"Kelvin", 223.15F, 323.15F}, TRangeRow{"Flux", 0, 5e-5F}, TRangeRow{"Bytes", 0, 255},
                    TRangeRow{"Words", 0, 65536}, TRangeRow{"Pressure", 95000, 105000}, TRangeRow{"Negative", -30, -7},
                    TRangeRow{"Denormal", 0, 1e-42F}, TRangeRow{"FewDenormals", -Denormal, 2 * Denormal},
                    TRangeRow{"AllFloats", -Largest, Largest}, TRangeRow{"Upwards", 0, Largest},
                    TRangeRow{"AlmostCollapsed", 1, 1 + 5 * 0x1p-23F}, TRangeRow{"FarFromZero", 1e7F, 1e7F + 100},
                    TRangeRow{"UnequalEnds", -1e-30F, 1e30F}, TRangeRow{"Thirds", 0.1F, 0.3F}),
    [](const auto& row) { return row.param.Name; });

struct TStopsRow {
    const char* Name;
    TStops Stops;
};

class StepsOfStops : public testing::TestWithParam<TStopsRow> {};

TEST_P(StepsOfStops, AreTheColorsOfTheCalculator) {
    for (const auto& [min, max] : {std::pair(-50.0F, 50.0F), std::pair(1.0F, 0.0F), std::pair(-1.0F, 1.0F)})
        tests::ExpectStepsWithTheCalculatorsColors(*Calculator(min, max, GetParam().Stops), 20000, 3);
}

constexpr TColor32 Red = 0xFFFF0000U;
constexpr TColor32 Blue = 0xFF0000FFU;
constexpr TColor32 White = 0xFFFFFFFFU;

INSTANTIATE_TEST_SUITE_P(
    Stops, StepsOfStops,
    testing::Values(TStopsRow{"None", {}}, TStopsRow{"One", {{0.5, Red}}}, TStopsRow{"OneOutside", {{7, Red}}},
                    TStopsRow{"OnlyNoNumber", {{NaN, Red}}}, TStopsRow{"Inside", {{0.25, Red}, {0.75, Blue}}},
                    TStopsRow{"Outside", {{-2, Red}, {-1, Blue}}}, TStopsRow{"Beyond", {{-0.5, Red}, {1.5, Blue}}},
                    TStopsRow{"Above", {{1.5, Red}, {2.5, Blue}}},
                    TStopsRow{"Unsorted", {{1, Red}, {0, Blue}, {0.4, White}}},
                    TStopsRow{"HardEdge", {{0, Red}, {0.5, White}, {0.5, Blue}, {1, Red}}},
                    TStopsRow{"HardEdgeAtTheStart", {{0, Red}, {0, White}, {1, Blue}}},
                    TStopsRow{"HardEdgeAtTheEnd", {{0, Red}, {1, White}, {1, Blue}}},
                    TStopsRow{"ThreeAtOnePlace", {{0.3, Red}, {0.3, White}, {0.3, Blue}}},
                    TStopsRow{"EdgeBetweenFloats", {{0, Red}, {0.1, White}, {0.1, Blue}, {1, Red}}},
                    TStopsRow{"CloserThanFloats", {{0, Red}, {0.5, White}, {0.5 + 1e-12, Blue}, {1, Red}}},
                    TStopsRow{"CloserThanQuotients", {{0, Red}, {5e-324, White}, {1, Blue}}},
                    TStopsRow{"FartherThanDistances", {{-1.7e308, Red}, {1.7e308, Blue}}},
                    TStopsRow{"Infinite", {{-HUGE_VAL, Red}, {0.2, White}, {HUGE_VAL, Blue}}},
                    TStopsRow{"Default", {{0, Default}, {0.5, Red}, {1, Default}}},
                    TStopsRow{"OneColor", {{0, Red}, {1, Red}}}, TStopsRow{"AlphaOnly", {{0, 0x00FF0000U}, {1, Red}}}),
    [](const auto& row) { return row.param.Name; });

TEST(GradientSteps, EqualTheCalculatorForRandomGradientsAndRanges) {
    tests::TRandom random(8);
    const auto anyFloat = [&] { return static_cast<float>(std::ldexp(random.Unit() - 0.5, random.Below(200) - 100)); };
    for (int round = 0; round < 60; ++round) {
        TStops stops;
        for (int i = random.Below(8); i > 0; --i)
            stops.push_back({random.Below(5) > 0 ? random.Unit() : random.Below(11) / 10.0, random.Bits()});
        const float min = anyFloat();
        const float max = random.Below(2) > 0 ? anyFloat() : min * (1 + static_cast<float>(random.Unit()));
        tests::ExpectStepsWithTheCalculatorsColors(*Calculator(min, max, stops), 10000, random.Bits());
    }
}

TEST(GradientSteps, ManyStopsAreToldInPieces) {
    tests::TRandom random(9);
    for (const int count : {256, 257, 1000, 20000}) {
        TStops stops = {{NaN, Red}, {HUGE_VAL, Blue}, {-HUGE_VAL, White}};
        for (int i = 0; i < count; ++i)
            stops.push_back({random.Below(9) > 0 ? 1.2 * random.Unit() - 0.1 : random.Below(11) / 10.0, random.Bits()});
        for (const auto& [min, max] : {std::pair(-50.0F, 50.0F), std::pair(1.0F, -0.3F), std::pair(7.0F, 7.0F)}) {
            const auto calculator = Calculator(min, max, stops);
            EXPECT_EQ(dynamic_cast<const TStepwiseColorCalculator&>(*calculator).GetColorSteps(), nullptr);
            const auto values = tests::TellingValues(*calculator, nullptr, 20000, random.Bits());
            tests::ExpectTheCalculatorsColors(*calculator, values);
            tests::ExpectPiecesWithTheCalculatorsColors(*calculator, values);
        }
    }
}

TEST(GradientSteps, AreNeverMoreThanTheLimit) {
    for (const int count : {0, 1, 2, 7, 256}) {
        TStops stops;
        for (int i = 0; i < count; ++i)
            stops.push_back({0.1 + 0.8 * i / std::max(count - 1, 1), i % 2 ? White : 0xFF000000U});
        const auto calculator = Calculator(0, 1, stops);
        const auto& stepwise = dynamic_cast<const TStepwiseColorCalculator&>(*calculator);
        ASSERT_NE(stepwise.GetColorSteps(), nullptr) << count;
        EXPECT_LE(stepwise.GetColorSteps()->GetCount(), stepwise.GetStepLimit()) << count;
        EXPECT_LE(stepwise.GetStepLimit(), TStepwiseColorCalculator::MostGradientSteps) << count;
    }
}

TEST(GradientSteps, ACollapsedRangeIsOneStep) {
    const auto calculator = Calculator(5, 5, Plain);
    const auto steps = dynamic_cast<const TStepwiseColorCalculator&>(*calculator).GetColorSteps();
    ASSERT_NE(steps, nullptr);
    EXPECT_EQ(steps->GetColors(), std::vector<TColor32>{0xFFFFFFFFU});
    tests::ExpectStepsWithTheCalculatorsColors(*calculator, 1000, 4);
}

TEST(GradientSteps, BoundsThatAreNoFiniteNumbersAreAskedCellByCell) {
    const float nan = std::nanf("");
    for (const auto& [min, max] : {std::pair(nan, 1.0F), std::pair(0.0F, nan), std::pair(0.0F, Inf),
                                   std::pair(-Inf, 0.0F), std::pair(-Inf, Inf)}) {
        const auto calculator = Calculator(min, max, Plain);
        EXPECT_FALSE(dynamic_cast<const TStepwiseColorCalculator&>(*calculator).GetColorSteps());
        EXPECT_FALSE(dynamic_cast<const TStepwiseColorCalculator&>(*calculator).GetColorPieces());
        tests::ExpectTheCalculatorsColors(*calculator, tests::TellingValues(*calculator, nullptr, 1000, 5));
    }
}

TEST(GradientSteps, AHostsGradientIsAskedCellByCell) {
    struct THostGradient : IGradient {
        TColorStops Stops{Plain};
        mutable int Asked = 0;
        TColorStops& GetColorStops() override { return Stops; }
        const TColorStops& GetColorStops() const override { return Stops; }
        TColor32 GetColor(double position) const override {
            ++Asked;
            return position < 0.5 ? 0xFF000001U : 0xFF000002U;
        }
        QString ToString() const override { return {}; }
        void FromString(const QString&) override {}
    };
    const auto gradient = std::make_shared<THostGradient>();
    const auto calculator = TGradientColorCalculatorFactory::GetObject(0.0F, 10.0F, Default, gradient);
    const tests::TTestCookieData cookie(4, 1);
    const tests::TTestMapData data(4, 1, {0, 4, 6, 11});
    const auto picture = TBitmap32RasterRenderer().Render(&cookie, &data, 1, calculator.get());
    EXPECT_EQ(std::vector<TColor32>(picture->ScanLine(0), picture->ScanLine(0) + 4),
              (std::vector<TColor32>{0xFF000001U, 0xFF000001U, 0xFF000002U, Default}));
    EXPECT_EQ(gradient->Asked, 3);
}

TEST(GradientSteps, ARenderSeesTheStopsAsTheyAreNow) {
    const auto calculator = Calculator(0, 1, Plain);
    tests::ExpectStepsWithTheCalculatorsColors(*calculator, 1000, 6);
    calculator->GetGradient()->GetColorStops() = {{0, Red}, {1, Blue}};
    tests::ExpectStepsWithTheCalculatorsColors(*calculator, 1000, 6);
}

} // namespace
} // namespace lmx
