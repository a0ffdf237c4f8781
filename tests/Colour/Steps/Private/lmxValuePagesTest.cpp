#include <lmx/Colour/Steps/Private/lmxValuePages.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <vector>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float Denormal = std::numeric_limits<float>::denorm_min();

std::vector<std::uint32_t> PagesOf(const TValuePages& cut, const std::vector<float>& values) {
    std::vector<std::uint32_t> pages(values.size());
    cut.Find(values, pages.data());
    return pages;
}

std::vector<float> Spread(int count, float low, float high) {
    std::vector<float> values;
    for (int i = 0; i < count; ++i)
        values.push_back(low + (high - low) * static_cast<float>(i) / static_cast<float>(count - 1));
    return values;
}

/// `count` values in each of 30 doublings, to both sides of 0.
std::vector<float> Doublings(int count) {
    std::vector<float> values;
    for (int i = 0; i < 30 * count; ++i) {
        const float value = std::exp2(static_cast<float>(i) / static_cast<float>(count) - 10);
        values.insert(values.end(), {value, -value});
    }
    std::sort(values.begin(), values.end());
    return values;
}

struct TValuesRow {
    const char* Name;
    std::vector<float> Values;
};

class ValuePages : public testing::TestWithParam<TValuesRow> {
protected:
    const std::vector<float>& Values() const { return GetParam().Values; }
};

TEST_P(ValuePages, NeverFallWhereValuesRise) {
    std::vector<float> values = {-Inf, -Largest, -1, -Denormal, 0, Denormal, 1, Largest, Inf};
    for (const float value : Values())
        values.insert(values.end(), {value, std::nextafter(value, Inf), std::nextafter(value, -Inf)});
    std::mt19937 random(3);
    for (int i = 0; i < 20000; ++i)
        if (const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random())); !std::isnan(value))
            values.push_back(value);
    std::sort(values.begin(), values.end());
    for (const std::size_t mostPages : {1, 2, 100, 16384}) {
        const TValuePages cut(Values(), 7, mostPages);
        const std::vector<std::uint32_t> pages = PagesOf(cut, values);
        EXPECT_TRUE(std::is_sorted(pages.begin(), pages.end()));
        EXPECT_LT(pages.back(), cut.GetCount());
        EXPECT_LE(cut.GetCount(), mostPages);
    }
}

TEST_P(ValuePages, AreTheSameForEveryNumberOfValuesAtOnce) {
    const TValuePages cut(Values(), 7, 1000);
    const std::vector<std::uint32_t> pages = PagesOf(cut, Values());
    for (std::size_t i = 0; i < Values().size(); ++i)
        EXPECT_EQ(PagesOf(cut, {Values()[i]}), std::vector{pages[i]});
}

TEST_P(ValuePages, BeginWithWhatIsNoNumber) {
    const TValuePages cut(Values(), 7, 16384);
    const float nan = std::nanf("");
    EXPECT_EQ(PagesOf(cut, std::vector<float>(9, nan)), std::vector<std::uint32_t>(9, 0));
    EXPECT_EQ(PagesOf(cut, {-nan}), std::vector<std::uint32_t>{0});
}

INSTANTIATE_TEST_SUITE_P(Values, ValuePages,
                         testing::Values(TValuesRow{"One", {5}}, TValuesRow{"Zero", {0}}, TValuesRow{"Two", {-3, 8}},
                                         TValuesRow{"Same", {2, 2, 2, 2, 2, 2, 2, 2, 2}},
                                         TValuesRow{"Infinities", {-Inf, Inf}}, TValuesRow{"All", {-Largest, 0, Inf}},
                                         TValuesRow{"Denormals", {0, Denormal, 2 * Denormal, 5 * Denormal}},
                                         TValuesRow{"Even", Spread(3000, -50, 50)},
                                         TValuesRow{"FarFromZero", Spread(300, 1e6F, 1e6F + 100)},
                                         TValuesRow{"Doublings", Doublings(9)}),
                         [](const auto& row) { return row.param.Name; });

/// Most values of one page.
std::size_t MostInOnePage(const TValuePages& cut, const std::vector<float>& values) {
    std::map<std::uint32_t, std::size_t> counts;
    std::size_t most = 0;
    for (const std::uint32_t page : PagesOf(cut, values))
        most = std::max(most, ++counts[page]);
    return most;
}

TEST(ValuePage, HoldsNoMoreThanItMay) {
    for (const auto& values :
         {Spread(3000, -50, 50), Spread(60000, -3, 4000), Spread(300, 1e6F, 1e6F + 100), Doublings(9), Doublings(300)})
        EXPECT_LE(MostInOnePage(TValuePages(values, 7, 16384), values), 7U);
}

TEST(ValuePage, EvenValuesTakeLittleMoreThanTheirShare) {
    EXPECT_LE(TValuePages(Spread(7000, -50, 50), 7, 16384).GetCount(), 1020U);
}

TEST(ValuePage, ValuesOfManyMagnitudesDoNotTakeMore) {
    EXPECT_LE(TValuePages(Doublings(70), 7, 16384).GetCount(), 1000U);
}

TEST(ValuePage, IsOneWithoutValues) {
    for (const TValuePages& cut : {TValuePages(), TValuePages({}, 7, 16384)}) {
        EXPECT_EQ(cut.GetCount(), 1U);
        EXPECT_EQ(PagesOf(cut, {-Inf, -Largest, 0, 5, Inf, std::nanf("")}), std::vector<std::uint32_t>(6, 0));
    }
}

} // namespace
} // namespace lmx
