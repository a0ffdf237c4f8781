#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Colour/StepwiseChecks.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;
using TPart = std::shared_ptr<IGradientColorCalculator>;
using TParts = std::vector<TPart>;

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();

/// A part from `first` to `last`, with a default colour that no picture must show.
TPart Part(float min, float max, TColor32 first = 0xFF000000U, TColor32 last = 0xFFFFFFFFU) {
    return TGradientColorCalculatorFactory::GetObject(
        min, max, 0x12345678U, TGradientFactory::GetObject(std::vector<TColorStop>{{0, first}, {1, last}}));
}

std::shared_ptr<IMultipartGradientColorCalculator> Multipart(float min, float max, const TParts& parts) {
    return TMultipartGradientColorCalculatorFactory::GetObject(min, max, parts);
}

std::shared_ptr<IMultipartGradientColorCalculator>
AsMultipart(const std::shared_ptr<IBaseColorCalculator>& calculator) {
    return std::dynamic_pointer_cast<IMultipartGradientColorCalculator>(calculator);
}

std::shared_ptr<const TColorSteps> StepsOf(const IBaseColorCalculator& calculator) {
    return dynamic_cast<const TStepwiseColorCalculator&>(calculator).GetColorSteps();
}

TEST(MultipartGradient, BeginsWithoutParts) {
    const auto empty = TMultipartGradientColorCalculatorFactory::GetObject();
    EXPECT_EQ(empty->GetMinVal(), 0);
    EXPECT_EQ(empty->GetMaxVal(), 0);
    EXPECT_TRUE(empty->GetGradients().empty());
    EXPECT_EQ(empty->GetColor(0), 0U);
    EXPECT_EQ(empty->GetGradient(0), nullptr);
    const auto ranged = TMultipartGradientColorCalculatorFactory::GetObject(-1, 5);
    EXPECT_EQ(ranged->GetMinVal(), -1);
    EXPECT_EQ(ranged->GetMaxVal(), 5);
    EXPECT_TRUE(ranged->GetGradients().empty());
}

TEST(MultipartGradient, TheEarlierPartHasASharedBound) {
    const auto calculator = Multipart(0, 20, {Part(0, 10, 1, 2), Part(10, 20, 3, 4)});
    EXPECT_EQ(calculator->GetGradient(10), calculator->GetGradients()[0]);
    EXPECT_EQ(calculator->GetColor(10), 2U);
    EXPECT_EQ(calculator->GetColor(std::nextafter(10.0F, 11.0F)), 3U);
    EXPECT_EQ(calculator->GetColor(0), 1U);
    EXPECT_EQ(calculator->GetColor(20), 4U);
}

TEST(MultipartGradient, AGapIsTransparent) {
    const auto calculator = Multipart(0, 30, {Part(0, 10), Part(20, 30)});
    EXPECT_EQ(calculator->GetGradient(15), nullptr);
    EXPECT_EQ(calculator->GetColor(15), 0U);
}

TEST(MultipartGradient, TheOverallRangeCutsThePartsOff) {
    const auto calculator = Multipart(2, 8, {Part(0, 10, 5, 5)});
    EXPECT_EQ(calculator->GetColor(std::nextafter(2.0F, 0.0F)), 0U);
    EXPECT_EQ(calculator->GetColor(2), 5U);
    EXPECT_EQ(calculator->GetColor(8), 5U);
    EXPECT_EQ(calculator->GetColor(std::nextafter(8.0F, 9.0F)), 0U);
    EXPECT_NE(calculator->GetGradient(9), nullptr); // the parts know nothing of it
}

TEST(MultipartGradient, AWiderRangeLeavesMargins) {
    const auto calculator = Multipart(-100, 100, {Part(0, 10, 5, 5)});
    EXPECT_EQ(calculator->GetColor(-1), 0U);
    EXPECT_EQ(calculator->GetColor(11), 0U);
}

TEST(MultipartGradient, BoundsFollowTheComparisons) {
    EXPECT_EQ(Multipart(NaN, NaN, {Part(0, 10, 5, 5)})->GetColor(3), 5U);
    EXPECT_EQ(Multipart(0, 10, {Part(NaN, 10, 5, 5), Part(0, 10, 6, 6)})->GetColor(3), 6U);
    EXPECT_EQ(Multipart(0, 10, {Part(10, 0, 5, 5)})->GetColor(3), 0U); // turned over
    EXPECT_EQ(Multipart(10, 0, {Part(0, 10, 5, 5)})->GetColor(3), 0U);
    EXPECT_EQ(Multipart(NaN, NaN, {Part(0, 10, 5, 5)})->GetColor(NaN), 0U);
    EXPECT_EQ(Multipart(0, 10, {Part(3, 3, 5, 6)})->GetColor(3), 6U); // collapsed: the last colour
}

