// The Gaussian axis against published latitudes, the wave against its published shape, the image against the wave.

#include "GaussianField.h"

#include <lmx/Climate/lmxSpatialConst.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>

namespace lmx {
namespace {

// Latitudes of the T62 grid as its reanalyses publish them, from the pole to the equator.
constexpr double PublishedLatitudes[] = {
    88.542,  86.6531, 84.7532, 82.8508, 80.9473, 79.0435,  77.1394,  75.2351,  73.3307,  71.4262,  69.5217, 67.6171,
    65.7125, 63.8079, 61.9033, 59.9986, 58.0939, 56.1893,  54.2846,  52.3799,  50.4752,  48.5705,  46.6658, 44.7611,
    42.8564, 40.9517, 39.047,  37.1422, 35.2375, 33.3328,  31.4281,  29.5234,  27.6186,  25.7139,  23.8092, 21.9044,
    19.9997, 18.095,  16.1902, 14.2855, 12.3808, 10.47604, 8.571308, 6.666573, 4.761838, 2.857103, 0.952368};

TEST(GaussianAxes, HaveThePublishedLatitudesOfT62) {
    const GaussianAxis axis = MakeGaussianAxis(94);
    ASSERT_EQ(axis.Latitudes.size(), 94U);
    for (std::size_t i = 0; i < std::size(PublishedLatitudes); ++i)
        EXPECT_NEAR(axis.Latitudes[i], PublishedLatitudes[i], 1e-4) << i;
}

class GaussianAxisOf : public testing::TestWithParam<int> {};

TEST_P(GaussianAxisOf, IsSymmetricAndIntegratesExactly) {
    const GaussianAxis axis = MakeGaussianAxis(GetParam());
    const auto count = static_cast<std::size_t>(GetParam());
    ASSERT_EQ(axis.Latitudes.size(), count);
    ASSERT_EQ(axis.Weights.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_NEAR(axis.Latitudes[i], -axis.Latitudes[count - 1 - i], 1e-12);
        EXPECT_NEAR(axis.Weights[i], axis.Weights[count - 1 - i], 1e-12);
        EXPECT_LT(axis.Latitudes[i], i > 0 ? axis.Latitudes[i - 1] : 90);
    }
    EXPECT_NEAR(std::accumulate(axis.Weights.begin(), axis.Weights.end(), 0.0), 2, 1e-12);
    // Exact for polynomials up to degree 2 * count - 1: the integral of x^power over -1 to 1 is 2 / (power + 1).
    const int power = 2 * GetParam() - 2;
    double integral = 0;
    for (std::size_t i = 0; i < count; ++i)
        integral += axis.Weights[i] * std::pow(std::sin(axis.Latitudes[i] * std::numbers::pi / 180), power);
    EXPECT_NEAR(integral, 2.0 / (power + 1), 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Counts, GaussianAxisOf, testing::Values(1, 2, 3, 32, 94, 160));

TEST(GaussianAxes, OfFewRowsAreTheKnownRoots) {
    EXPECT_NEAR(MakeGaussianAxis(1).Latitudes[0], 0, 1e-12);
    const GaussianAxis three = MakeGaussianAxis(3); // roots 0 and the square root of 3/5
    EXPECT_NEAR(std::sin(three.Latitudes[0] * std::numbers::pi / 180), std::sqrt(0.6), 1e-15);
    EXPECT_NEAR(three.Weights[0], 5.0 / 9, 1e-14);
    EXPECT_NEAR(three.Weights[1], 8.0 / 9, 1e-14);
}

TEST(RossbyHaurwitzWaves, HaveFourRidgesAround) {
    EXPECT_NEAR(RossbyHaurwitzHeight(90, 12), 8000, 1e-9);
    EXPECT_NEAR(RossbyHaurwitzHeight(-90, 12), 8000, 1e-9);
    for (double latitude = -80; latitude <= 80; latitude += 10)
        for (double longitude = 0; longitude < 90; longitude += 7.5) {
            const double height = RossbyHaurwitzHeight(latitude, longitude);
            EXPECT_NEAR(RossbyHaurwitzHeight(latitude, longitude + 90), height, 1e-6);
            EXPECT_NEAR(RossbyHaurwitzHeight(latitude, -longitude), height, 1e-6);
            EXPECT_NEAR(RossbyHaurwitzHeight(-latitude, longitude), height, 1e-6);
        }
    // On the equator by hand: with K = omega the sums in A, B and C are 5 + 26 - 32 = -1, 26 - 25 = 1 and 5 - 6 = -1.
    const double scale = 6.37122e6 * 6.37122e6 / 9.80616;
    const double omega = 7.848e-6;
    const double a = omega / 2 * (2 * 7.292e-5 + omega) - omega * omega / 4;
    const double b = 2 * (7.292e-5 + omega) * omega / 30;
    const double c = -omega * omega / 4;
    EXPECT_NEAR(RossbyHaurwitzHeight(0, 0), 8000 + scale * (a + b + c), 1e-6);
    EXPECT_NEAR(RossbyHaurwitzHeight(0, 45), 8000 + scale * (a - b + c), 1e-6);
}

TEST(GaussianFields, AreTheWaveOnAnEvenGridWithoutASeam) {
    const auto image = MakeGaussianField();
    const TImageHeader& header = *image->getHeader();
    EXPECT_EQ(header.GetMinX(), 0);
    EXPECT_EQ(header.GetMaxX(), 360);
    EXPECT_EQ(header.GetMinY(), -89);
    EXPECT_EQ(header.GetMaxY(), 89);
    EXPECT_EQ(header.GetResolutionX(), 0.9375F);
    ASSERT_EQ(header.GetWidth(), 384);
    ASSERT_EQ(header.GetHeight(), 190);
    EXPECT_EQ(header.GetValueUnits(), "m");
    EXPECT_TRUE(header.IsGeographic());
    EXPECT_GT(header.GetMinValue(), 7900);
    EXPECT_LT(header.GetMaxValue(), 10700);
    for (std::int32_t row = 1; row <= header.GetHeight(); ++row) {
        const double latitude = -89 + (header.GetHeight() - row) * 0.9375;
        for (std::int32_t column = 1; column <= header.GetWidth(); ++column) {
            const float height = image->GetCell(column, row);
            // As far as straight lines follow the wave between the model's points; beyond them there is no data.
            const bool hasData = std::abs(latitude) < 88.542;
            const double wave = RossbyHaurwitzHeight(latitude, (column - 1) * 0.9375);
            EXPECT_NEAR(height, hasData ? wave : TSpatialConst::NoData, hasData ? 4 : 0) << latitude;
        }
    }
}

} // namespace
} // namespace lmx
