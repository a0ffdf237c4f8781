#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Colour/StepwiseChecks.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::MessageOf;
using TBounds = std::vector<std::pair<float, float>>;

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float Denormal = std::numeric_limits<float>::denorm_min();
constexpr auto ReturnNil = TOutOfRangePolicy::orpReturnNil;
constexpr auto ClosestMatch = TOutOfRangePolicy::orpClosestMatch;

/// Colours 0xFF000001 and so on, in the order of the bounds.
std::shared_ptr<IColorClasses> ClassesOf(const TBounds& bounds) {
    const auto classes = TColorClassesFactory::GetObject();
    TColor32 color = 0xFF000000U;
    for (const auto& [min, max] : bounds)
        classes->GetClasses().Add(std::make_unique<TColorClass>(QString(), min, max, ++color));
    return classes;
}

std::shared_ptr<IColorClassCalculator> CalculatorOf(const TBounds& bounds, TOutOfRangePolicy policy) {
    const auto calculator = TColorClassCalculatorFactory::GetObject(ClassesOf(bounds));
    calculator->SetOutOfRangePolicy(policy);
    return calculator;
}

std::shared_ptr<IColorClassCalculator> CloneOf(const IColorClassCalculator& calculator) {
    return std::dynamic_pointer_cast<IColorClassCalculator>(calculator.Clone());
}

TEST(ColorClassCalculator, GivesTheColorOfTheClassOrNone) {
    const auto calculator = CalculatorOf({{0, 10}, {20, 30}}, ReturnNil);
    EXPECT_EQ(calculator->GetColor(10), 0xFF000001U);
    EXPECT_EQ(calculator->GetColor(20), 0xFF000002U);
    for (float value : {-5.0F, 15.0F, 35.0F, NaN})
        EXPECT_EQ(calculator->GetColor(value), 0U) << value;
}

TEST(ColorClassCalculator, GivesTheClosestColorAtTheOuterEndsOnly) {
    const auto calculator = CalculatorOf({{0, 10}, {20, 30}}, ClosestMatch);
    EXPECT_EQ(calculator->GetColor(-5), 0xFF000001U);
    EXPECT_EQ(calculator->GetColor(35), 0xFF000002U);
    EXPECT_EQ(calculator->GetColor(15), 0U);
}

TEST(ColorClassCalculator, BeginsWithoutClassesAndWithoutAMatch) {
    const auto calculator = TColorClassCalculatorFactory::GetObject();
    EXPECT_EQ(calculator->GetColorClasses(), nullptr);
    EXPECT_EQ(calculator->GetOutOfRangePolicy(), ReturnNil);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { calculator->GetColor(0); }), "ColorClasses not specified");
    EXPECT_EQ(CloneOf(*calculator)->GetColorClasses(), nullptr);
}

TEST(ColorClassCalculator, SharesTheClassesItIsGiven) {
    const auto classes = ClassesOf({{0, 10}});
    const auto calculator = TColorClassCalculatorFactory::GetObject(classes);
    EXPECT_EQ(calculator->GetColorClasses(), classes);
    classes->GetClasses()[0]->SetColor(5);
    EXPECT_EQ(calculator->GetColor(1), 5U);
    calculator->SetColorClasses(nullptr);
    EXPECT_EQ(calculator->GetColorClasses(), nullptr);
}

TEST(ColorClassCalculator, CopiesAnArrayOfClasses) {
    const TColorClass item(QStringLiteral("x"), 0, 10, 7);
    const TColorClass* const items[] = {&item};
    const auto calculator = TColorClassCalculatorFactory::GetObject(items);
    ASSERT_EQ(calculator->GetColorClasses()->GetClasses().Count(), 1);
    EXPECT_NE(calculator->GetColorClasses()->GetClasses()[0], &item);
    EXPECT_EQ(calculator->GetColor(10), 7U);
}