TEST(MultipartGradient, PassesOverPartsThatAreNil) {
    const auto calculator = Multipart(0, 10, {nullptr, Part(0, 10, 5, 5)});
    EXPECT_EQ(calculator->GetColor(3), 5U);
    EXPECT_TRUE(StepsOf(*calculator));
}

TEST(MultipartGradient, RaisesWhatAPartRaises) {
    const auto calculator =
        Multipart(0, 20, {TGradientColorCalculatorFactory::GetObject(0, 10, nullptr), Part(10, 20)});
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { calculator->GetColor(5); }), "Gradient not specified");
    EXPECT_EQ(calculator->GetColor(20), 0xFFFFFFFFU);
}

TEST(MultipartGradient, ClonesShareTheParts) {
    const auto calculator = Multipart(0, 20, {Part(0, 10, 5, 5), Part(10, 20, 6, 6)});
    for (const auto& copy :
         {AsMultipart(calculator->Clone()), TMultipartGradientColorCalculatorFactory::GetObject(calculator)}) {
        EXPECT_EQ(copy->GetMinVal(), 0);
        EXPECT_EQ(copy->GetMaxVal(), 20);
        EXPECT_EQ(copy->GetGradients(), calculator->GetGradients());
        copy->GetGradients().clear();
    }
    EXPECT_EQ(calculator->GetGradients().size(), 2U);
}

TEST(MultipartGradient, ACloneWithAnotherRangeKeepsTheRangesOfTheParts) {
    const auto calculator = Multipart(0, 20, {Part(0, 10, 5, 5), Part(10, 20, 6, 6)});
    const auto copy = AsMultipart(calculator->Clone(-5, 5));
    EXPECT_EQ(copy->GetMinVal(), -5);
    EXPECT_EQ(copy->GetMaxVal(), 5);
    EXPECT_EQ(copy->GetGradients(), calculator->GetGradients());
    EXPECT_EQ(copy->GetColor(-1), 0U);
    EXPECT_EQ(copy->GetColor(4), 5U);
    EXPECT_EQ(copy->GetColor(6), 0U);
    EXPECT_EQ(copy->GetGradients()[0]->GetMaxVal(), 10);
}

TEST(MultipartGradient, RefusesANilSource) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] {
                  TMultipartGradientColorCalculatorFactory::GetObject(
                      std::shared_ptr<IMultipartGradientColorCalculator>());
              }),
              "TMultipartGradientColorCalculatorFactory.GetObject: argument source is nil");
}

struct TPartsRow {
    const char* Name;
    float Min;
    float Max;
    std::vector<std::pair<float, float>> Bounds;
};

class PictureOfParts : public testing::TestWithParam<TPartsRow> {};

/// Parts of the bounds, each with colours of its own; every third with a hard edge and a hole in the middle.
TParts PartsOf(const std::vector<std::pair<float, float>>& bounds) {
    TParts parts;
    TColor32 color = 0x80102030U;
    for (const auto& [min, max] : bounds) {
        color = color * 1664525U + 1013904223U;
        parts.push_back(Part(min, max, color, ~color));
        if (parts.size() % 3 == 0)
            parts.back()->SetGradient(TGradientFactory::GetObject(
                std::vector<TColorStop>{{0.2, color}, {0.4, 0}, {0.6, 0}, {0.6, ~color}, {0.9, color ^ 0xFF00FFU}}));
    }
    return parts;
}

void ExpectRightPictures(const IMultipartGradientColorCalculator& calculator,
                         const std::vector<std::pair<float, float>>& bounds, int count, std::uint32_t seed) {
    const auto steps = StepsOf(calculator);
    ASSERT_NE(steps, nullptr);
    std::vector<float> values = tests::TellingValues(calculator, &*steps, count, seed);
    for (const auto& [min, max] : bounds)
        for (float bound : {min, max})
            values.insert(values.end(), {bound, std::nextafter(bound, Inf), std::nextafter(bound, -Inf)});
    tests::ExpectTheCalculatorsColors(calculator, values);
    tests::ExpectPiecesWithTheCalculatorsColors(calculator, values);
}

