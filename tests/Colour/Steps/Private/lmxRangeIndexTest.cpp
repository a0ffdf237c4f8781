#include <lmx/Colour/Steps/Private/lmxRangeIndex.h>
#include <tests/Colour/StepwiseChecks.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

using TRanges = std::vector<TSingleRange>;

/// The meaning: a walk through the list.
std::uint32_t FirstOf(const TRanges& ranges, float value) {
    for (std::size_t i = 0; i < ranges.size(); ++i)
        if (ranges[i].Contains(value))
            return static_cast<std::uint32_t>(i);
    return TRangeIndex::None;
}

void ExpectTheMeaning(const TRanges& ranges, std::uint32_t seed) {
    const TRangeIndex index(ranges);
    std::vector<float> values = {0, -0.0F, NaN, Inf, -Inf, 1e30F, -1e30F};
    for (const TSingleRange& range : ranges)
        for (float bound : {range.Min, range.Max})
            values.insert(values.end(), {bound, std::nextafter(bound, Inf), std::nextafter(bound, -Inf)});
    tests::TRandom random(seed);
    for (int i = 0; i < 500; ++i)
        values.push_back(std::bit_cast<float>(random.Bits()));
    for (float value : values)
        ASSERT_EQ(index.Find(value), FirstOf(ranges, value)) << std::hexfloat << value;
    ASSERT_EQ(index.GetStarts().size(), index.GetOwners().size());
    EXPECT_EQ(index.GetStarts().front(), -Inf);
    for (std::size_t i = 1; i < index.GetStarts().size(); ++i) {
        ASSERT_LT(index.GetStarts()[i - 1], index.GetStarts()[i]);
        ASSERT_NE(index.GetOwners()[i - 1], index.GetOwners()[i]);
    }
}

TEST(RangeIndex, FindsTheFirstRangeOfTheList) {
    const TRanges lists[] = {{},
                             {{0, 10}},
                             {{5, 5}},
                             {{-0.0F, 0.0F}, {0, 1}},
                             {{0, 10}, {10, 20}},
                             {{10, 20}, {0, 10}},
                             {{10, 30}, {0, 20}, {25, 50}, {-10, 60}},
                             {{0, 10}, {0, 10}, {0, 10}},
                             {{10, 0}, {NaN, 5}, {5, NaN}, {3, 4}},
                             {{-Inf, 0}, {10, Inf}},
                             {{Inf, Inf}, {-Inf, -Inf}},
                             {{0, 1}, {-Inf, Inf}}};
    for (const TRanges& ranges : lists)
        ExpectTheMeaning(ranges, 1);
}

TEST(RangeIndex, FindsWhatAWalkFindsInRandomLists) {
    tests::TRandom random(2);
    for (int round = 0; round < 60; ++round) {
        TRanges ranges;
        const int places = 1 + random.Below(400); // so few that bounds coincide
        for (int i = random.Below(round < 58 ? 60 : 2000); i > 0; --i) {
            const auto min = static_cast<float>(random.Below(places));
            const float max = min + static_cast<float>(random.Below(places) - 2);
            ranges.push_back({random.Below(40) ? min : NaN, random.Below(40) ? max : Inf});
        }
        ExpectTheMeaning(ranges, random.Bits());
    }
}

} // namespace
} // namespace lmx
