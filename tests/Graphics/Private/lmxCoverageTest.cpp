#include <lmx/Graphics/Private/lmxCoverage.h>
#include <tests/Graphics/Pictures.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using TPoints = std::vector<TFloatPoint>;
using TAreas = std::vector<double>; // rows one after the other

TAreas AreasOf(std::int32_t width, std::int32_t height, const std::vector<TPoints>& contours) {
    TAreas areas(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    TCoverage coverage(width, height);
    for (const TPoints& contour : contours)
        coverage.AddContour(contour);
    std::int64_t previousEnd = -1;
    coverage.Sweep([&](std::int32_t y, std::int32_t x, std::size_t count, double area) {
        const std::int64_t begin = std::int64_t{y} * width + x;
        EXPECT_GE(begin, previousEnd) << "runs ascend";
        previousEnd = begin + static_cast<std::int64_t>(count);
        EXPECT_LE(x + static_cast<std::int64_t>(count), width);
        std::fill_n(areas.begin() + begin, count, area);
    });
    return areas;
}

/// The part of a contour inside a pixel, cut off at its four sides one after the other.
TPoints CutTo(TPoints points, double left, double top) {
    const auto cut = [&points](auto inside) {
        TPoints result;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const TFloatPoint a = points[i];
            const TFloatPoint b = points[(i + 1) % points.size()];
            const double da = inside(a);
            const double db = inside(b);
            if (da >= 0)
                result.push_back(a);
            if ((da < 0) != (db < 0))
                result.push_back({a.X + (b.X - a.X) * (da / (da - db)), a.Y + (b.Y - a.Y) * (da / (da - db))});
        }
        points = result;
    };
    cut([=](TFloatPoint p) { return p.X - left; });
    cut([=](TFloatPoint p) { return left + 1 - p.X; });
    cut([=](TFloatPoint p) { return p.Y - top; });
    cut([=](TFloatPoint p) { return top + 1 - p.Y; });
    return points;
}

double SignedArea(const TPoints& points) {
    double sum = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const TFloatPoint a = points[i];
        const TFloatPoint b = points[(i + 1) % points.size()];
        sum += a.X * b.Y - b.X * a.Y;
    }
    return -sum / 2; // edges downwards count positive
}

TEST(Coverage, WholeRectanglesFillTheirPixels) {
    EXPECT_EQ(AreasOf(4, 3, {{{1, 1}, {3, 1}, {3, 2}, {1, 2}}}), (TAreas{0, 0, 0, 0,   //
                                                                         0, -1, -1, 0, //
                                                                         0, 0, 0, 0}));
}

TEST(Coverage, TheDirectionIsTheSign) {
    EXPECT_EQ(AreasOf(1, 1, {{{0, 0}, {0, 1}, {1, 1}, {1, 0}}}), TAreas{1});
}

TEST(Coverage, PartsOfPixelsAreAreas) {
    EXPECT_EQ(AreasOf(2, 2, {{{0.5, 0.25}, {0.5, 2}, {2, 2}, {2, 0.25}}}), (TAreas{0.375, 0.75, 0.5, 1}));
    EXPECT_EQ(AreasOf(2, 2, {{{0, 0}, {0, 2}, {2, 2}}}), (TAreas{0.5, 0, 1, 0.5}));
}

TEST(Coverage, ContoursAddUp) {
    const TPoints square = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
    const TPoints opposite = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    EXPECT_EQ(AreasOf(1, 1, {square, square}), TAreas{2});
    EXPECT_EQ(AreasOf(1, 1, {square, opposite}), TAreas{0});
}