TEST_P(PictureOfParts, HasTheColorOfEachValue) {
    const TPartsRow& row = GetParam();
    ExpectRightPictures(*Multipart(row.Min, row.Max, PartsOf(row.Bounds)), row.Bounds, 50000, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Parts, PictureOfParts,
    testing::Values(
        TPartsRow{"None", 0, 10, {}}, TPartsRow{"One", 0, 10, {{0, 10}}},
        TPartsRow{"SharedBounds", -50, 50, {{-50, 0}, {0, 20}, {20, 50}}}, TPartsRow{"Gap", 0, 30, {{0, 10}, {20, 30}}},
        TPartsRow{"Overlapping", 0, 30, {{10, 20}, {0, 15}, {12, 30}}}, TPartsRow{"Hidden", 0, 30, {{0, 30}, {10, 20}}},
        TPartsRow{"CutOff", 3, 7, {{0, 5}, {5, 10}}}, TPartsRow{"Margins", -100, 100, {{0, 5}, {5, 10}}},
        TPartsRow{"OverallTurnedOver", 10, 0, {{0, 10}}}, TPartsRow{"PartTurnedOver", 0, 20, {{10, 0}, {5, 20}}},
        TPartsRow{"NaNRange", NaN, NaN, {{0, 10}, {20, 30}}}, TPartsRow{"HalfNaNRange", NaN, 25, {{0, 10}, {20, 30}}},
        TPartsRow{"EndlessRange", -Inf, Inf, {{0, 10}, {20, 30}}},
        TPartsRow{"NaNPart", 0, 20, {{NaN, 10}, {0, 20}, {5, NaN}}},
        TPartsRow{"Points", -5, 5, {{0, 0}, {1, 1}, {-5, 5}}},
        TPartsRow{"TheInfinities", -Inf, Inf, {{-Inf, -Inf}, {Inf, Inf}, {0, 1}}},
        TPartsRow{"MinusInfinityWithoutBounds", NaN, NaN, {{-Inf, -Inf}}},
        TPartsRow{"Collapsed", 1, 2, {{1, 0x1.000002p0F}, {1, 2}}},
        TPartsRow{"OneOverAllFloats", -Largest, Largest, {{-1, 1}, {-Largest, Largest}}},
        TPartsRow{"Unequal", -11000, 9000, {{-11000, 0}, {0, 1}, {1, 9000}}}),
    [](const auto& row) { return row.param.Name; });

TEST(PicturesOfParts, AreRightForRandomParts) {
    tests::TRandom random(12);
    for (int round = 0; round < 60; ++round) {
        const int scale = random.Below(40) - 20;
        std::vector<std::pair<float, float>> bounds;
        for (int i = 0, count = 1 + random.Below(8); i < count; ++i) {
            const auto min = static_cast<float>(std::ldexp(random.Unit() - 0.5, scale));
            const auto size = static_cast<float>(std::ldexp(random.Unit() - 0.1, scale - random.Below(4)));
            bounds.emplace_back(random.Below(3) || bounds.empty() ? min : bounds.back().second, min + size);
        }
        const auto low = static_cast<float>(std::ldexp(-0.5 - 0.2 * random.Unit() * (random.Below(3) - 1), scale));
        const auto high = static_cast<float>(std::ldexp(0.5 + 0.2 * random.Unit(), scale));
        ExpectRightPictures(*Multipart(low, high, PartsOf(bounds)), bounds, 20000, random.Bits());
    }
}

TEST(PicturesOfParts, AreAskedForCellByCellWhereAVisiblePartMayRaise) {
    const TPart without = TGradientColorCalculatorFactory::GetObject(0, 10, nullptr);
    EXPECT_FALSE(StepsOf(*Multipart(0, 10, {without})));
    EXPECT_FALSE(StepsOf(*Multipart(0, 10, {Part(0, 10), without, Part(-Inf, Inf)})) &&
                 StepsOf(*Multipart(-1, 10, {Part(0, 10), Part(-Inf, Inf)})));
    EXPECT_TRUE(StepsOf(*Multipart(0, 10, {Part(0, 10), without}))); // hidden
}

/// A host's own part: its colours are the values.
class THostPart final : public TBaseMinMaxColorCalculator, public IGradientColorCalculator {
public:
    explicit THostPart(float min = 0, float max = 100) : TBaseMinMaxColorCalculator(min, max) {}
    TColor32 GetColor(float value) const override { return static_cast<TColor32>(value); }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<THostPart>(); }
    std::shared_ptr<IBaseColorCalculator> Clone(float, float) const override { return Clone(); }
    std::shared_ptr<IGradient> GetGradient() const override { return nullptr; }
    void SetGradient(std::shared_ptr<IGradient>) override {}
    TColor32 GetDefaultColor() const override { return 0; }
    void SetDefaultColor(TColor32) override {}
};

