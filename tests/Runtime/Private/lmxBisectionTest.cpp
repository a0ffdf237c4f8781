#include <lmx/Runtime/Private/lmxBisection.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace lmx {
namespace {

TEST(Bisection, CountsTheStartsThatAValueHasReached) {
    std::mt19937 random(1);
    for (std::size_t count = 0; count < 200; ++count) {
        std::vector<float> starts;
        while (starts.size() < count)
            starts.push_back(static_cast<float>(random() % 100)); // many are equal
        std::sort(starts.begin(), starts.end());
        for (float value = -1; value < 101; value += 0.5F)
            ASSERT_EQ(CountReached<float>(starts, value),
                      static_cast<std::size_t>(std::upper_bound(starts.begin(), starts.end(), value) - starts.begin()))
                << count << " starts, " << value;
    }
}

TEST(Bisection, NoNumberReachesNothingAndInfinityAll) {
    constexpr double Inf = std::numeric_limits<double>::infinity();
    const std::vector<double> starts = {-Inf, -1, 0, 5, Inf};
    EXPECT_EQ(CountReached<double>(starts, std::nan("")), 0U);
    EXPECT_EQ(CountReached<double>(starts, -Inf), 1U);
    EXPECT_EQ(CountReached<double>(starts, -0.0), 3U);
    EXPECT_EQ(CountReached<double>(starts, Inf), 5U);
}

} // namespace
} // namespace lmx