TEST(ColorClassCalculator, ACloneHasItsOwnClassesAndNoPolicy) {
    const auto calculator = CalculatorOf({{0, 10}}, ClosestMatch);
    for (const auto& copy : {CloneOf(*calculator), TColorClassCalculatorFactory::GetObject(calculator)}) {
        EXPECT_EQ(copy->GetOutOfRangePolicy(), ReturnNil);
        EXPECT_NE(copy->GetColorClasses(), calculator->GetColorClasses());
        EXPECT_EQ(copy->GetColor(5), 0xFF000001U);
        EXPECT_EQ(copy->GetColor(11), 0U);
    }
}

TEST(ColorClassCalculator, RefusesANilSource) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>(
                  [] { TColorClassCalculatorFactory::GetObject(std::shared_ptr<IColorClassCalculator>()); }),
              "TColorClassCalculatorFactory.GetObject: argument source is nil");
}

std::shared_ptr<const TColorSteps> StepsOf(const IColorClassCalculator& calculator) {
    return dynamic_cast<const TStepwiseColorCalculator&>(calculator).GetColorSteps();
}

/// Values around each bound and anywhere.
std::vector<float> TellingValues(const TBounds& bounds, int count, std::uint32_t seed) {
    std::vector<float> values = {0, -0.0F, Denormal, -Denormal, Largest, -Largest, Inf, -Inf, NaN, -NaN};
    float low = -1;
    float high = 1;
    for (const auto& [min, max] : bounds)
        for (float bound : {min, max}) {
            values.insert(values.end(), {bound, std::nextafter(bound, Inf), std::nextafter(bound, -Inf)});
            if (std::isfinite(bound)) {
                low = std::min(low, bound);
                high = std::max(high, bound);
            }
        }
    tests::TRandom random(seed);
    const double size = static_cast<double>(high) - low;
    for (int i = 0; i < count; ++i) {
        values.push_back(static_cast<float>(low + size * (1.06 * random.Unit() - 0.03)));
        values.push_back(std::bit_cast<float>(random.Bits()));
    }
    return values;
}

void ExpectRightPictures(const TBounds& bounds, int count, std::uint32_t seed) {
    for (const auto policy : {ReturnNil, ClosestMatch}) {
        const auto calculator = CalculatorOf(bounds, policy);
        ASSERT_TRUE(StepsOf(*calculator));
        tests::ExpectTheCalculatorsColors(*calculator, TellingValues(bounds, count, seed));
    }
}

struct TClassesRow {
    const char* Name;
    TBounds Bounds;
};

class PictureOfClasses : public testing::TestWithParam<TClassesRow> {};

TEST_P(PictureOfClasses, HasTheColorOfEachValue) {
    ExpectRightPictures(GetParam().Bounds, 50000, 1);
}

TBounds Powers(int count) {
    TBounds bounds;
    for (int i = 0; i < count; ++i)
        bounds.emplace_back(std::ldexp(1.0F, i - count / 2), std::ldexp(1.0F, i + 1 - count / 2));
    return bounds;
}

INSTANTIATE_TEST_SUITE_P(
    Classes, PictureOfClasses,
    testing::Values(TClassesRow{"None", {}}, TClassesRow{"One", {{0, 10}}}, TClassesRow{"Point", {{5, 5}}},
                    TClassesRow{"Zero", {{-0.0F, 0.0F}}}, TClassesRow{"SharedBounds", {{0, 10}, {10, 20}, {20, 30}}},
                    TClassesRow{"Gaps", {{0, 10}, {20, 30}, {50, 60}}},
                    TClassesRow{"Overlapping", {{10, 30}, {0, 20}, {25, 50}, {-10, 60}}},
                    TClassesRow{"Nested", {{4, 5}, {3, 6}, {2, 7}, {1, 8}}},
                    TClassesRow{"TurnedOver", {{10, 0}, {20, 30}}}, TClassesRow{"AllTurnedOver", {{10, 0}, {30, 20}}},
                    TClassesRow{"NaNMinimum", {{NaN, 10}, {20, 30}}}, TClassesRow{"NaNMaximum", {{0, NaN}, {20, 30}}},
                    TClassesRow{"NaNLater", {{20, 30}, {NaN, 40}, {0, NaN}, {NaN, NaN}}},
                    TClassesRow{"NaNAndMinusInfinity", {{NaN, 5}, {-Inf, 0}}},
                    TClassesRow{"OpenBelow", {{-Inf, 0}, {0, 10}}}, TClassesRow{"OpenAbove", {{0, 10}, {10, Inf}}},
                    TClassesRow{"TheInfinities", {{-Inf, -Inf}, {Inf, Inf}}}, TClassesRow{"Everything", {{-Inf, Inf}}},
                    TClassesRow{"AllFinite", {{-Largest, Largest}}},
                    TClassesRow{"Neighbours", {{1, 1}, {0x1.000002p0F, 0x1.000002p0F}, {0x1.000006p0F, 2}}},
                    TClassesRow{"Denormals", {{0, Denormal}, {3 * Denormal, 4 * Denormal}}},
                    TClassesRow{"Powers", Powers(32)}, TClassesRow{"ManyPowers", Powers(120)}),
    [](const auto& row) { return row.param.Name; });

