#include <lmx/Colour/Steps/Private/lmxColorStepTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float Denormal = std::numeric_limits<float>::denorm_min();

/// The meaning of steps: the last one that starts at or below the value.
TColor32 ColorOf(const TColorSteps& steps, float value) {
    if (std::isnan(value))
        return steps.GetNaNColor();
    const std::vector<float>& starts = steps.GetStarts();
    const auto next = std::partition_point(starts.begin() + 1, starts.end(), [=](float s) { return value >= s; });
    return steps.GetColors()[static_cast<std::size_t>(next - starts.begin()) - 1];
}

TColorSteps StepsAt(std::vector<float> starts) {
    std::sort(starts.begin(), starts.end());
    TColorSteps steps(1000);
    for (std::size_t i = 0; i < starts.size(); ++i)
        steps.Add(starts[i], static_cast<TColor32>(1001 + i));
    return steps;
}

/// Values around every start, the ends of the floats, and any floats.
std::vector<float> ValuesAround(const TColorSteps& steps) {
    std::vector<float> values = {0, -0.0F, Inf, -Inf, std::nanf(""), -std::nanf(""), Largest, -Largest, Denormal};
    for (float start : steps.GetStarts())
        values.insert(values.end(), {start, std::nextafter(start, Inf), std::nextafter(start, -Inf), start * 0.999F});
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i)
        values.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
    const float low = std::max(steps.GetStarts()[std::min<std::size_t>(1, steps.GetCount() - 1)], -1e38F);
    const float high = std::clamp(steps.GetStarts().back(), low, 1e38F);
    std::uniform_real_distribution<double> inside(low, high);
    for (int i = 0; i < 20000; ++i)
        values.push_back(static_cast<float>(inside(random)));
    return values;
}

void ExpectTheMeaningOf(const TColorSteps& steps) {
    const TColorStepTable table(steps, TLayerOpacity(1));
    const std::vector<float> values = ValuesAround(steps);
    std::vector<TColor32> colors(TColorStepTable::BlockSize);
    for (std::size_t at = 0; at < values.size(); at += colors.size()) {
        const auto block = std::span(values).subspan(at, std::min(colors.size(), values.size() - at));
        table.GetColors(block, colors.data());
        for (std::size_t i = 0; i < block.size(); ++i)
            ASSERT_EQ(colors[i], ColorOf(steps, block[i])) << block[i];
    }
}

struct TStartsRow {
    const char* Name;
    std::vector<float> Starts;
};

class StepTable : public testing::TestWithParam<TStartsRow> {};

TEST_P(StepTable, GivesTheColorOfTheStepThatHoldsTheValue) {
    ExpectTheMeaningOf(StepsAt(GetParam().Starts));
}

std::vector<float> Spread(std::size_t count, float low, float high) {
    std::vector<float> starts;
    for (std::size_t i = 0; i < count; ++i)
        starts.push_back(low + (high - low) * static_cast<float>(i) / static_cast<float>(count));
    return starts;
}

/// `count` starts in each of `magnitudes` doublings, to both sides of 0.
std::vector<float> Magnitudes(int magnitudes, int count) {
    std::vector<float> starts;
    for (int i = 0; i < magnitudes * count; ++i) {
        const float start = std::exp2(static_cast<float>(i) / static_cast<float>(count) - 10);
        starts.insert(starts.end(), {start, -start});
    }
    return starts;
}

std::vector<float> Joined(std::vector<float> a, const std::vector<float>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

INSTANTIATE_TEST_SUITE_P(
    Starts, StepTable,
    testing::Values(TStartsRow{"None", {}}, TStartsRow{"One", {5}}, TStartsRow{"Zero", {0}}, TStartsRow{"Two", {-3, 8}},
                    TStartsRow{"TheInfinity", {Inf}}, TStartsRow{"TheLargest", {-Largest, Largest}},
                    TStartsRow{"AllFloats", {-Largest, 0, Inf}},
                    TStartsRow{"Denormals", {0, Denormal, 2 * Denormal, 5 * Denormal}},
                    TStartsRow{"Neighbours", {1, 0x1.000002p0F, 0x1.000004p0F, 0x1.000006p0F}},
                    TStartsRow{"FarFromZero", Spread(300, 1e6F, 1e6F + 100)}, TStartsRow{"Many", Spread(3000, -50, 50)},
                    TStartsRow{"MoreThanBuckets", Spread(60000, -50, 50)},
                    TStartsRow{"Crowded", Joined(Spread(500, 0, 1e-6F), {1e6F})},
                    TStartsRow{"ManyMagnitudes", Magnitudes(30, 900)}, TStartsRow{"FewMagnitudes", Magnitudes(30, 1)},
                    TStartsRow{"FewCrowded", Joined(Spread(60, 0, 1e-6F), {1e6F})},
                    TStartsRow{"CrowdedAtTheEnd", Joined({-1e30F}, Spread(500, 1, 2))},
                    TStartsRow{"AllMagnitudes", {-1e30F, -1, -1e-30F, 1e-40F, 1e-30F, 1e-10F, 1, 1e10F, 1e30F}}),
    [](const auto& row) { return row.param.Name; });

TEST(ColorStepTable, EqualsTheMeaningForRandomSteps) {
    std::mt19937 random(6);
    for (int round = 0; round < 60; ++round) {
        std::vector<float> starts;
        const int scale = static_cast<int>(random() % 200) - 100;
        for (std::size_t i = 0, count = 1 + random() % 400; i < count; ++i)
            if (const float start = round % 2 ? std::bit_cast<float>(static_cast<std::uint32_t>(random()))
                                              : std::ldexp(static_cast<float>(random() % 100000), scale);
                !std::isnan(start))
                starts.push_back(start);
        ExpectTheMeaningOf(StepsAt(starts));
    }
}

class StepTableWithNaNColor : public testing::TestWithParam<std::size_t> {};

TEST_P(StepTableWithNaNColor, TellsNaNFromMinusInfinity) {
    TColorSteps steps(5);
    steps.Add(-Inf, 6);
    for (std::size_t i = 0; i < GetParam(); ++i)
        steps.Add(static_cast<float>(i), static_cast<TColor32>(10 + i));
    ExpectTheMeaningOf(steps);
}

INSTANTIATE_TEST_SUITE_P(Counts, StepTableWithNaNColor, testing::Values(0, 1, 2, 3, 60, 1000, 100000));

TEST(ColorStepTable, FadesItsColors) {
    TColorSteps steps(0xFF000001U);
    steps.Add(5, 0x80000002U);
    const TColorStepTable table(steps, TLayerOpacity(0.5F));
    const float values[] = {4, 5};
    TColor32 colors[2];
    table.GetColors(values, colors);
    EXPECT_EQ(colors[0], 0x80000001U);
    EXPECT_EQ(colors[1], 0x40000002U);
}

TEST(ColorStepTable, TakesAnyNumberOfSteps) {
    ExpectTheMeaningOf(StepsAt(Spread(200000, -50, 50)));
    std::mt19937 random(7);
    std::vector<float> starts;
    while (starts.size() < 150000)
        if (const float start = std::bit_cast<float>(static_cast<std::uint32_t>(random())); !std::isnan(start))
            starts.push_back(start);
    ExpectTheMeaningOf(StepsAt(starts));
}

} // namespace
} // namespace lmx