TEST(Coverage, WhatLiesToTheLeftCoversAndToTheRightDoesNot) {
    EXPECT_EQ(AreasOf(2, 1, {{{-1e9, -1e9}, {-1e9, 1e9}, {1, 1e9}, {1, -1e9}}}), (TAreas{1, 0}));
    EXPECT_EQ(AreasOf(2, 1, {{{1, -1e9}, {1, 1e9}, {1e9, 1e9}, {1e9, -1e9}}}), (TAreas{0, 1}));
    EXPECT_EQ(AreasOf(2, 1, {{{5, 0}, {5, 1}, {9, 1}, {9, 0}}}), (TAreas{0, 0}));
    EXPECT_EQ(AreasOf(2, 1, {{{0, 5}, {0, 9}, {2, 9}, {2, 5}}}), (TAreas{0, 0}));
}

TEST(Coverage, RandomPolygonsHaveTheirExactAreas) {
    std::mt19937 random(28);
    std::uniform_real_distribution<double> far(-40, 50);
    std::uniform_real_distribution<double> near(-1, 12);
    constexpr std::int32_t width = 11, height = 9;
    for (int round = 0; round < 3000; ++round) {
        std::vector<TPoints> contours(round % 3 == 0 ? 2 : 1);
        for (TPoints& contour : contours) {
            contour.resize(static_cast<std::size_t>(tests::Between(random, 3, 7)));
            for (TFloatPoint& point : contour) {
                point =
                    round % 2 == 0 ? TFloatPoint{near(random), near(random)} : TFloatPoint{far(random), far(random)};
                if (round % 5 == 0)
                    point = {std::floor(point.X), std::floor(point.Y * 2) / 2};
            }
        }
        const TAreas areas = AreasOf(width, height, contours);
        for (std::int32_t y = 0; y < height; ++y)
            for (std::int32_t x = 0; x < width; ++x) {
                double expected = 0;
                for (const TPoints& contour : contours)
                    expected += SignedArea(CutTo(contour, x, y));
                ASSERT_NEAR(areas[static_cast<std::size_t>(y * width + x)], expected, 1e-11)
                    << "round " << round << ", pixel " << x << ',' << y;
            }
    }
}

TEST(Coverage, FarPointsKeepTheSlope) {
    // A half plane below the diagonal.
    const TAreas areas = AreasOf(2, 2, {{{-1e8, -1e8}, {-1e8, 1e8}, {1e8, 1e8}}});
    EXPECT_NEAR(areas[0], 0.5, 1e-7);
    EXPECT_NEAR(areas[1], 0, 1e-7);
    EXPECT_NEAR(areas[2], 1, 1e-7);
    EXPECT_NEAR(areas[3], 0.5, 1e-7);
}

TEST(Coverage, UnusableContoursAreLeftOut) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double bad : {nan, infinite, -infinite, 1e31})
        EXPECT_EQ(AreasOf(1, 1, {{{0, 0}, {0, bad}, {1, 1}}, {{0, 0}, {0, 1}, {1, 1}, {1, 0}}}), TAreas{1}) << bad;
    EXPECT_EQ(AreasOf(1, 1, {{}}), TAreas{0});
}

TEST(Coverage, NearlyLevelEdgesAndExtremePointsAreHarmless) {
    constexpr double tiny = std::numeric_limits<double>::denorm_min();
    const TAreas areas = AreasOf(3, 3, {{{-1e30, -tiny}, {1e30, tiny}, {1e30, 2}, {-1e30, 2}}});
    for (std::size_t i = 0; i < 9; ++i)
        EXPECT_NEAR(areas[i], i < 6 ? -1 : 0, 1e-6) << i;
}

TEST(Coverage, AnEmptyGridHasNoRuns) {
    for (const auto& [width, height] : {std::pair{0, 5}, std::pair{5, 0}, std::pair{-1, -1}}) {
        TCoverage coverage(width, height);
        coverage.AddContour(TPoints{{0, 0}, {0, 9}, {9, 9}});
        int runs = 0;
        coverage.Sweep([&](auto...) { ++runs; });
        EXPECT_EQ(runs, 0);
    }
}

} // namespace
} // namespace lmx