/// Any bounds, with a taste for those that meet, coincide, turn over or are no numbers.
TBounds RandomBounds(tests::TRandom& random, int scale) {
    TBounds bounds;
    const auto bound = [&] {
        switch (random.Below(12)) {
        case 0:
            return std::bit_cast<float>(random.Bits());
        case 1:
            return bounds.empty()
                       ? Inf
                       : bounds[static_cast<std::size_t>(random.Below(static_cast<int>(bounds.size())))].second;
        case 2:
            return random.Below(2) ? Inf : -Inf;
        default:
            return static_cast<float>(std::ldexp(random.Unit() - 0.4, scale));
        }
    };
    for (int i = 0, count = random.Below(33); i < count; ++i) {
        const float min = bound();
        bounds.emplace_back(min,
                            random.Below(3) ? min + std::ldexp(static_cast<float>(random.Unit()), scale - 4) : bound());
    }
    return bounds;
}

TEST(PicturesOfClasses, AreRightForRandomClasses) {
    tests::TRandom random(11);
    for (int round = 0; round < 150; ++round)
        ExpectRightPictures(RandomBounds(random, random.Below(60) - 30), 5000, random.Bits());
}

TEST(PicturesOfClasses, AreRightForManyClasses) {
    tests::TRandom random(12);
    for (const int count : {2001, 30000}) {
        TBounds bounds;
        for (int i = 0; i < count; ++i) {
            const auto min = static_cast<float>(random.Below(count)) * 0.01F;
            const float width = random.Below(50) ? static_cast<float>(random.Unit()) * 0.02F : 1;
            bounds.emplace_back(random.Below(500) ? min : NaN, random.Below(500) ? min + width : -min);
        }
        ExpectRightPictures(bounds, 5000, random.Bits());
    }
}

/// The meaning of classes: a walk through the list.
const TColorClass* ClassByWalking(const TObjectList<TColorClass>& classes, TOutOfRangePolicy policy, float value) {
    for (const TColorClass* item : classes)
        if (item->InRange(value))
            return item;
    if (policy != ClosestMatch || classes.IsEmpty())
        return nullptr;
    const TColorClass* lowest = classes[0];
    const TColorClass* highest = classes[0];
    for (const TColorClass* item : classes) {
        lowest = item->GetMinValue() < lowest->GetMinValue() ? item : lowest;
        highest = item->GetMaxValue() > highest->GetMaxValue() ? item : highest;
    }
    if (!(value > lowest->GetMinValue()))
        return lowest;
    return value >= highest->GetMaxValue() ? highest : nullptr;
}

TEST(ClassesByHalving, AreThoseOfAWalk) {
    tests::TRandom random(13);
    for (int round = 0; round < 100; ++round) {
        const TBounds bounds = RandomBounds(random, random.Below(60) - 30);
        const auto classes = ClassesOf(bounds);
        for (float value : TellingValues(bounds, 300, random.Bits()))
            for (const auto policy : {ReturnNil, ClosestMatch})
                ASSERT_EQ(classes->GetClass(policy, value), ClassByWalking(classes->GetClasses(), policy, value))
                    << std::hexfloat << value;
    }
}

