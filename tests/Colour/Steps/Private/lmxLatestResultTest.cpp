#include <lmx/Colour/Steps/Private/lmxLatestResult.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace lmx {
namespace {

/// Counts how often it makes a text of a number.
struct TMaker {
    TLatestResult<double, std::string> Latest;
    int Made = 0;

    std::string Get(double key) {
        return Latest.Get(key, [&] {
            ++Made;
            return std::to_string(static_cast<int>(key));
        });
    }
};

TEST(LatestResult, IsMadeOnceForOneKey) {
    TMaker maker;
    EXPECT_EQ(maker.Get(5), "5");
    EXPECT_EQ(maker.Get(5), "5");
    EXPECT_EQ(maker.Made, 1);
}

TEST(LatestResult, IsMadeAnewForAnotherKeyAndForgetsTheFirst) {
    TMaker maker;
    maker.Get(5);
    EXPECT_EQ(maker.Get(6), "6");
    EXPECT_EQ(maker.Get(5), "5");
    EXPECT_EQ(maker.Made, 3);
}

TEST(LatestResult, IsMadeAnewForAKeyThatDoesNotEqualItself) {
    TLatestResult<double, int> latest;
    int made = 0;
    for (int i = 1; i <= 3; ++i)
        EXPECT_EQ(latest.Get(std::nan(""), [&] { return ++made; }), i);
}

TEST(LatestResult, StaysWhereMakingRaises) {
    TMaker maker;
    maker.Get(5);
    EXPECT_THROW(maker.Latest.Get(6, []() -> std::string { throw std::runtime_error("no"); }), std::runtime_error);
    EXPECT_EQ(maker.Get(5), "5");
    EXPECT_EQ(maker.Made, 1);
    EXPECT_EQ(maker.Get(6), "6");
}

TEST(LatestResult, MayBeAskedForByManyThreads) {
    TLatestResult<int, int> latest;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int seed = 0; seed < 4; ++seed)
        threads.emplace_back([&, seed] {
            for (int i = 0; i < 2000; ++i) {
                const int key = (i + seed) % 3;
                wrong += latest.Get(key, [&] { return key * key; }) != key * key;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace lmx