/// The meaning of parts: a walk through the list.
TPart PartByWalking(const IMultipartGradientColorCalculator& calculator, float value) {
    for (const TPart& part : calculator.GetGradients())
        if (part && part->GetMinVal() <= value && part->GetMaxVal() >= value)
            return part;
    return nullptr;
}

TEST(PartsByHalving, AreThoseOfAWalk) {
    tests::TRandom random(21);
    for (int round = 0; round < 60; ++round) {
        TParts parts;
        std::vector<float> values = {NaN, Inf, -Inf, 0};
        for (int i = random.Below(round < 59 ? 20 : 3000); i > 0; --i) {
            const auto min = static_cast<float>(random.Below(100));
            const auto max = min + static_cast<float>(random.Below(30) - 3);
            const int kind = random.Below(20);
            parts.push_back(kind == 0   ? nullptr
                            : kind == 1 ? std::make_shared<THostPart>(min, max)
                                        : Part(kind == 2 ? NaN : min, kind == 3 ? Inf : max));
            values.insert(values.end(), {min, max, std::nextafter(min, -Inf), std::nextafter(max, Inf)});
        }
        const auto calculator = Multipart(-Inf, Inf, parts);
        for (float value : values)
            ASSERT_EQ(calculator->GetGradient(value), PartByWalking(*calculator, value)) << value;
    }
}

TEST(PartsByHalving, SeeEachChange) {
    const auto host = std::make_shared<THostPart>(0.0F, 1.0F);
    const auto calculator = Multipart(0, 100, {host, Part(0, 10), Part(5, 20)});
    const TParts parts = calculator->GetGradients();
    const auto at = [&](float value) { return calculator->GetGradient(value); };
    EXPECT_EQ(at(7), parts[1]);
    parts[1]->SetMinVal(8);
    EXPECT_EQ(at(7), parts[2]);
    host->SetMaxVal(7);
    EXPECT_EQ(at(7), parts[0]);
    parts[1]->SetMaxVal(30);
    EXPECT_EQ(at(25), parts[1]);
    calculator->GetGradients().Set(0, parts[2]);
    EXPECT_EQ(at(6), parts[2]);
    EXPECT_EQ(at(2), nullptr);
    calculator->GetGradients().erase(calculator->GetGradients().begin());
    EXPECT_EQ(at(15), parts[1]);
    calculator->GetGradients().clear();
    EXPECT_EQ(at(15), nullptr);
}

TEST(PicturesOfParts, AreRightForManyParts) {
    tests::TRandom random(22);
    for (const int count : {300, 3000}) {
        std::vector<std::pair<float, float>> bounds;
        for (int i = 0; i < count; ++i) {
            const auto min = static_cast<float>(random.Unit());
            bounds.emplace_back(min, random.Below(20) ? min + static_cast<float>(random.Unit()) * 0.002F : NaN);
        }
        const auto calculator = Multipart(0.01F, 0.9F, PartsOf(bounds));
        EXPECT_EQ(StepsOf(*calculator), nullptr);
        std::vector<float> values = tests::TellingValues(*calculator, nullptr, 20000, random.Bits());
        for (const auto& [min, max] : bounds)
            values.insert(values.end(), {min, std::nextafter(min, -Inf), max, std::nextafter(max, Inf)});
        tests::ExpectTheCalculatorsColors(*calculator, values);
        tests::ExpectPiecesWithTheCalculatorsColors(*calculator, values);
    }
}

TEST(MultipartGradient, IsMadeOfAListInBraces) {
    const TPart part = Part(0, 10, 5, 5);
    const auto calculator = TMultipartGradientColorCalculatorFactory::GetObject(0, 10, {part, Part(5, 20)});
    const IMultipartGradientColorCalculator& readable = *calculator;
    EXPECT_EQ(readable.GetGradients().size(), 2U);
    EXPECT_EQ(readable.GetGradients()[0], part);
}

TEST(PicturesOfParts, AskAHostsOwnPart) {
    const auto calculator = Multipart(0, 50, {std::make_shared<THostPart>()});
    EXPECT_FALSE(StepsOf(*calculator));
    EXPECT_EQ(calculator->GetColor(42), 42U);
    tests::ExpectTheCalculatorsColors(*calculator, {-1, 0, 25, 50, 51, NaN});
}

} // namespace
} // namespace lmx