TEST(ClassesByHalving, SeeEachChange) {
    const auto classes = ClassesOf({{0, 10}, {5, 20}});
    TObjectList<TColorClass>& list = classes->GetClasses();
    TColorClass* const first = list[0];
    TColorClass* const second = list[1];
    const auto at = [&](float value) { return classes->GetClass(ReturnNil, value); };
    EXPECT_EQ(at(7), first);
    list.Move(0, 1);
    EXPECT_EQ(at(7), second);
    second->SetMinValue(8);
    EXPECT_EQ(at(7), first);
    first->SetMaxValue(6);
    EXPECT_EQ(at(7), nullptr);
    *first = TColorClass(QString(), 7, 7, 1);
    EXPECT_EQ(at(7), first);
    first->DeSerialize(QStringLiteral("(\"\":30:40:#FF000001)"));
    EXPECT_EQ(at(35), first);
    const auto taken = list.Extract(first);
    EXPECT_EQ(at(35), nullptr);
    EXPECT_EQ(at(9), second);
    list.Clear();
    EXPECT_EQ(at(9), nullptr);
}

TEST(ClassesByHalving, StayThroughChangesElsewhere) {
    const auto calculator = CalculatorOf({{0, 10}, {NaN, 20}}, ReturnNil);
    const auto steps = StepsOf(*calculator);
    const auto other = ClassesOf({{0, 10}});
    other->GetClasses()[0]->SetMaxValue(3);
    EXPECT_EQ(StepsOf(*calculator), steps);
    calculator->GetColorClasses()->GetClasses()[0]->SetColor(5);
    EXPECT_NE(StepsOf(*calculator), steps);
}

TEST(ColorClassCalculator, IsMadeOfAListInBracesOrOfNothing) {
    const auto calculator =
        TColorClassCalculatorFactory::GetObject({{QStringLiteral("Dry"), 0, 50, 7}, {{}, 50, 60, 8}});
    EXPECT_EQ(calculator->GetColor(50), 7U);
    EXPECT_EQ(calculator->GetColor(60), 8U);
    const IColorClasses& readable = *calculator->GetColorClasses();
    EXPECT_EQ(readable.GetClasses().Count(), 2);
    EXPECT_EQ(readable.GetClasses()[0]->GetName(), QStringLiteral("Dry"));
    EXPECT_EQ(TColorClassCalculatorFactory::GetObject(nullptr)->GetColorClasses(), nullptr);
}

TEST(PicturesOfClasses, AreAskedForCellByCellWhereTheClassesCannotTell) {
    EXPECT_FALSE(StepsOf(*TColorClassCalculatorFactory::GetObject()));
}

/// A host's own list: odd and even instead of bands.
class THostClasses final : public IColorClasses {
public:
    TObjectList<TColorClass>& GetClasses() override { return FClasses; }
    const TObjectList<TColorClass>& GetClasses() const override { return FClasses; }
    TColorClass* GetClass(TOutOfRangePolicy, float value) const override {
        return static_cast<int>(value) % 2 ? FOdd.get() : nullptr;
    }
    QString Serialize() const override { return {}; }
    void DeSerialize(const QString&) override {}

private:
    TObjectList<TColorClass> FClasses;
    std::unique_ptr<TColorClass> FOdd = std::make_unique<TColorClass>(QString(), 0.0F, 0.0F, 9U);
};

TEST(PicturesOfClasses, AskAHostsOwnList) {
    const auto calculator = TColorClassCalculatorFactory::GetObject(std::make_shared<THostClasses>());
    EXPECT_FALSE(StepsOf(*calculator));
    EXPECT_EQ(calculator->GetColor(3), 9U);
    tests::ExpectTheCalculatorsColors(*calculator, {1, 2, 3, 4});
}

} // namespace
} // namespace lmx
