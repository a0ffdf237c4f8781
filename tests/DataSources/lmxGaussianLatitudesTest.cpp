#include <lmx/DataSources/Private/lmxGaussianLatitudes.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace lmx {
namespace {

using namespace tests;

// Zeros found by bisection in decimal arithmetic of 40 digits.
TEST(GaussianLatitudes, AreZerosOfTheLegendrePolynomial) {
    EXPECT_NEAR(GaussianLatitudes(1)[0], 35.264389682754654, 1e-12);
    const auto t62 = GaussianLatitudes(47);
    ASSERT_EQ(t62.size(), 94U);
    EXPECT_NEAR(t62[0], 88.54195013729753, 1e-12);
    EXPECT_NEAR(t62[1], 86.65316717126122, 1e-12);
    EXPECT_NEAR(t62[46], 0.9523676213523389, 1e-12);
    EXPECT_NEAR(GaussianLatitudes(48)[0], 88.57216851400727, 1e-12);
    const auto n80 = GaussianLatitudes(80);
    EXPECT_NEAR(n80[0], 89.14151942646127, 1e-11);
    EXPECT_NEAR(n80[1], 88.02942886795161, 1e-11);
    EXPECT_NEAR(n80[79], 0.5607449425442226, 1e-12);
    const auto n128 = GaussianLatitudes(128);
    EXPECT_NEAR(n128[0], 89.46282156857738, 1e-11);
    EXPECT_NEAR(n128[1], 88.76695135284233, 1e-11);
    EXPECT_NEAR(n128[127], 0.35087652634255406, 1e-12);
    const auto n160 = GaussianLatitudes(160);
    EXPECT_NEAR(n160[0], 89.57008955060665, 1e-11);
    EXPECT_NEAR(n160[159], 0.28081089073040444, 1e-12);
}

TEST(GaussianLatitudes, FallAndAreTheSameToTheSouth) {
    for (const std::int32_t number : {1, 2, 3, 80, 640}) {
        const auto latitudes = GaussianLatitudes(number);
        EXPECT_TRUE(std::is_sorted(latitudes.rbegin(), latitudes.rend())) << number;
        for (std::size_t i = 0; i < latitudes.size(); ++i)
            ASSERT_EQ(latitudes[i], -latitudes[latitudes.size() - 1 - i]) << number;
    }
}

TEST(GaussianLatitudes, RefuseNumbersOfNoGrid) {
    for (const std::int32_t number : {0, -1, MostGaussianNumber + 1})
        EXPECT_EQ(MessageOf<EArgumentException>([&] { GaussianLatitudes(number); }), "Number");
}

} // namespace
} // namespace lmx
